// The rule's JSON form.
#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/PropertyOperator.h"
#include "qelsystemcompatibilityreport/rules/VersionRangeText.h"

namespace qelsystemcompatibilityreport {

namespace json = qelcore::json;

namespace {

constexpr auto kComponentKeys = OSComponent::Members::kKeys;
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

// Sorted, as most documents are.
constexpr std::array kRuleKeys{kDependencies,     kErrorLevel,       kInfoMessage,      kInfoURL,
                               kMaxVersion,       kComponentKeys[0], kFormatVersion,    kComponentKeys[1],
                               kComponentKeys[2], kComponentKeys[3], kComponentKeys[4], kVersionMask,
                               kVersionMod,       kVersions};
static_assert(std::is_sorted(kRuleKeys.begin(), kRuleKeys.end()));

std::string_view TextOrEmpty(const json::View& member) {
  return member.Text().value_or(std::string_view());
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

void SCRRule::Clear() {
  mInfoMessage.clear();
  mInfoURL.clear();
  mVersions.clear();
  mVersionMask = OSComponentVersion();
  mVersionMod = OSComponentVersion();
  mDependencies.clear();
  mErrorLevel = SCRRuleErrorLevel::INFO;
  mStringComparisons.clear();
  mIntegerComparisons.clear();
}

bool SCRRule::FromJSON(const std::any& json) {
  Clear();
  return ReadRule(json::View(json));
}

bool SCRRule::ReadRule(const json::View& value) {
  return AtBoundary("qelsystemcompatibilityreport::SCRRule::FromJSON", false,
                    [&] { return ReadFields(value, WrongDependency::kLog); });
}

bool SCRRule::ReadFields(const json::View& value, WrongDependency wrongDependency) {
  if (!value.IsObject()) return OSComponent::ReadFrom(value);

  const auto [dependencies, level, message, url, maxVersion, name, formatVersion, componentFormat, type,
              propertyValue, version, mask, modulus, versions] = value.Members(kRuleKeys);
  if (!OSComponent::ReadFrom({.mName = name,
                              .mFormat = componentFormat,
                              .mType = type,
                              .mValue = propertyValue,
                              .mVersion = version})) {
    return false;
  }
  const std::optional<std::uint64_t> format = formatVersion.Integer();
  if (format && static_cast<std::uint32_t>(*format) == 0) return false;

  if (GetType() == OSComponentType::kProperty) {
    DeserializeProprtyFieldsFromJSON(value);
  } else {
    DeserializeVersionFieldsFromJSON(versions, maxVersion, mask, modulus);
  }

  mInfoMessage = TextOrEmpty(message);
  mInfoURL = TextOrEmpty(url);
  if (const auto elements = dependencies.Elements()) {
    mDependencies.reserve(elements->size());
    for (const json::View& element : *elements) {
      SCRRule& dependency = mDependencies.emplace_back();
      // A dependency that cannot be read is kept as one that matches nothing, so that the rule hits nothing
      // rather than too much.
      const bool isRead = wrongDependency == WrongDependency::kLog
                              ? dependency.ReadRule(element)
                              : dependency.ReadFields(element, wrongDependency);
      if (!isRead) dependency = SCRRule();
    }
  }
  const std::string_view levelText = TextOrEmpty(level);
  if (!levelText.empty()) mErrorLevel = StringToErrorLevel(std::string(levelText));
  return true;
}

void SCRRule::DeserializeVersionFieldsFromJSON(const json::View& versions, const json::View& maxVersion,
                                               const json::View& mask, const json::View& modulus) {
  if (const auto texts = versions.Texts()) {
    mVersions.reserve(texts->size());
    for (const std::string_view text : *texts) mVersions.push_back(ReadVersionRange(text));
  }
  if (mVersions.empty()) {
    const OSComponentVersion version = GetVersion();
    const std::string_view maximum = TextOrEmpty(maxVersion);
    if (!maximum.empty()) {
      mVersions.emplace_back(version, OSComponentVersion(maximum));
    } else if (version) {
      mVersions.emplace_back(version);
    }
  }
  mVersionMask = OSComponentVersion(TextOrEmpty(mask));
  mVersionMod = OSComponentVersion(TextOrEmpty(modulus));
}

void SCRRule::DeserializeProprtyFieldsFromJSON(const json::View& object) {
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
  static const std::array<std::string_view, kReadingOrder.size()> keys = [] {
    std::array<std::string_view, kReadingOrder.size()> texts;
    std::transform(kReadingOrder.begin(), kReadingOrder.end(), texts.begin(), PropertyOperatorToString);
    return texts;
  }();
  const auto operands = object.Members(keys);
  for (std::size_t index = 0; index < operands.size(); ++index) {
    const auto operand = operands[index].Text();
    if (!operand) continue;
    const SCRPropertyOperator propertyOperator = kReadingOrder[index];
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
