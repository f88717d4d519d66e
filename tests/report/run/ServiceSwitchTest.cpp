// The master switch, and the choice to see the report at launch.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::host::FileOperation;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::EventSummaries;
using testsupport::Listing;

constexpr const char* kState = "preferences/SCRPriorState.json";
constexpr const char* kNullState = R"({"last_match_job":"00000000-0000-0000-0000-000000000000"})";
constexpr const char* kQuietState =
    R"({"last_match_job":"00000000-0000-0000-0000-000000000000","show_issues_at_startup":false})";

class ServiceSwitchTest : public testing::Test {
 protected:
  ServiceSwitchTest() { ReportStatistics::Instance() = {}; }
  ~ServiceSwitchTest() override {
    qelcore::host::SetFileOperationHook({});
    EnableReports(true);
  }

  testsupport::TestHost mHost;
};

TEST_F(ServiceSwitchTest, OnAtLoad) {
  EXPECT_TRUE(ReportsEnabled());
  EnableReports(true);
  EXPECT_TRUE(ReportsEnabled());
  EnableReports(false);
  EXPECT_FALSE(ReportsEnabled());
  EnableReports(false);
  EXPECT_FALSE(ReportsEnabled());
  EnableReports(true);
  EXPECT_TRUE(ReportsEnabled());
}

TEST_F(ServiceSwitchTest, WhileItIsOffNothingIsReadOrWritten) {
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json",
                      testsupport::BlocklistText(testsupport::CardRules("WARN", 1)));
  mHost.Files().Write(kState, kNullState);
  ReportStatistics::Instance().mRemaining = {1, 2, 3, 4};
  const std::vector<std::string> before = Listing(mHost.Files().Path());
  EnableReports(false);
  std::vector<std::string> touched;
  qelcore::host::SetFileOperationHook(
      [&](FileOperation, const std::string& path) { touched.push_back(path); });

  RunReportToFile(u"Example", qelcore::string::UTF8to16((mHost.Files().Path() / "report.txt").string()));
  SetAllowDisplayReportAtStartup(false);
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  EXPECT_EQ(CountInfoIncompatibilities(), 0U);
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
  EXPECT_EQ(CountErrorIncompatibilities(), 0U);
  EXPECT_EQ(CountFatalIncompatibilities(), 0U);

  EXPECT_THAT(touched, IsEmpty());
  EXPECT_EQ(Listing(mHost.Files().Path()), before);
  EXPECT_EQ(mHost.Files().Read(kState), kNullState);
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mTrace, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  EXPECT_THAT(mHost.mRegistryRequests, IsEmpty());
  EXPECT_TRUE(ReportStatistics::Instance().mShowReportAtLaunch);
  EXPECT_EQ(ReportStatistics::Instance().mNumberOfTimesReportRan, 0U);
}

TEST_F(ServiceSwitchTest, SwitchedOnAgainEverythingWorks) {
  using qelcore::utility::OSComponentType;
  mHost.SetComponents({testsupport::Component(OSComponentType::kVideo, "Card", "1.0")});
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json",
                      testsupport::BlocklistText(testsupport::CardRules("WARN", 1)));
  const std::u16string output = qelcore::string::UTF8to16((mHost.Files().Path() / "report.txt").string());
  RunReportToFile(u"Example", output);
  EnableReports(false);
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
  EnableReports(true);
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_TRUE(GetAllowDisplayReportAtStartup());
  SetAllowDisplayReportAtStartup(false);
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  std::filesystem::remove(mHost.Files().Path() / "report.txt");
  RunReportToFile(u"Example", output);
  EXPECT_TRUE(std::filesystem::exists(mHost.Files().Path() / "report.txt"));
}

// ---- Seeing the report at launch

