// The run at launch, from the host's call to what is saved, shown and logged.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "host/qelcore/CrashTrail.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelui/HostSetup.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::host::FileOperation;
using qelcore::utility::OSComponentType;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::EventSummaries;
using testsupport::Joined;
using testsupport::LastEvent;
using testsupport::RuleText;

constexpr const char* kState = "preferences/SCRPriorState.json";
constexpr const char* kInstalled = "application/SystemCompatibilityReport/blocklist.en_US.json";
constexpr const char* kErrorTrace = "System Compatibility Report returned an error.";
constexpr const char* kSkippedTrace = "Unable to find blocklist file, System Compatibility Report skipped.";

class LaunchRunTest : public testing::Test {
 protected:
  LaunchRunTest() {
    mHost.SetComponents({testsupport::Component(OSComponentType::kOS, "Example OS", "10.0"),
                         testsupport::Component(OSComponentType::kVideo, "Card", "1.2.3.4")});
  }
  ~LaunchRunTest() override { qelcore::host::SetFileOperationHook({}); }

  static void Launch() { RunReportForStartup(u"Example", testsupport::SomeWindow()); }

  void Install(const std::vector<std::string>& rules, const std::string& secondWarning = {}) {
    mHost.Files().Write(kInstalled, BlocklistText(rules, secondWarning));
  }

  [[nodiscard]] bool StateExists() const { return std::filesystem::exists(mHost.Files().Path() / kState); }

  /// How often the statistics were logged.
  [[nodiscard]] std::size_t TimesLogged() const { return mHost.mUsageEntries.size(); }

  testsupport::TestHost mHost;
  testsupport::RecordingUserInterface mUserInterface;
};

// ---- With and without a blocklist

TEST_F(LaunchRunTest, WithoutBlocklistOnlyTheStatisticsAreLogged) {
  const std::string state = R"({"warn_matches":["HASH:1"]})";
  mHost.Files().Write(kState, state);
  Launch();
  EXPECT_THAT(mHost.Traced(5), ElementsAre(kSkippedTrace));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_EQ(TimesLogged(), 1U);
  EXPECT_EQ(mHost.Files().Read(kState), state);
  EXPECT_THAT(mHost.mRegistryRequests, IsEmpty());
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
  EXPECT_THAT(mUserInterface.mErrorMessages, IsEmpty());
}

TEST_F(LaunchRunTest, WithoutBlocklistTheStateIsNotEvenRead) {
  mHost.Files().Write(kState, "damaged");
  Launch();
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  EXPECT_THAT(mHost.Traced(5), ElementsAre(kSkippedTrace));
}

TEST_F(LaunchRunTest, TheTrailIsLeftBeforeTheReportIsShown) {
  Install(CardRules("WARN", 1));
  mUserInterface.mWhileDialogIsUp = [](testsupport::RecordedDialog& dialog) {
    EXPECT_EQ(qelcore::host::GetTrailMarkers().at("scr_issue_count"),
              qelcore::debug::brindle::TrailValue(std::string("1")));
    EXPECT_EQ(dialog.mTitle, u"Example");
    EXPECT_EQ(dialog.mParent, testsupport::SomeWindow());
  };
  Launch();
  EXPECT_EQ(mUserInterface.mDialogsShown, 1);
}

TEST_F(LaunchRunTest, IssuesAreFoundShownRememberedAndLoggedInThisOrder) {
  Install(Joined({CardRules("WARN", 1), CardRules("FATAL", 1)}), "Careful.");
  std::vector<std::string> order;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
    if (operation == FileOperation::kReplace && path.ends_with("SCRPriorState.json")) {
      EXPECT_THAT(LastEvent(mHost), HasSubstr("via:launch ui-displayed 2 1"));
      order.emplace_back("saved");
    }
  });
  mUserInterface.mWhileMessageIsUp = [&] {
    EXPECT_EQ(TimesLogged(), 0U);
    order.emplace_back("warned");
  };
  Launch();
  EXPECT_THAT(order, ElementsAre("saved", "warned"));
  EXPECT_EQ(TimesLogged(), 1U);
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("new WARN", "new FATAL", "via:launch ui-displayed 2 1"));
  // The registry of a launch is the one that may be remembered.
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(false));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
}

