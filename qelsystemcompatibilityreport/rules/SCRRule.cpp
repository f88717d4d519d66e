// The rule as a value: construction, equality, identity.
#include "qelsystemcompatibilityreport/SCRRule.h"

#include <array>
#include <bit>
#include <cstddef>
#include <string_view>

#include "qelsystemcompatibilityreport/rules/PropertyOperator.h"

namespace qelsystemcompatibilityreport {

using qelcore::GetHashResult;
using qelcore::Guid;
using qelcore::HashValueMixerState;
using qelcore::MixHashGuidT;
using qelcore::UpdateHashState;

namespace {

void MixText(MixHashGuidT<HashValueMixerState>& state, std::string_view text) {
  UpdateHashState(state, text.data(), text.size());
}

/// The ranges' texts. Several are mixed in together, because each call of the mixer costs more than the
/// bytes.
void MixRanges(MixHashGuidT<HashValueMixerState>& state, const std::vector<VersionRange>& ranges) {
  std::array<char, 4 * VersionRange::kLongestText> room{};
  char* end = room.data();
  for (const VersionRange& range : ranges) {
    end = range.WriteTo(end);
    if (room.data() + room.size() - end >= std::ptrdiff_t{VersionRange::kLongestText}) continue;
    MixText(state, {room.data(), end});
    end = room.data();
  }
  MixText(state, {room.data(), end});
}

}  // namespace

SCRRule::SCRRule() = default;
SCRRule::SCRRule(const SCRRule&) = default;
SCRRule::SCRRule(SCRRule&&) noexcept = default;
SCRRule& SCRRule::operator=(const SCRRule&) = default;
SCRRule& SCRRule::operator=(SCRRule&&) noexcept = default;
SCRRule::~SCRRule() = default;

SCRRule::SCRRule(const std::string& jsonText) {
  FromJSONString(jsonText);
}

SCRRule::SCRRule(OSComponentType type, const std::string& name, const OSComponentVersion& version,
                 const OSComponentVersion& maxVersion, const OSComponentVersion& versionMask,
                 const OSComponentVersion& versionMod, const std::string& infoMessage,
                 const std::string& infoURL, const std::vector<SCRRule>& dependencies,
                 SCRRuleErrorLevel level)
    : SCRRule(type, name, std::vector<VersionRange>{VersionRange(version, maxVersion)}, versionMask,
              versionMod, infoMessage, infoURL, dependencies, level) {}

SCRRule::SCRRule(OSComponentType type, const std::string& name, const std::vector<VersionRange>& versions,
                 const OSComponentVersion& versionMask, const OSComponentVersion& versionMod,
                 const std::string& infoMessage, const std::string& infoURL,
                 const std::vector<SCRRule>& dependencies, SCRRuleErrorLevel level)
    : OSComponent(type, name, OSComponentVersion()),
      mInfoMessage(infoMessage),
      mInfoURL(infoURL),
      mVersions(versions),
      mVersionMask(versionMask),
      mVersionMod(versionMod),
      mDependencies(dependencies),
      mErrorLevel(level) {}

SCRRule::SCRRule(OSComponentType type, const std::string& name, const PropertyComparisons& comparisons,
                 const std::string& infoMessage, const std::string& infoURL,
                 const std::vector<SCRRule>& dependencies, SCRRuleErrorLevel level)
    : OSComponent(type, name, OSComponentVersion()),
      mInfoMessage(infoMessage),
      mInfoURL(infoURL),
      mDependencies(dependencies),
      mErrorLevel(level) {
  for (const auto& comparison : comparisons) {
    (ComparesIntegers(comparison.first) ? mIntegerComparisons : mStringComparisons).insert(comparison);
  }
}

SCRRule::PropertyComparisons SCRRule::GetPropertyComparisons() const {
  PropertyComparisons all = mStringComparisons;
  all.insert(mIntegerComparisons.begin(), mIntegerComparisons.end());
  return all;
}

bool SCRRule::IsSeriousError() const {
  return mErrorLevel >= SCRRuleErrorLevel::WARN;
}

void SCRRule::AdoptInfoIfNeeded(const std::string& message, const std::string& url) {
  if (!mInfoMessage.empty()) return;
  mInfoMessage = message;
  if (mInfoURL.empty()) mInfoURL = url;
}

bool SCRRule::operator==(const SCRRule& other) const {
  return static_cast<const OSComponent&>(*this) == static_cast<const OSComponent&>(other) &&
         mInfoMessage == other.mInfoMessage && mInfoURL == other.mInfoURL && mVersions == other.mVersions &&
         mVersionMask == other.mVersionMask && mVersionMod == other.mVersionMod &&
         mDependencies == other.mDependencies && mErrorLevel == other.mErrorLevel &&
         mStringComparisons == other.mStringComparisons && mIntegerComparisons == other.mIntegerComparisons;
}

bool SCRRule::operator!=(const SCRRule& other) const {
  return !(*this == other);
}

MixHashGuidT<HashValueMixerState> SCRRule::Hash() const {
  MixHashGuidT<HashValueMixerState> state = OSComponent::Hash();
  MixRanges(state, mVersions);
  MixText(state, mInfoMessage);
  MixText(state, mInfoURL);
  for (const SCRRule& dependency : mDependencies) {
    Guid dependencyHash;
    GetHashResult(dependency.Hash(), dependencyHash);
    UpdateHashState(state, dependencyHash.Bytes().data(), dependencyHash.Bytes().size());
  }
  static_assert(std::endian::native == std::endian::little, "identifiers must not depend on the machine");
  UpdateHashState(state, &mErrorLevel, sizeof mErrorLevel);
  return state;
}

std::string SCRRule::GetID() const {
  static const std::string prefix = "HASH:";
  std::string identifier = OSComponent::GetID();
  if (!identifier.empty()) return identifier;
  Guid hash;
  GetHashResult(Hash(), hash);
  return prefix + hash.AsUTF8String();
}

const std::string& SCRRule::ErrorLevelToString(SCRRuleErrorLevel level) {
  static const std::string info = "INFO";
  static const std::string warn = "WARN";
  static const std::string error = "ERROR";
  static const std::string fatal = "FATAL";
  switch (level) {
    case SCRRuleErrorLevel::WARN:
      return warn;
    case SCRRuleErrorLevel::ERROR:
      return error;
    case SCRRuleErrorLevel::FATAL:
      return fatal;
    case SCRRuleErrorLevel::INFO:
      break;
  }
  return info;
}

SCRRuleErrorLevel SCRRule::StringToErrorLevel(const std::string& text) {
  if (text == "ERROR") return SCRRuleErrorLevel::ERROR;
  if (text == "WARN") return SCRRuleErrorLevel::WARN;
  if (text == "FATAL") return SCRRuleErrorLevel::FATAL;
  return SCRRuleErrorLevel::INFO;
}

}  // namespace qelsystemcompatibilityreport