TEST_F(ServiceSwitchTest, TheDisplayIsAllowedUntilItIsForbidden) {
  EXPECT_TRUE(GetAllowDisplayReportAtStartup());
  EXPECT_THAT(Listing(mHost.Preferences()), IsEmpty());
  const struct {
    const char* mState;
    bool mIsAllowed;
  } rows[] = {{"", true},
              {"{}", true},
              {"{", true},
              {R"({"show_issues_at_startup":false})", false},
              {R"({"show_issues_at_startup":"false"})", false},
              {R"({"show_issues_at_startup":0})", false},
              {R"({"show_issues_at_startup":"no"})", true},
              {R"({"show_issues_at_startup":true})", true},
              {R"({"show_issues_at_startup":false,"warn_matches":1})", true}};
  for (const auto& row : rows) {
    mHost.Files().Write(kState, row.mState);
    EXPECT_EQ(GetAllowDisplayReportAtStartup(), row.mIsAllowed) << row.mState;
  }
  EXPECT_THAT(mHost.mEvents, IsEmpty());
}

TEST_F(ServiceSwitchTest, ForbiddingAndAllowingLeavesNoKeyBehind) {
  SetAllowDisplayReportAtStartup(false);
  EXPECT_EQ(mHost.Files().Read(kState), kQuietState);
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  EXPECT_FALSE(ReportStatistics::Instance().mShowReportAtLaunch);
  SetAllowDisplayReportAtStartup(true);
  EXPECT_EQ(mHost.Files().Read(kState), kNullState);
  EXPECT_TRUE(GetAllowDisplayReportAtStartup());
  EXPECT_TRUE(ReportStatistics::Instance().mShowReportAtLaunch);
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("APP|Settings|disable|system-compatibility-report-display",
                                                 "APP|Settings|enable|system-compatibility-report-display"));
  for (const auto& event : mHost.mEvents) EXPECT_THAT(event.GetItems(), IsEmpty());
}

TEST_F(ServiceSwitchTest, TheChoiceTakesTheReasonBackAndKeepsTheIssues) {
  for (const bool allow : {true, false}) {
    mHost.Files().Write(kState, R"({"dialog_disable_reason":5,"last_match_job":)"
                                R"("01234567-89ab-cdef-0123-456789abcdef","warn_matches":["w"]})");
    SetAllowDisplayReportAtStartup(allow);
    EXPECT_EQ(mHost.Files().Read(kState),
              allow ? R"({"last_match_job":"01234567-89ab-cdef-0123-456789abcdef","warn_matches":["w"]})"
                    : R"({"last_match_job":"01234567-89ab-cdef-0123-456789abcdef",)"
                      R"("show_issues_at_startup":false,"warn_matches":["w"]})");
  }
}

TEST_F(ServiceSwitchTest, ABrokenStateIsReplaced) {
  mHost.Files().Write(kState, R"({"warn_matches":1})");
  SetAllowDisplayReportAtStartup(false);
  EXPECT_EQ(mHost.Files().Read(kState), kQuietState);
}

TEST_F(ServiceSwitchTest, AChoiceThatCannotBeSavedHoldsForTheProcessOnly) {
  mHost.Files().Write(kState, kNullState);
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kWrite) throw std::runtime_error("disk full");
  });
  EXPECT_NO_THROW(SetAllowDisplayReportAtStartup(false));
  EXPECT_EQ(mHost.Files().Read(kState), kNullState);
  EXPECT_FALSE(ReportStatistics::Instance().mShowReportAtLaunch);
  EXPECT_EQ(mHost.mEvents.size(), 1U);
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::SavePriorStateToPrefsDir"));
}

TEST_F(ServiceSwitchTest, TheChoiceDoesNotTouchTheCounts) {
  ReportStatistics::Instance().mRemaining = {1, 2, 3, 4};
  SetAllowDisplayReportAtStartup(false);
  EXPECT_EQ(CountInfoIncompatibilities(), 1U);
  EXPECT_EQ(CountWarnIncompatibilities(), 2U);
  EXPECT_EQ(CountErrorIncompatibilities(), 3U);
  EXPECT_EQ(CountFatalIncompatibilities(), 4U);
}

}  // namespace
