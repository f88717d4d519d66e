// The functions that a host calls.
#include <mutex>
#include <utility>

#include "platform/qelappsupport.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/TraceSite.h"
#include "qelsystemcompatibilityreport/report/analytics/AnalyticsEvents.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"
#include "qelsystemcompatibilityreport/report/run/ReportRun.h"
#include "qelsystemcompatibilityreport/report/run/SecondWarning.h"
#include "qelsystemcompatibilityreport/report/startup/Features.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"

namespace qelsystemcompatibilityreport {

namespace {

/// Asks the host once in a process whether system properties take part.
void SetUpFeatures() {
  static std::once_flag once;
  std::call_once(once, [] {
    OSComponent::EnableSupportProperties(qelappsupport::IsFeatureEnabled(kPropertiesFeature));
  });
}

void TraceFailure() {
  static TraceSite site(TraceSite::kError);
  site.Write([] { return "System Compatibility Report returned an error."; });
}

void SaveOrTrace(RunResult result, const SCRPriorState& priorState) {
  switch (result) {
    case RunResult::kRanAndChanged:
      SavePriorStateToPrefsDir(priorState);
      break;
    case RunResult::kRan:
      break;
    case RunResult::kFailed:
      TraceFailure();
      break;
  }
}

/// The run at launch, but for the statistics.
void RunAtLaunch(const std::u16string& applicationName, qelui::OS_Window* parentWindow) {
  SetUpFeatures();
  const qelcore::filesupport::File blocklistFile = SelectBlocklistFile();
  if (!blocklistFile.Exists()) {
    static TraceSite site(TraceSite::kWarning);
    site.Write([] { return "Unable to find blocklist file, System Compatibility Report skipped."; });
    return;
  }
  SCRPriorState priorState;
  LoadPriorStateFromPrefsDir(priorState);
  std::string secondWarning;
  const RunResult result = RunReportOnBlocklistFile(
      {.mParentWindow = parentWindow, .mApplicationName = applicationName, .mMode = RunMode::kLaunch},
      blocklistFile, priorState, secondWarning);
  SaveOrTrace(result, priorState);
  ShowSecondWarning(secondWarning, parentWindow);
}

/// A run that somebody asked for.
void RunReport(const std::u16string& applicationName, qelui::OS_Window* parentWindow,
               const std::u16string& outputPath, RunMode mode) {
  if (!ReportsEnabled()) return;
  // The quoted words are part of the name under which failures are known.
  AtBoundary("qelsystemcompatibilityreport::`anonymous-namespace'::RunReport", [&] {
    SetUpFeatures();
    SCRPriorState priorState;
    LoadPriorStateFromPrefsDir(priorState);
    const RunRequest request{.mParentWindow = parentWindow,
                             .mApplicationName = applicationName,
                             .mOutputPath = outputPath,
                             .mMode = mode,
                             .mRegistry = OSComponentRegistry::Get(true)};
    std::string secondWarning;
    SaveOrTrace(RunReportOnBlocklistFile(request, SelectBlocklistFile(), priorState, secondWarning),
                priorState);
  });
}

std::uint64_t CountIssues(SCRRuleErrorLevel level) {
  return ReportsEnabled() ? ReportStatistics::Instance().Remaining(level) : 0;
}

}  // namespace

void RunReportForStartup(const std::u16string& applicationName, qelui::OS_Window* parentWindow) {
  if (!ReportsEnabled()) return;
  AtBoundary("qelsystemcompatibilityreport::RunReportForStartup",
             [&] { RunAtLaunch(applicationName, parentWindow); });
  LogToAnalytics();
}

void RunReportForHelp(const std::u16string& applicationName, qelui::OS_Window* parentWindow) {
  RunReport(applicationName, parentWindow, {}, RunMode::kHelp);
}

void RunReportToFile(const std::u16string& applicationName, const std::u16string& outputPath) {
  RunReport(applicationName, nullptr, outputPath, RunMode::kFile);
}

bool GetAllowDisplayReportAtStartup() {
  if (!ReportsEnabled()) return false;
  SCRPriorState priorState;
  LoadPriorStateFromPrefsDir(priorState);
  return priorState.mShowIssuesAtStartup;
}

void SetAllowDisplayReportAtStartup(bool allow) {
  if (!ReportsEnabled()) return;
  AtBoundary("qelsystemcompatibilityreport::SetAllowDisplayReportAtStartup", [&] {
    LogDisplaySettingEvent(allow);
    SCRPriorState priorState;
    LoadPriorStateFromPrefsDir(priorState);
    priorState.mDialogDisableReason = 0;
    priorState.mShowIssuesAtStartup = allow;
    ReportStatistics::Instance().mShowReportAtLaunch = allow;
    SavePriorStateToPrefsDir(priorState);
  });
}

std::uint64_t CountInfoIncompatibilities() {
  return CountIssues(SCRRuleErrorLevel::INFO);
}
std::uint64_t CountWarnIncompatibilities() {
  return CountIssues(SCRRuleErrorLevel::WARN);
}
std::uint64_t CountErrorIncompatibilities() {
  return CountIssues(SCRRuleErrorLevel::ERROR);
}
std::uint64_t CountFatalIncompatibilities() {
  return CountIssues(SCRRuleErrorLevel::FATAL);
}

}  // namespace qelsystemcompatibilityreport