TEST_F(LaunchRunTest, ASecondLaunchWithNothingSeriousAndNothingChangedSavesNothing) {
  Install(CardRules("INFO", 1));
  Launch();
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("new INFO", "via:launch ui-displayed 1 0"));
  int writes = 0;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
    if (operation == FileOperation::kOpenForWriting || operation == FileOperation::kReplace) {
      ++writes;
      ADD_FAILURE() << path;
    }
  });
  Launch();
  EXPECT_EQ(writes, 0);
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-not-needed 1 0");
  EXPECT_EQ(mHost.mEvents.size(), 3U);
  EXPECT_EQ(TimesLogged(), 2U);
}

TEST_F(LaunchRunTest, InfoIssuesThatAreKnownDoNotBringTheReportUp) {
  Install(CardRules("INFO", 2));
  Launch();
  Install(CardRules("INFO", 1));
  Launch();
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-not-needed 1 1");
}

TEST_F(LaunchRunTest, TheUsersChoiceSuppressesTheDialogAndCounts) {
  Install(CardRules("WARN", 1), "Careful.");
  SetAllowDisplayReportAtStartup(false);
  Launch();
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-suppressed-by-setting 1 0");
  const ReportStatistics& statistics = ReportStatistics::Instance();
  EXPECT_EQ(statistics.mNumberOfTimesReportPresented, 1U);
  EXPECT_TRUE(statistics.mReportSkippedAtLaunch);
  EXPECT_FALSE(statistics.mReportPresentedAtLaunch);
  EXPECT_THAT(mHost.Files().Read(kState), HasSubstr("\"show_issues_at_startup\":false"));
  // The choice is about the report; the second warning comes all the same.
  EXPECT_EQ(mUserInterface.mErrorMessages.size(), 1U);
}

TEST_F(LaunchRunTest, AnEmptyBlocklistFileIsAnError) {
  mHost.Files().Write(kInstalled, "");
  Launch();
  EXPECT_THAT(mHost.Traced(1), ElementsAre(kErrorTrace));
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_EQ(TimesLogged(), 1U);
  EXPECT_FALSE(StateExists());
}

TEST_F(LaunchRunTest, WithoutRegistryTheRunIsAnError) {
  Install(CardRules("WARN", 1));
  mHost.TakeRegistryAway();
  Launch();
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(false));
  EXPECT_THAT(mHost.Traced(1), ElementsAre(kErrorTrace));
  EXPECT_FALSE(StateExists());
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(LaunchRunTest, AnExceptionIsLoggedAndTheStatisticsAreSent) {
  Install(CardRules("WARN", 1));
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string& path) {
    if (operation == FileOperation::kRead && path.ends_with("blocklist.en_US.json")) {
      throw std::runtime_error("bad sector");
    }
  });
  EXPECT_NO_THROW(Launch());
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReportForStartup"));
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("bad sector"));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(LaunchRunTest, AnExceptionFromTheReportIsLoggedAndNothingIsSaved) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mWhileDialogIsUp = [](testsupport::RecordedDialog&) { throw std::runtime_error("toolkit"); };
  EXPECT_NO_THROW(Launch());
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReportForStartup"));
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("toolkit"));
  EXPECT_FALSE(StateExists());
  EXPECT_THAT(mUserInterface.mErrorMessages, IsEmpty());
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(LaunchRunTest, NothingHappensWhileTheServiceIsOff) {
  Install(CardRules("WARN", 1), "Careful.");
  EnableReports(false);
  Launch();
  RunReportForHelp(u"Example", nullptr);
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mTrace, IsEmpty());
  EXPECT_EQ(TimesLogged(), 0U);
  EXPECT_FALSE(StateExists());
  EnableReports(true);
  Launch();
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(LaunchRunTest, TheHostsFeatureDecidesAboutProperties) {
  mHost.SetComponents({testsupport::Property("memory.mb", "4096")});
  Install({R"({"type":"Property","name":"memory.mb","ilt":"8192","error_level":"WARN"})"});
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
  Launch();
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
}

