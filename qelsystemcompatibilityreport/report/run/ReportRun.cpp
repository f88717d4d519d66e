#include "qelsystemcompatibilityreport/report/run/ReportRun.h"

#include <array>
#include <mutex>
#include <utility>

#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/dialogs/ReportDialog.h"
#include "qelsystemcompatibilityreport/report/analytics/AnalyticsEvents.h"
#include "qelsystemcompatibilityreport/report/analytics/IssuesTrail.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"

namespace qelsystemcompatibilityreport {

using qelcore::filesupport::File;

namespace {

/// Takes the counts over from the remembered state. A level that went down counts what was resolved; one that
/// did not keeps the value it had. That is intended.
void CountIssues(const SCRPriorState& state) {
  ReportStatistics& statistics = ReportStatistics::Instance();
  for (const SCRRuleErrorLevel level : kErrorLevels) {
    const std::uint64_t before = statistics.Remaining(level);
    const std::uint64_t now = state.MatchesOfLevel(level).size();
    if (now < before) statistics.Resolved(level) = before - now;
    statistics.Remaining(level) = now;
  }
}

void SetCounts(const SCRPriorState& state) {
  for (const SCRRuleErrorLevel level : kErrorLevels) {
    ReportStatistics::Instance().Remaining(level) = state.MatchesOfLevel(level).size();
  }
}

bool HasSeriousIssues() {
  ReportStatistics& statistics = ReportStatistics::Instance();
  return statistics.Remaining(SCRRuleErrorLevel::WARN) != 0 ||
         statistics.Remaining(SCRRuleErrorLevel::ERROR) != 0 ||
         statistics.Remaining(SCRRuleErrorLevel::FATAL) != 0;
}

/// Compares the issues with those that are remembered, level by level. Returns whether anything new was
/// found.
bool ResolveIssues(const std::vector<SCRIssue>& issues, SCRPriorState& state) {
  bool foundNew = false;
  for (const SCRRuleErrorLevel level : kErrorLevels) {
    // Every level has its turn, whatever the one before found.
    foundNew |=
        ResolveIssuesOfErrorLevel(level, issues, state.MatchesOfLevel(level), ReportAnalyticsLogger());
  }
  return foundNew;
}

void LeaveIssuesTrailOnce(const SCRPriorState& state) {
  static std::once_flag once;
  std::call_once(once, [&] { LeaveIssuesTrail(state); });
}

/// Shows the report, unless this is a launch and the user does not want to see it then.
ReportViewOutcome Present(const RunRequest& request, const SCRPriorState& state,
                          const TextReportWriter& writer, std::vector<SCRIssue> issues,
                          bool blocklistIsMissing) {
  ReportStatistics& statistics = ReportStatistics::Instance();
  ++statistics.mNumberOfTimesReportPresented;
  if (!IsNotAtLaunch(request.mMode)) {
    statistics.mReportPresentedAtLaunch = true;
    statistics.mShowReportAtLaunch = state.mShowIssuesAtStartup;
    if (!state.mShowIssuesAtStartup) {
      statistics.mReportPresentedAtLaunch = false;
      statistics.mReportSkippedAtLaunch = true;
      return ReportViewOutcome::kSuppressedBySetting;
    }
  }
  request.mPresent(
      {request.mParentWindow, request.mApplicationName, std::move(issues), writer, blocklistIsMissing});
  return ReportViewOutcome::kDisplayed;
}

/// Writes the text report. Returns false after a failure, which is logged.
bool WriteOutput(const std::u16string& path, const TextReportWriter& writer) {
  return AtBoundary("qelsystemcompatibilityreport::RunReport", false, [&] {
    const File output(path);
    output.Create();
    writer(output);
    return true;
  });
}

}  // namespace

void ShowReport(const ReportPresentation& presentation) {
  RunReportDialog(presentation.mParentWindow, presentation.mApplicationName, presentation.mIssues,
                  presentation.mTextWriter, presentation.mBlocklistIsMissing);
}

RunResult RunReportOnBlocklistFile(const RunRequest& request, const File& blocklistFile,
                                   SCRPriorState& priorState, std::string& secondWarning) {
  std::string text;
  if (blocklistFile.Exists()) {
    text = qelcore::filesupport::IPlatformByteStream(blocklistFile).ReadAll();
    if (text.empty()) return RunResult::kFailed;
  } else if (!IsRequested(request.mMode)) {
    return RunResult::kFailed;
  }
  return RunReport(request, std::move(text), priorState, secondWarning);
}

RunResult RunReport(const RunRequest& request, std::string blocklistText, SCRPriorState& priorState,
                    std::string& secondWarning) {
  const bool blocklistIsMissing = blocklistText.empty();
  if (blocklistIsMissing && !IsRequested(request.mMode)) return RunResult::kFailed;
  const std::shared_ptr<const OSComponentRegistry> registry =
      request.mRegistry ? request.mRegistry : OSComponentRegistry::Get(false);
  if (!registry) return RunResult::kFailed;

  ++ReportStatistics::Instance().mNumberOfTimesReportRan;
  SetCounts(priorState);

  RunResult result = RunResult::kRan;
  std::vector<SCRIssue> issues;
  bool foundNew = false;
  if (!blocklistIsMissing) {
    const SCRBlocklist blocklist(std::move(blocklistText));
    secondWarning = blocklist.GetSecondWarning();
    if (!IsRequested(request.mMode) && !HasSeriousIssues() &&
        !blocklist.NeedsRematch(*registry, priorState.mLastMatchJob)) {
      LogReportDisplayEvent(IsNotAtLaunch(request.mMode), ReportViewOutcome::kNotNeeded);
      return RunResult::kRan;
    }
    Guid matchJob;
    issues = blocklist.MatchToOSComponents(*registry, matchJob);
    foundNew = ResolveIssues(issues, priorState);
    priorState.mLastMatchJob = matchJob;
    result = RunResult::kRanAndChanged;
  }

  CountIssues(priorState);
  LeaveIssuesTrailOnce(priorState);

  ReportViewOutcome outcome = ReportViewOutcome::kNotNeeded;
  if (IsRequested(request.mMode) || HasSeriousIssues() || foundNew) {
    const TextReportWriter writer(registry, issues);
    if (request.mOutputPath.empty()) {
      outcome = Present(request, priorState, writer, std::move(issues), blocklistIsMissing);
    } else if (!WriteOutput(request.mOutputPath, writer)) {
      result = RunResult::kFailed;
    }
  }
  LogReportDisplayEvent(IsNotAtLaunch(request.mMode), outcome);
  return result;
}

}  // namespace qelsystemcompatibilityreport
