// The figures that the host's statistics get.
#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::host::UsageEntry;
using qelsystemcompatibilityreport::EnableReports;
using qelsystemcompatibilityreport::LogToAnalytics;
using qelsystemcompatibilityreport::ReportStatistics;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class StatisticsTest : public testing::Test {
 protected:
  static ReportStatistics& Statistics() { return ReportStatistics::Instance(); }

  /// The only group's figures as lines "key=text" or "key is true".
  [[nodiscard]] std::vector<std::string> Figures() const {
    std::vector<std::string> lines;
    for (const auto& figure : mHost.mUsageEntries.at(0).mFigures.value()) {
      const auto* const text = std::get_if<std::string>(&figure.mValue);
      lines.push_back(figure.mKey + (text != nullptr                 ? "=" + *text
                                     : std::get<bool>(figure.mValue) ? " is true"
                                                                     : " is false"));
    }
    return lines;
  }

  testsupport::TestHost mHost;
};

TEST_F(StatisticsTest, AFreshProcess) {
  LogToAnalytics();
  ASSERT_THAT(mHost.mUsageEntries, SizeIs(1));
  EXPECT_EQ(mHost.mUsageEntries[0].mGroup, "system_compatibility_report_stats");
  EXPECT_EQ(mHost.mUsageEntries[0].mEvent, "system_compatibility_report_stats");
  EXPECT_THAT(Figures(),
              ElementsAre("report_presented_at_launch=false", "number_of_times_report_ran=0",
                          "number_of_times_report_presented=0", "number_of_times_report_ignored=0",
                          "total_issues_remaining=0", "info_issues_remaining=0", "warn_issues_remaining=0",
                          "error_issues_remaining=0", "fatal_issues_remaining=0", "total_issues_resolved=0",
                          "info_issues_resolved=0", "warn_issues_resolved=0", "error_issues_resolved=0",
                          "fatal_issues_resolved=0", "number_of_times_report_saved=0",
                          "show_report_at_launch is true", "report_skipped_at_launch is false"));
}

TEST_F(StatisticsTest, EveryFigureHasItsPlaceAndFatalIsCountedByWhatRemains) {
  Statistics().mReportPresentedAtLaunch = true;
  Statistics().mNumberOfTimesReportRan = 11;
  Statistics().mNumberOfTimesReportPresented = 12;
  Statistics().mRemaining = {100, 200, 300, 400};
  Statistics().mResolved = {1, 2, 3, 4'000};
  Statistics().mNumberOfTimesReportSaved = 13;
  Statistics().mShowReportAtLaunch = false;
  Statistics().mReportSkippedAtLaunch = true;
  LogToAnalytics();
  EXPECT_THAT(
      Figures(),
      ElementsAre("report_presented_at_launch=true", "number_of_times_report_ran=11",
                  "number_of_times_report_presented=12", "number_of_times_report_ignored=0",
                  "total_issues_remaining=1000", "info_issues_remaining=100", "warn_issues_remaining=200",
                  "error_issues_remaining=300", "fatal_issues_remaining=400", "total_issues_resolved=406",
                  "info_issues_resolved=1", "warn_issues_resolved=2", "error_issues_resolved=3",
                  "fatal_issues_resolved=400", "number_of_times_report_saved=13",
                  "show_report_at_launch is false", "report_skipped_at_launch is true"));
}

TEST_F(StatisticsTest, NumbersOfSixtyFourBits) {
  Statistics().mNumberOfTimesReportRan = 18'446'744'073'709'551'615U;
  LogToAnalytics();
  EXPECT_EQ(Figures()[1], "number_of_times_report_ran=18446744073709551615");
}

TEST_F(StatisticsTest, ASecondCallRepeatsTheTotals) {
  Statistics().mNumberOfTimesReportRan = 2;
  LogToAnalytics();
  LogToAnalytics();
  ASSERT_THAT(mHost.mUsageEntries, SizeIs(2));
  EXPECT_EQ(mHost.mUsageEntries[0].mFigures, mHost.mUsageEntries[1].mFigures);
}

TEST_F(StatisticsTest, OpenedLinksFollowInSortedOrder) {
  Statistics().mClickedURLs = {"https://b.example", "https://a.example", "https://a.example/%s\n"};
  LogToAnalytics();
  ASSERT_THAT(mHost.mUsageEntries, SizeIs(4));
  EXPECT_TRUE(mHost.mUsageEntries[0].mFigures.has_value());
  std::vector<std::string> urls;
  for (std::size_t index = 1; index < 4; ++index) {
    const UsageEntry& entry = mHost.mUsageEntries[index];
    EXPECT_FALSE(entry.mFigures.has_value());
    EXPECT_EQ(entry.mGroup, "system_compatibility_report_stats");
    EXPECT_EQ(entry.mEvent, "system_compatibility_report_clicked_url");
    EXPECT_EQ(entry.mSecondValue, "");
    urls.push_back(entry.mValue);
  }
  EXPECT_THAT(urls, ElementsAre("https://a.example", "https://a.example/%s\n", "https://b.example"));
}

TEST_F(StatisticsTest, NothingIsSentWhileTheServiceIsOff) {
  Statistics().mClickedURLs = {"https://a.example"};
  EnableReports(false);
  LogToAnalytics();
  EXPECT_THAT(mHost.mUsageEntries, IsEmpty());
  EnableReports(true);
  LogToAnalytics();
  EXPECT_THAT(mHost.mUsageEntries, SizeIs(2));
}

TEST_F(StatisticsTest, AHostThatRecordsNoneGetsNone) {
  qelcore::host::SetDebugEntryForThisRun("host.record_statistics", "false");
  LogToAnalytics();
  EXPECT_THAT(mHost.mUsageEntries, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

}  // namespace
