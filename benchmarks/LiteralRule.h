// A rule as the rules of matching read, word for word: what is not demanded is not saved.
#pragma once

#include <any>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"

namespace benchmarks {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;

/// The first two or both ends may be empty.
struct LiteralRange {
  OSComponentVersion mMinimum;
  OSComponentVersion mMaximum;

  [[nodiscard]] bool Holds(const OSComponentVersion& version) const;
  [[nodiscard]] std::string ToString() const;
  [[nodiscard]] static LiteralRange FromText(const std::string& text);
};

/// What file rules found, by the rule's name.
using LiteralFiles = std::map<std::string, std::shared_ptr<OSComponent>>;

class LiteralRule : public OSComponent {
 public:
  using Hits = std::vector<std::shared_ptr<OSComponent>>;

  /// Throws when the value is no valid rule.
  explicit LiteralRule(const qelcore::json::Dictionary& object);

  [[nodiscard]] qelcore::MixHashGuidT<qelcore::HashValueMixerState> Hash() const override;
  [[nodiscard]] std::string GetID() const override;

  [[nodiscard]] int GetErrorLevel() const { return mErrorLevel; }
  [[nodiscard]] std::string GetInfoMessage() const { return mInfoMessage; }
  [[nodiscard]] std::string GetInfoURL() const { return mInfoURL; }
  void AdoptInfoIfNeeded(const std::string& message, const std::string& url);

  [[nodiscard]] Hits FindMatchingOSComponents(const OSComponentRegistry& registry, LiteralFiles& files) const;

 private:
  [[nodiscard]] bool IsHit(const OSComponent& candidate, const OSComponentRegistry& registry,
                           LiteralFiles& files) const;
  [[nodiscard]] bool MatchesVersion(const OSComponent& candidate) const;
  [[nodiscard]] bool MatchesName(const OSComponent& candidate) const;
  [[nodiscard]] bool MatchesProperty(const OSComponent& candidate) const;

  std::string mInfoMessage;
  std::string mInfoURL;
  std::vector<LiteralRange> mVersions;
  OSComponentVersion mVersionMask;
  OSComponentVersion mVersionMod;
  std::vector<LiteralRule> mDependencies;
  int mErrorLevel = 0;
  std::map<int, std::string> mStringComparisons;
  std::map<int, std::string> mIntegerComparisons;
};

}  // namespace benchmarks
