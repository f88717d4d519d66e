#include "qelsystemcompatibilityreport/IssueResolution.h"

#include <utility>

#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

namespace {

/// An issue of the level in question, with its identifier, which is costly to make.
struct MarkedIssue {
  const SCRIssue* mIssue;
  std::string mID;
  bool mIsMarked = true;
};

std::vector<MarkedIssue> IssuesOfLevel(SCRRuleErrorLevel level, const std::vector<SCRIssue>& issues) {
  std::vector<MarkedIssue> ofLevel;
  for (const SCRIssue& issue : issues) {
    if (issue.GetErrorLevel() == level) ofLevel.push_back({&issue, issue.GetID()});
  }
  return ofLevel;
}

/// Takes the mark from every marked issue of this identifier and returns the first of them, or null.
const SCRIssue* Unmark(std::vector<MarkedIssue>& issues, const std::string& id) {
  const SCRIssue* first = nullptr;
  for (MarkedIssue& issue : issues) {
    if (!issue.mIsMarked || issue.mID != id) continue;
    issue.mIsMarked = false;
    if (first == nullptr) first = issue.mIssue;
  }
  return first;
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
    std::vector<std::string> kept;

    for (const std::string& id : rememberedIDs) {
      if (const SCRIssue* const issue = Unmark(present, id)) {
        kept.push_back(id);
        logger.LogExistingIssue(*issue);
      } else {
        logger.LogResolvedIssue(level, id);
      }
    }

    bool foundNew = false;
    for (const MarkedIssue& issue : present) {
      if (!issue.mIsMarked) continue;
      kept.push_back(issue.mID);
      logger.LogNewIssue(*issue.mIssue);
      static_cast<void>(Unmark(present, kept.back()));
      foundNew = true;
    }
    rememberedIDs = std::move(kept);
    return foundNew;
  });
}

}  // namespace qelsystemcompatibilityreport
