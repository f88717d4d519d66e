// The rule's JSON form.
#include <array>
#include <stdexcept>
#include <utility>

#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/PropertyOperator.h"

namespace qelsystemcompatibilityreport {

namespace json = qelcore::json;

namespace {

constexpr std::string_view kFormatVersion = "osblc_version";
constexpr std::string_view kVersions = "versions";
constexpr std::string_view kMaxVersion = "max_version";
constexpr std::string_view kVersionMask = "version_mask";
constexpr std::string_view kVersionMod = "version_mod";
constexpr std::string_view kInfoMessage = "info_message";
constexpr std::string_view kInfoURL = "info_url";
constexpr std::string_view kDependencies = "dependencies";
constexpr std::string_view kErrorLevel = "error_level";

/// From this many ranges on, their texts are made on all processors.
constexpr std::size_t kMostRangesOnOneThread = 512;

std::string TextOrEmpty(const json::Dictionary& object, std::string_view key) {
  const std::string* const text = json::FindText(object, key);
  return text == nullptr ? std::string() : *text;
}

json::Array RangesToJSON(const std::vector<VersionRange>& ranges) {
  json::Array texts(ranges.size());
  const auto convert = [&](std::size_t index) { texts[index] = ranges[index].ToString(); };
  if (ranges.size() > kMostRangesOnOneThread) {
    qelcore::threads::ForEachIndexOnCPUBoundExecutor(ranges.size(), convert);
  } else {
    for (std::size_t index = 0; index < ranges.size(); ++index) convert(index);
  }
  return texts;
}

}  // namespace

bool SCRRule::FromJSON(const std::any& json) {
  mInfoMessage.clear();
  mInfoURL.clear();
  mVersions.clear();
  mVersionMask = OSComponentVersion();
  mVersionMod = OSComponentVersion();
  mDependencies.clear();
  mErrorLevel = SCRRuleErrorLevel::INFO;
  mStringComparisons.clear();
  mIntegerComparisons.clear();

  return AtBoundary("qelsystemcompatibilityreport::SCRRule::FromJSON", false, [&] {
    if (!OSComponent::FromJSON(json)) return false;
    const json::Dictionary& object = json::AsDictionary(json);

    const auto formatVersion = json::FindInteger(object, kFormatVersion);
    if (formatVersion && static_cast<std::uint32_t>(*formatVersion) == 0) return false;

    if (GetType() == OSComponentType::kProperty) {
      DeserializeProprtyFieldsFromJSON(object);
    } else {
      DeserializeVersionFieldsFromJSON(object);
    }

    mInfoMessage = TextOrEmpty(object, kInfoMessage);
    mInfoURL = TextOrEmpty(object, kInfoURL);
    if (const json::Array* const dependencies = json::FindArray(object, kDependencies)) {
      mDependencies.reserve(dependencies->size());
      for (const std::any& element : *dependencies) {
        SCRRule dependency;
        // A dependency that cannot be read is kept as one that matches nothing, so that the rule hits nothing
        // rather than too much.
        if (!dependency.FromJSON(element)) dependency = SCRRule();
        mDependencies.push_back(std::move(dependency));
      }
    }
    const std::string level = TextOrEmpty(object, kErrorLevel);
    if (!level.empty()) mErrorLevel = StringToErrorLevel(level);
    return true;
  });
}

void SCRRule::DeserializeVersionFieldsFromJSON(const json::Dictionary& object) {
  if (const auto texts = json::FindTexts(object, kVersions)) {
    for (const std::string& text : *texts) mVersions.emplace_back(text);
  }
  if (mVersions.empty()) {
    const OSComponentVersion version = GetVersion();
    const std::string maxVersion = TextOrEmpty(object, kMaxVersion);
    if (!maxVersion.empty()) {
      mVersions.emplace_back(version, OSComponentVersion(maxVersion));
    } else if (version) {
      mVersions.emplace_back(version);
    }
  }
  mVersionMask = OSComponentVersion(TextOrEmpty(object, kVersionMask));
  mVersionMod = OSComponentVersion(TextOrEmpty(object, kVersionMod));
}

void SCRRule::DeserializeProprtyFieldsFromJSON(const json::Dictionary& object) {
  static constexpr std::array kReadingOrder{
      SCRPropertyOperator::kEqual,
      SCRPropertyOperator::kNotEqual,
      SCRPropertyOperator::kLess,
      SCRPropertyOperator::kGreater,
      SCRPropertyOperator::kLessOrEqual,
      SCRPropertyOperator::kGreaterOrEqual,
      SCRPropertyOperator::kRegularExpression,
      SCRPropertyOperator::kIntegerEqual,
      SCRPropertyOperator::kIntegerNotEqual,
      SCRPropertyOperator::kIntegerLess,
      SCRPropertyOperator::kIntegerGreater,
      SCRPropertyOperator::kIntegerLessOrEqual,
      SCRPropertyOperator::kIntegerGreaterOrEqual,
  };
  for (const SCRPropertyOperator propertyOperator : kReadingOrder) {
    const std::string* const operand = json::FindText(object, PropertyOperatorToString(propertyOperator));
    if (operand == nullptr) continue;
    (ComparesIntegers(propertyOperator) ? mIntegerComparisons : mStringComparisons)
        .emplace(propertyOperator, *operand);
  }
}

std::any SCRRule::ToJSON() const {
  json::Dictionary object;
  AtBoundary("qelsystemcompatibilityreport::SCRRule::ToJSON", [&] {
    object = json::AsDictionary(ToJSONWithoutVersionOrValue());
    json::Set(object, kFormatVersion, std::int64_t{1});
    if (GetType() == OSComponentType::kProperty) {
      for (const auto& [propertyOperator, operand] : GetPropertyComparisons()) {
        json::Set(object, PropertyOperatorToString(propertyOperator), operand);
      }
    } else {
      json::Set(object, kVersions, RangesToJSON(mVersions));
      if (mVersionMask) json::Set(object, kVersionMask, mVersionMask.ToString());
      if (mVersionMod) json::Set(object, kVersionMod, mVersionMod.ToString());
    }
    if (!mInfoMessage.empty()) json::Set(object, kInfoMessage, mInfoMessage);
    if (!mInfoURL.empty()) json::Set(object, kInfoURL, mInfoURL);
    if (!mDependencies.empty()) {
      json::Array dependencies;
      dependencies.reserve(mDependencies.size());
      for (const SCRRule& dependency : mDependencies) dependencies.push_back(dependency.ToJSON());
      json::Set(object, kDependencies, std::move(dependencies));
    }
    json::Set(object, kErrorLevel, ErrorLevelToString(mErrorLevel));
  });
  return object;
}

}  // namespace qelsystemcompatibilityreport