TEST_F(LaunchRunTest, WithoutTheFeaturePropertiesTakeNoPart) {
  mHost.SetComponents({testsupport::Property("memory.mb", "4096")});
  Install({R"({"type":"Property","name":"memory.mb","ilt":"8192","error_level":"WARN"})"});
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "false");
  Launch();
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
}

// ---- The second warning

TEST_F(LaunchRunTest, WhoGetsTheSecondWarning) {
  const struct {
    const char* mName;
    std::vector<std::string> mRules;
    const char* mWarning;
    bool mIsShown;
  } rows[] = {
      {"nothing", {}, "Careful.", false},
      {"info", CardRules("INFO", 3), "Careful.", false},
      {"warn", CardRules("WARN", 1), "Careful.", true},
      {"error", CardRules("ERROR", 1), "Careful.", true},
      {"fatal alone", CardRules("FATAL", 2), "Careful.", false},
      {"fatal and warn", Joined({CardRules("FATAL", 1), CardRules("WARN", 1)}), "Careful.", true},
      {"no text", CardRules("WARN", 1), "", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mName);
    mUserInterface.mErrorMessages.clear();
    Install(row.mRules, row.mWarning);
    Launch();
    EXPECT_EQ(mUserInterface.mErrorMessages.size(), row.mIsShown ? 1U : 0U);
  }
}

TEST_F(LaunchRunTest, TheSecondWarningAsTheUserSeesIt) {
  Install(CardRules("WARN", 1), "M\xc3\xbcller: 100 %s\\n <b>careful</b> \xf0\x9f\x98\x80");
  Launch();
  EXPECT_THAT(mUserInterface.mErrorMessages,
              ElementsAre(testsupport::RecordingUserInterface::ErrorMessage{
                  u"Incompatibilities Found", u"M\u00fcller: 100 %s\n <b>careful</b> \U0001F600",
                  testsupport::SomeWindow()}));
}

TEST_F(LaunchRunTest, TheSecondWarningComesAtEveryLaunch) {
  Install(CardRules("WARN", 1), "Careful.");
  Launch();
  Launch();
  EXPECT_EQ(mUserInterface.mErrorMessages.size(), 2U);
}

TEST_F(LaunchRunTest, AToolkitThatCannotDrawShowsNothing) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mCanDraw = false;
  Launch();
  EXPECT_THAT(mUserInterface.mErrorMessages, IsEmpty());
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
}

TEST_F(LaunchRunTest, WithoutAToolkitNothingIsShownAndNothingFails) {
  Install(CardRules("WARN", 1), "Careful.");
  qelui::host::SetNodeManager(nullptr);
  Launch();
  EXPECT_EQ(mUserInterface.mDialogsShown, 0);
  EXPECT_THAT(mUserInterface.mErrorMessages, IsEmpty());
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  EXPECT_TRUE(StateExists());
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(LaunchRunTest, TheKeyOfTheSecondWarningsTitle) {
  mHost.Files().Write("application/translations/en_US.json", R"({"$$$/qel/scr/SecondWarningTitle":"title"})");
  Install(CardRules("WARN", 1), "Careful.");
  Launch();
  ASSERT_EQ(mUserInterface.mErrorMessages.size(), 1U);
  EXPECT_EQ(mUserInterface.mErrorMessages[0].mTitle, u"title");
}

TEST_F(LaunchRunTest, NoOtherRunShowsTheSecondWarning) {
  Install(CardRules("WARN", 1), "Careful.");
  RunReportForHelp(u"Example", testsupport::SomeWindow());
  RunReportToFile(u"Example", (mHost.Files().Path() / "report.txt").u16string());
  EXPECT_THAT(mUserInterface.mErrorMessages, IsEmpty());
  EXPECT_EQ(TimesLogged(), 0U);
}

TEST_F(LaunchRunTest, AMessageBoxThatFailsIsLoggedAndNothingIsLost) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mWhileMessageIsUp = [] { throw std::runtime_error("no display"); };
  EXPECT_NO_THROW(Launch());
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReportForStartup"));
  EXPECT_TRUE(StateExists());
  EXPECT_EQ(TimesLogged(), 1U);
}

