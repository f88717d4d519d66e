// From a blocklist and a machine to issues.
#include <algorithm>
#include <utility>

#include "platform/qelcore/DebugDatabase.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
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

/// True the first time in a process, false ever after. Not synchronised, as matching is not.
bool TakeFirstRematchOfProcess() {
  static bool isFirst = true;
  return std::exchange(isFirst, false);
}

/// In order. An issue is large, so pointers are what changes places while it is sorted.
std::vector<SCRIssue> Sorted(std::vector<SCRIssue> issues) {
  std::vector<SCRIssue*> places;
  places.reserve(issues.size());
  for (SCRIssue& issue : issues) places.push_back(&issue);
  std::sort(places.begin(), places.end(),
            [](const SCRIssue* left, const SCRIssue* right) { return *left < *right; });
  std::vector<SCRIssue> sorted;
  sorted.reserve(issues.size());
  for (SCRIssue* const issue : places) sorted.push_back(std::move(*issue));
  return sorted;
}

}  // namespace

std::vector<SCRIssue> SCRBlocklist::MatchToOSComponents(const OSComponentRegistry& registry,
                                                        Guid& matchID) const {
  return AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::MatchToOSComponents",
                    std::vector<SCRIssue>(), [&] {
                      const ForcedMatching forced;
                      ExpressionBudget::Start();
                      std::vector<SCRIssue> issues = Sorted(FindIssues(registry));
                      matchID = IdentifyMatch(registry);
                      return issues;
                    });
}

std::vector<SCRIssue> SCRBlocklist::FindIssues(const OSComponentRegistry& registry) const {
  std::vector<SCRIssue> issues;
  Candidates candidates(registry);
  for (const SCRRule& rule : mRules) {
    if (rule.GetType() == OSComponentType::kInvalid) continue;
    for (const auto& component : rule.FindMatchingCandidates(candidates)) {
      SCRRule informed = rule;
      const DefaultInfoAndURL& texts = GetDefaultInfoAndURL(informed.GetType());
      informed.AdoptInfoIfNeeded(texts.info_message, texts.info_url);
      issues.emplace_back(*component, informed);
    }
  }
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
    const bool hasFileRule = std::any_of(mRules.begin(), mRules.end(), [](const SCRRule& rule) {
      return rule.GetType() == OSComponentType::kFile;
    });
    // Files are in no hash, so a process looks at them once.
    if (TakeFirstRematchOfProcess() && hasFileRule) return true;
    return IdentifyMatch(registry) != matchID;
  });
}

}  // namespace qelsystemcompatibilityreport
