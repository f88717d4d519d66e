#include "benchmarks/LiteralRule.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <stdexcept>
#include <utility>

#include "platform/qelcore/FileUtils.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Trace.h"

namespace benchmarks {

namespace json = qelcore::json;

namespace {

using State = qelcore::MixHashGuidT<qelcore::HashValueMixerState>;

constexpr std::array<const char*, 13> kOperators{"eq",  "ne",  "lt",   "lte", "gt",   "gte",  "ieq",
                                                 "ine", "ilt", "ilte", "igt", "igte", "regex"};
constexpr int kFirstIntegerOperator = 6;
constexpr int kRegularExpression = 12;

std::string TextOrEmpty(const json::Dictionary& object, const std::string& key) {
  const std::string* const text = json::FindText(object, key);
  return text == nullptr ? std::string() : *text;
}

void Mix(State& state, const std::string& text) {
  qelcore::UpdateHashState(state, text.data(), text.size());
}

qelcore::Guid Finish(const State& state) {
  qelcore::Guid result;
  qelcore::GetHashResult(state, result);
  return result;
}

int Compare(long long left, long long right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

bool Holds(int propertyOperator, int comparison) {
  switch (propertyOperator % kFirstIntegerOperator) {
    case 0:
      return comparison == 0;
    case 1:
      return comparison != 0;
    case 2:
      return comparison < 0;
    case 3:
      return comparison <= 0;
    case 4:
      return comparison > 0;
    default:
      return comparison >= 0;
  }
}

int LevelFrom(const std::string& text) {
  return text == "WARN" ? 1 : text == "ERROR" ? 2 : text == "FATAL" ? 3 : 0;
}

std::shared_ptr<OSComponent> FindFile(const std::string& name) {
  std::string path = name;
  if (path.empty() || qelcore::utility::FileUtils::ConvertEnvPath(path) != 0) return nullptr;
  const std::u16string wide = qelcore::string::UTF8to16(path);
  if (!qelcore::filesupport::File(wide).Exists() && !qelcore::filesupport::Dir(wide).Exists()) return nullptr;
  return std::make_shared<OSComponent>(OSComponentType::kFile, path,
                                       OSComponentVersion(qelcore::utility::FileUtils::GetFileVersion(path)));
}

}  // namespace

bool LiteralRange::Holds(const OSComponentVersion& version) const {
  if (!mMinimum && !mMaximum) return true;
  if (!mMaximum) return version == mMinimum;
  return version >= mMinimum && version <= mMaximum;
}

std::string LiteralRange::ToString() const {
  if (!mMinimum && !mMaximum) return {};
  return mMaximum ? mMinimum.ToString() + "-" + mMaximum.ToString() : mMinimum.ToString();
}

LiteralRange LiteralRange::FromText(const std::string& text) {
  std::string copy;
  std::size_t hyphen = std::string::npos;
  for (const char character : text) {
    if (character == ' ') continue;
    if (character == '-' && hyphen == std::string::npos) hyphen = copy.size();
    copy += character;
  }
  if (copy.empty()) return {};
  if (hyphen == std::string::npos) return {OSComponentVersion(copy), OSComponentVersion()};
  return {OSComponentVersion(copy.substr(0, hyphen)), OSComponentVersion(copy.substr(hyphen + 1))};
}

LiteralRule::LiteralRule(const json::Dictionary& object) {
  if (!OSComponent::FromJSON(object)) throw std::runtime_error("a rule is not valid");
  const auto formatVersion = json::FindInteger(object, "osblc_version");
  if (formatVersion && static_cast<std::uint32_t>(*formatVersion) == 0) {
    throw std::runtime_error("a rule has the version 0");
  }
  if (GetType() == OSComponentType::kProperty) {
    for (std::size_t index = 0; index < kOperators.size(); ++index) {
      if (!json::Has(object, kOperators[index])) continue;
      const int propertyOperator = static_cast<int>(index);
      const bool isInteger =
          propertyOperator >= kFirstIntegerOperator && propertyOperator < kRegularExpression;
      (isInteger ? mIntegerComparisons : mStringComparisons)
          .emplace(propertyOperator, TextOrEmpty(object, kOperators[index]));
    }
  } else {
    if (const auto texts = json::FindTexts(object, "versions")) {
      for (const std::string& text : *texts) mVersions.push_back(LiteralRange::FromText(text));
    }
    if (mVersions.empty()) {
      const std::string most = TextOrEmpty(object, "max_version");
      if (!most.empty()) {
        mVersions.push_back({GetVersion(), OSComponentVersion(most)});
      } else if (GetVersion()) {
        mVersions.push_back({GetVersion(), OSComponentVersion()});
      }
    }
    mVersionMask = OSComponentVersion(TextOrEmpty(object, "version_mask"));
    mVersionMod = OSComponentVersion(TextOrEmpty(object, "version_mod"));
  }
  mInfoMessage = TextOrEmpty(object, "info_message");
  mInfoURL = TextOrEmpty(object, "info_url");
  if (const json::Array* const dependencies = json::FindArray(object, "dependencies")) {
    for (const std::any& dependency : *dependencies) {
      mDependencies.emplace_back(json::AsDictionary(dependency));
    }
  }
  mErrorLevel = LevelFrom(TextOrEmpty(object, "error_level"));
}

State LiteralRule::Hash() const {
  State state = OSComponent::Hash();
  for (const LiteralRange& range : mVersions) Mix(state, range.ToString());
  Mix(state, mInfoMessage);
  Mix(state, mInfoURL);
  for (const LiteralRule& dependency : mDependencies) {
    const qelcore::Guid hash = Finish(dependency.Hash());
    qelcore::UpdateHashState(state, hash.Bytes().data(), hash.Bytes().size());
  }
  const std::int32_t level = mErrorLevel;
  qelcore::UpdateHashState(state, &level, sizeof level);
  return state;
}

std::string LiteralRule::GetID() const {
  const std::string own = OSComponent::GetID();
  return own.empty() ? "HASH:" + Finish(Hash()).AsUTF8String() : own;
}

void LiteralRule::AdoptInfoIfNeeded(const std::string& message, const std::string& url) {
  if (!mInfoMessage.empty()) return;
  mInfoMessage = message;
  if (mInfoURL.empty()) mInfoURL = url;
}

LiteralRule::Hits LiteralRule::FindMatchingOSComponents(const OSComponentRegistry& registry,
                                                        LiteralFiles& files) const {
  Hits candidates;
  if (GetType() == OSComponentType::kFile) {
    const auto known = files.find(GetName());
    const auto component =
        known != files.end() ? known->second : files.emplace(GetName(), FindFile(GetName())).first->second;
    if (component) candidates.push_back(component);
  } else {
    candidates = registry.GetComponentsOfType(GetType());
  }
  Hits hits;
  for (const auto& candidate : candidates) {
    if (IsHit(*candidate, registry, files)) hits.push_back(candidate);
  }
  return hits;
}

bool LiteralRule::IsHit(const OSComponent& candidate, const OSComponentRegistry& registry,
                        LiteralFiles& files) const {
  if (GetType() == OSComponentType::kProperty) {
    if (!OSComponent::SupportsProperties() || !MatchesProperty(candidate)) return false;
  } else {
    if (!MatchesVersion(candidate)) return false;
    if (GetType() != OSComponentType::kFile && !MatchesName(candidate)) return false;
  }
  for (const LiteralRule& dependency : mDependencies) {
    if (dependency.FindMatchingOSComponents(registry, files).empty()) return false;
  }
  return true;
}

bool LiteralRule::MatchesVersion(const OSComponent& candidate) const {
  OSComponentVersion version = candidate.GetVersion();
  if (mVersionMask) version = version & mVersionMask;
  if (mVersionMod) version = version % mVersionMod;
  if (mVersions.empty()) return true;
  for (const LiteralRange& range : mVersions) {
    if (range.Holds(version)) return true;
  }
  return false;
}

bool LiteralRule::MatchesName(const OSComponent& candidate) const {
  const std::string name = GetName();
  const std::string candidateName = candidate.GetName();
  if (name.empty() || candidateName.empty()) return false;
  if (name == candidateName) return true;
  try {
    return std::regex_match(candidateName, std::regex(name));
  } catch (...) {
    qelcore::LogException(std::current_exception(), "LiteralRule::MatchesName");
    return false;
  }
}

bool LiteralRule::MatchesProperty(const OSComponent& candidate) const {
  if (candidate.GetName() != GetName()) return false;
  const std::string value = candidate.GetPropertyValue();
  try {
    if (!mStringComparisons.empty()) {
      bool allHold = true;
      for (const auto& [propertyOperator, operand] : mStringComparisons) {
        allHold &= propertyOperator == kRegularExpression
                       ? std::regex_match(value, std::regex(operand))
                       : benchmarks::Holds(propertyOperator, value.compare(operand));
      }
      return allHold;
    }
  } catch (...) {
    qelcore::LogException(std::current_exception(), "LiteralRule::MatchesProperty");
    return false;
  }
  for (const auto& [propertyOperator, operand] : mIntegerComparisons) {
    const int comparison =
        Compare(std::strtoll(value.c_str(), nullptr, 10), std::strtoll(operand.c_str(), nullptr, 10));
    if (!benchmarks::Holds(propertyOperator, comparison)) return false;
  }
  return true;
}

}  // namespace benchmarks
