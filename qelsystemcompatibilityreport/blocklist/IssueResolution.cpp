#include "qelsystemcompatibilityreport/IssueResolution.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The issues of one identifier, of the level in question.
struct MarkedIssue {
  const SCRIssue* mFirst;
  std::string mID;
  bool mIsMarked = true;
};

/// Every identifier once, in the order of the issues.
std::vector<MarkedIssue> IssuesOfLevel(SCRRuleErrorLevel level, const std::vector<SCRIssue>& issues) {
  std::vector<MarkedIssue> ofLevel;
  std::unordered_set<std::string> known;
  for (const SCRIssue& issue : issues) {
    if (issue.GetErrorLevel() != level) continue;
    const auto [id, isNew] = known.insert(issue.GetID());
    if (isNew) ofLevel.push_back({&issue, *id});
  }
  return ofLevel;
}

}  // namespace

ResolutionLogger::ResolutionLogger() = default;

ResolutionLogger::ResolutionLogger(IssueCallback onNew, IssueCallback onExisting, ResolvedCallback onResolved)
    : mOnNew(std::move(onNew)), mOnExisting(std::move(onExisting)), mOnResolved(std::move(onResolved)) {}

ResolutionLogger::ResolutionLogger(const ResolutionLogger&) = default;
ResolutionLogger& ResolutionLogger::operator=(const ResolutionLogger&) = default;
ResolutionLogger::~ResolutionLogger() = default;

void ResolutionLogger::LogNewIssue(const SCRIssue& issue) const {
  if (mOnNew) mOnNew(issue);
}

void ResolutionLogger::LogExistingIssue(const SCRIssue& issue) const {
  if (mOnExisting) mOnExisting(issue);
}

void ResolutionLogger::LogResolvedIssue(SCRRuleErrorLevel level, const std::string& id) const {
  if (mOnResolved) mOnResolved(level, id);
}

bool ResolveIssuesOfErrorLevel(SCRRuleErrorLevel level, const std::vector<SCRIssue>& issues,
                               std::vector<std::string>& rememberedIDs, const ResolutionLogger& logger) {
  return AtBoundary("qelsystemcompatibilityreport::ResolveIssuesOfErrorLevel", false, [&] {
    std::vector<MarkedIssue> present = IssuesOfLevel(level, issues);
    std::unordered_map<std::string_view, MarkedIssue*> presentByID;
    for (MarkedIssue& issue : present) presentByID.emplace(issue.mID, &issue);
    std::vector<std::string> kept;

    for (const std::string& id : rememberedIDs) {
      const auto found = presentByID.find(id);
      if (found != presentByID.end() && std::exchange(found->second->mIsMarked, false)) {
        kept.push_back(id);
        logger.LogExistingIssue(*found->second->mFirst);
      } else {
        logger.LogResolvedIssue(level, id);
      }
    }

    bool foundNew = false;
    for (MarkedIssue& issue : present) {
      if (!issue.mIsMarked) continue;
      kept.push_back(issue.mID);
      logger.LogNewIssue(*issue.mFirst);
      foundNew = true;
    }
    rememberedIDs = std::move(kept);
    return foundNew;
  });
}

}  // namespace qelsystemcompatibilityreport
