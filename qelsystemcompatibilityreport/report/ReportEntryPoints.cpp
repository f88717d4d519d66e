// The functions that a host calls.
#include <mutex>
#include <utility>

#include "platform/qelappsupport.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/TraceSite.h"
#include "qelsystemcompatibilityreport/report/AnalyticsEvents.h"
#include "qelsystemcompatibilityreport/report/BlocklistLocations.h"
#include "qelsystemcompatibilityreport/report/PriorState.h"
#include "qelsystemcompatibilityreport/report/ReportRun.h"
#include "qelsystemcompatibilityreport/report/ReportStatistics.h"

namespace qelsystemcompatibilityreport {

namespace {

/// Asks the host once in a process whether system properties take part.
void SetUpFeatures() {
  static std::once_flag once;
  std::call_once(once, [] {
    OSComponent::EnableSupportProperties(
        qelappsupport::IsFeatureEnabled("qelsystemcompatibilityreport.properties"));
  });
}

/// A run that somebody asked for.
void RunReport(RunRequest request) {
  if (!ReportsEnabled()) return;
  // The quoted words are part of the name under which failures are known.
  AtBoundary("qelsystemcompatibilityreport::`anonymous-namespace'::RunReport", [&] {
    SetUpFeatures();
    SCRPriorState priorState;
    LoadPriorStateFromPrefsDir(priorState);
    request.mRegistry = OSComponentRegistry::Get(true);
    std::string secondWarning;
    switch (RunReportOnBlocklistFile(request, SelectBlocklistFile(), priorState, secondWarning)) {
      case RunResult::kRanAndChanged:
        SavePriorStateToPrefsDir(priorState);
        break;
      case RunResult::kRan:
        break;
      case RunResult::kFailed: {
        static TraceSite site(TraceSite::kError);
        site.Write([] { return "System Compatibility Report returned an error."; });
        break;
      }
    }
  });
}

std::uint64_t CountIssues(SCRRuleErrorLevel level) {
  return ReportsEnabled() ? ReportStatistics::Instance().Remaining(level) : 0;
}

}  // namespace

void RunReportToFile(const std::u16string& applicationName, const std::u16string& outputPath) {
  RunReport({.mApplicationName = applicationName, .mOutputPath = outputPath, .mMode = RunMode::kFile});
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