// ---- Calls from inside a call

TEST_F(LaunchRunTest, AHelpRunFromInsideTheSecondWarning) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mWhileMessageIsUp = [] { RunReportForHelp(u"Example", nullptr); };
  Launch();
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("new WARN", "via:launch ui-displayed 1 0", "ongoing WARN",
                                                 "click:unknown-value ui-displayed 1 0"));
  EXPECT_EQ(mUserInterface.mErrorMessages.size(), 1U);
  EXPECT_EQ(ReportStatistics::Instance().mNumberOfTimesReportRan, 2U);
}

TEST_F(LaunchRunTest, TurningTheServiceOffFromInsideTheSecondWarning) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mWhileMessageIsUp = [] { EnableReports(false); };
  Launch();
  EXPECT_EQ(TimesLogged(), 0U);
  EXPECT_TRUE(StateExists());
  EnableReports(true);
}

TEST_F(LaunchRunTest, TurningTheServiceOffFromInsideTheReport) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mWhileDialogIsUp = [](testsupport::RecordedDialog&) { EnableReports(false); };
  Launch();
  EXPECT_EQ(mUserInterface.mDialogsShown, 1);
  EXPECT_THAT(mUserInterface.mErrorMessages, IsEmpty());
  EXPECT_EQ(TimesLogged(), 0U);
  // The run itself goes to its end.
  EXPECT_TRUE(StateExists());
  EnableReports(true);
}

/// The run has read the remembered state before and saves its own afterwards.
TEST_F(LaunchRunTest, ForbiddingTheDisplayFromInsideTheReportIsOverwritten) {
  Install(CardRules("WARN", 1));
  mUserInterface.mWhileDialogIsUp = [](testsupport::RecordedDialog&) {
    SetAllowDisplayReportAtStartup(false);
    EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  };
  Launch();
  EXPECT_TRUE(GetAllowDisplayReportAtStartup());
  EXPECT_THAT(mHost.Files().Read(kState), HasSubstr("warn_matches"));
}

TEST_F(LaunchRunTest, ForbiddingTheDisplayFromInsideTheSecondWarningIsKept) {
  Install(CardRules("WARN", 1), "Careful.");
  mUserInterface.mWhileMessageIsUp = [] { SetAllowDisplayReportAtStartup(false); };
  Launch();
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  EXPECT_THAT(mHost.Files().Read(kState), HasSubstr("warn_matches"));
}

// ---- The run that a Help menu starts

TEST_F(LaunchRunTest, AHelpRunAlwaysMatchesAndSaves) {
  Install(CardRules("INFO", 1));
  Launch();
  RunReportForHelp(u"Example", testsupport::SomeWindow());
  EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-displayed 1 0");
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(false, true));
}

TEST_F(LaunchRunTest, AHelpRunWithoutBlocklistSavesNothing) {
  mHost.Files().Write(kState, R"({"warn_matches":["v","w"]})");
  RunReportForHelp(u"Example", nullptr);
  EXPECT_EQ(mHost.Files().Read(kState), R"({"warn_matches":["v","w"]})");
  EXPECT_EQ(CountWarnIncompatibilities(), 2U);
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("click:unknown-value ui-displayed 2 0"));
  EXPECT_THAT(mHost.Traced(5), Not(Contains(kSkippedTrace)));
}

}  // namespace
