// From a blocklist and a machine to issues.
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/qelcore/DebugDatabase.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/blocklist/HitOrder.h"
#include "qelsystemcompatibilityreport/blocklist/RuleList.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/Candidates.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The force switches of the debug settings, for as long as one match takes.
class ForcedMatching {
 public:
  ForcedMatching() {
    qelcore::DebugDatabase& settings = qelcore::DebugDatabase::Instance();
    SCRRule::ForceMatchByTypeForTesting(settings.GetBoolEntry(kForceBlocklistMatch.mKey));
    SCRRule::ForceMatchByNameForTesting(settings.GetBoolEntry(kForceBlocklistMatchByName.mKey));
  }
  ~ForcedMatching() {
    SCRRule::ForceMatchByTypeForTesting(false);
    SCRRule::ForceMatchByNameForTesting(false);
  }
  ForcedMatching(const ForcedMatching&) = delete;
  ForcedMatching& operator=(const ForcedMatching&) = delete;
};

/// The most bytes of messages and links that the issues of one match may hold together. A blocklist of a
/// megabyte can give a long text to thousands of issues, which each have their own.
constexpr std::size_t kMostTextOfIssues = 134'217'728;

/// True the first time in a process, false ever after. Not synchronised, as matching is not.
bool TakeFirstRematchOfProcess() {
  static bool isFirst = true;
  return std::exchange(isFirst, false);
}

}  // namespace

std::vector<SCRIssue> SCRBlocklist::MatchToOSComponents(const OSComponentRegistry& registry,
                                                        Guid& matchID) const {
  return AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::MatchToOSComponents",
                    std::vector<SCRIssue>(), [&] {
                      const ForcedMatching forced;
                      ExpressionBudget::Start();
                      std::vector<SCRIssue> issues = FindIssues(registry);
                      matchID = IdentifyMatch(registry);
                      return issues;
                    });
}

std::vector<SCRIssue> SCRBlocklist::FindIssues(const OSComponentRegistry& registry) const {
  std::vector<SCRRule> rules;
  std::vector<Hit> hits;
  std::size_t textSize = 0;
  Candidates candidates(registry);
  Rules().Visit([&](const SCRRule& rule) {
    if (rule.GetType() == OSComponentType::kInvalid) return;
    const auto components = rule.FindMatchingCandidates(candidates);
    if (components.empty()) return;
    const DefaultInfoAndURL& texts = GetDefaultInfoAndURL(rule.GetType());
    SCRRule& informed = rules.emplace_back(rule);
    informed.AdoptInfoIfNeeded(texts.info_message, texts.info_url);
    textSize += (informed.GetInfoMessage().size() + informed.GetInfoURL().size()) * components.size();
    if (textSize > kMostTextOfIssues) {
      throw std::length_error("the texts of the issues would take more than " +
                              std::to_string(kMostTextOfIssues) + " bytes");
    }
    for (const auto& component : components) hits.push_back({component, rules.size() - 1});
  });
  // Issues are large, so they are made when their places are known.
  SortHits(hits, rules);
  std::vector<SCRIssue> issues;
  issues.reserve(hits.size());
  for (const Hit& hit : hits) issues.emplace_back(*hit.mComponent, rules[hit.mRule]);
  return issues;
}

Guid SCRBlocklist::IdentifyMatch(const OSComponentRegistry& registry) const {
  qelcore::MixHashGuidT<qelcore::HashValueMixerState> state = Hash();
  const Guid registryHash = registry.Hash();
  qelcore::UpdateHashState(state, registryHash.Bytes().data(), registryHash.Bytes().size());
  Guid identifier;
  qelcore::GetHashResult(state, identifier);
  return identifier;
}

bool SCRBlocklist::NeedsRematch(const OSComponentRegistry& registry, const Guid& matchID) const {
  return AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::NeedsRematch", true, [&] {
    if (qelcore::DebugDatabase::Instance().GetBoolEntry(kForceBlocklistMatch.mKey)) return true;
    if (matchID == Guid()) return true;
    // Files are in no hash, so a process looks at them once.
    if (TakeFirstRematchOfProcess() && Rules().HasFileRule()) return true;
    return IdentifyMatch(registry) != matchID;
  });
}

}  // namespace qelsystemcompatibilityreport
