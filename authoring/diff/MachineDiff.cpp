#include "authoring/diff/MachineDiff.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "qelsystemcompatibilityreport/IssueResolution.h"

namespace authoring {

using qelcore::utility::ComponentTypeToString;
using qelcore::utility::OSComponentRegistry;
using qelsystemcompatibilityreport::ResolutionLogger;
using qelsystemcompatibilityreport::ResolveIssuesOfErrorLevel;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;

namespace {

/// The gravest first, as issues are shown; the levels do not depend on each other.
constexpr std::array kLevels = {SCRRuleErrorLevel::FATAL, SCRRuleErrorLevel::ERROR, SCRRuleErrorLevel::WARN,
                                SCRRuleErrorLevel::INFO};

using Issues = std::vector<SCRIssue>;

Issues Match(const SCRBlocklist& blocklist, const OSComponentRegistry& registry) {
  // Nothing that files were for another list or machine may answer here.
  SCRRule::ForgetFileComponents();
  qelcore::Guid matchID;
  Issues issues = blocklist.MatchToOSComponents(registry, matchID);
  if (matchID == qelcore::Guid()) throw std::runtime_error("the machine could not be matched");
  return issues;
}

/// The issues of a match, gathered by identifier.
class GatheredIssues {
 public:
  GatheredIssues(const Issues& issues, const ComparedList& list) : mList(list) {
    for (const SCRIssue& issue : issues) {
      std::string id = issue.GetID();
      IssueChange& change = mByID[id];
      if (change.mComponents.empty()) {
        change.mLevel = issue.GetErrorLevel();
        change.mKind = ComponentTypeToString(issue.GetType());
        change.mMessage = issue.GetInfoMessage();
        change.mURL = issue.GetInfoURL();
        change.mRule = mList.FindRule(id);
        change.mID = std::move(id);
      }
      change.mComponents.push_back(
          {issue.GetName(), issue.GetVersion().ToString(), issue.GetPropertyValue()});
    }
  }

  [[nodiscard]] const IssueChange& Find(const std::string& id) const { return mByID.at(id); }

 private:
  const ComparedList& mList;
  std::unordered_map<std::string, IssueChange> mByID;
};

std::vector<HitComponent> Sorted(std::vector<HitComponent> components) {
  std::sort(components.begin(), components.end());
  return components;
}

/// Tells of new and resolved issues that are those of one rule, under two identifiers.
void LinkRenamed(MachineDiff& diff, const ListDiff& lists) {
  std::unordered_map<std::string, IssueChange*> resolved;
  for (IssueChange& change : diff.mResolved) resolved.emplace(change.mID, &change);
  for (IssueChange& change : diff.mNew) {
    for (const std::string& id : lists.FormerIDs(change.mID)) {
      const auto found = resolved.find(id);
      if (found == resolved.end()) continue;
      change.mOtherIDs.insert(id);
      found->second->mOtherIDs.insert(change.mID);
    }
  }
}

}  // namespace

bool IssueChange::HasOtherComponents() const {
  return !mFormerComponents.empty() && Sorted(mComponents) != Sorted(mFormerComponents);
}

bool MachineDiff::IsEmpty() const {
  return mNew.empty() && mResolved.empty() &&
         std::none_of(mOngoing.begin(), mOngoing.end(),
                      [](const IssueChange& change) { return change.HasOtherComponents(); });
}

MachineDiff CompareOnMachine(const BlocklistPair& blocklists, const ListDiff& lists,
                             const OSComponentRegistry& registry) {
  const Issues oldIssues = Match(blocklists.mOld, registry);
  const Issues newIssues = Match(blocklists.mNew, registry);
  const GatheredIssues before(oldIssues, lists.Old());
  const GatheredIssues after(newIssues, lists.New());
  MachineDiff diff;
  const ResolutionLogger logger(
      [&](const SCRIssue& issue) { diff.mNew.push_back(after.Find(issue.GetID())); },
      [&](const SCRIssue& issue) {
        IssueChange& change = diff.mOngoing.emplace_back(after.Find(issue.GetID()));
        change.mFormerComponents = before.Find(change.mID).mComponents;
      },
      [&](SCRRuleErrorLevel, const std::string& id) { diff.mResolved.push_back(before.Find(id)); });
  bool isSeriousRemembered = false;
  for (const SCRRuleErrorLevel level : kLevels) {
    std::vector<std::string> remembered;
    static_cast<void>(ResolveIssuesOfErrorLevel(level, oldIssues, remembered, ResolutionLogger()));
    isSeriousRemembered |= level != SCRRuleErrorLevel::INFO && !remembered.empty();
    static_cast<void>(ResolveIssuesOfErrorLevel(level, newIssues, remembered, logger));
  }
  LinkRenamed(diff, lists);
  diff.mIsMatchedAtLaunch = isSeriousRemembered || lists.IsSeenAtLaunch();
  return diff;
}

}  // namespace authoring
