// What the host's statistics learn about the runs of this process.
#include <string>
#include <string_view>

#include "platform/qelcore/UsageStatistics.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"

namespace qelsystemcompatibilityreport {

namespace {

using qelcore::config::UsageLogger;
using qelcore::config::UsageLoggerGroup;

constexpr std::string_view kGroup = "system_compatibility_report_stats";

void AddStatistics(UsageLoggerGroup& group, ReportStatistics& statistics) {
  const auto addNumber = [&](std::string_view key, std::uint64_t number) {
    group.AddText(key, std::to_string(number));
  };
  // A text here and truth values below. That is intended.
  group.AddText("report_presented_at_launch", statistics.mReportPresentedAtLaunch ? "true" : "false");
  addNumber("number_of_times_report_ran", statistics.mNumberOfTimesReportRan);
  addNumber("number_of_times_report_presented", statistics.mNumberOfTimesReportPresented);
  addNumber("number_of_times_report_ignored", statistics.mNumberOfTimesReportIgnored);
  addNumber("total_issues_remaining", statistics.SumOfRemaining());
  addNumber("info_issues_remaining", statistics.Remaining(SCRRuleErrorLevel::INFO));
  addNumber("warn_issues_remaining", statistics.Remaining(SCRRuleErrorLevel::WARN));
  addNumber("error_issues_remaining", statistics.Remaining(SCRRuleErrorLevel::ERROR));
  addNumber("fatal_issues_remaining", statistics.Remaining(SCRRuleErrorLevel::FATAL));
  addNumber("total_issues_resolved", statistics.SumOfResolved());
  addNumber("info_issues_resolved", statistics.Resolved(SCRRuleErrorLevel::INFO));
  addNumber("warn_issues_resolved", statistics.Resolved(SCRRuleErrorLevel::WARN));
  addNumber("error_issues_resolved", statistics.Resolved(SCRRuleErrorLevel::ERROR));
  // What remains stands for what was resolved, here as in the sum. That is intended.
  addNumber("fatal_issues_resolved", statistics.Remaining(SCRRuleErrorLevel::FATAL));
  addNumber("number_of_times_report_saved", statistics.mNumberOfTimesReportSaved);
  group.Add("show_report_at_launch", statistics.mShowReportAtLaunch);
  group.Add("report_skipped_at_launch", statistics.mReportSkippedAtLaunch);
}

}  // namespace

void LogToAnalytics() {
  if (!ReportsEnabled()) return;
  AtBoundary("qelsystemcompatibilityreport::LogToAnalytics", [] {
    const auto logger = UsageLogger::Get();
    if (!logger) return;
    ReportStatistics& statistics = ReportStatistics::Instance();
    // The group is recorded when it goes, so it must not outlive this line.
    if (const auto group = logger->CreateGroup(kGroup, kGroup)) AddStatistics(*group, statistics);
    for (const std::string& url : statistics.mClickedURLs) {
      logger->LogEvent(kGroup, "system_compatibility_report_clicked_url", url, "");
    }
  });
}

}  // namespace qelsystemcompatibilityreport
