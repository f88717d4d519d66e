// The functions that a host calls, end to end on files.
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
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::EventSummaries;
using testsupport::IDOf;
using testsupport::Joined;
using testsupport::LastEvent;
using testsupport::RuleText;

constexpr const char* kState = "preferences/SCRPriorState.json";
constexpr const char* kInstalled = "application/SystemCompatibilityReport/blocklist.en_US.json";
constexpr const char* kErrorTrace = "System Compatibility Report returned an error.";

class ReportEntryPointsTest : public testing::Test {
 protected:
  ReportEntryPointsTest() {
    ReportStatistics::Instance() = {};
    using qelcore::utility::OSComponentType;
    mHost.SetComponents({testsupport::Component(OSComponentType::kOS, "Example OS", "10.0"),
                         testsupport::Component(OSComponentType::kVideo, "Card", "1.2.3.4"),
                         testsupport::Property("memory.mb", "4096")});
  }
  ~ReportEntryPointsTest() override {
    qelcore::host::SetFileOperationHook({});
    EnableReports(true);
  }

  void RunToFile(const std::string& name = "report.txt") {
    RunReportToFile(u"Example", qelcore::string::UTF8to16((mHost.Files().Path() / name).string()));
  }

  [[nodiscard]] bool Exists(const std::string& relativePath) const {
    return std::filesystem::exists(mHost.Files().Path() / relativePath);
  }

  testsupport::TestHost mHost;
};

// ---- RunReportToFile

TEST_F(ReportEntryPointsTest, TheReportIsWrittenAndTheIssuesRemembered) {
  const auto rules =
      Joined({CardRules("INFO", 1), CardRules("WARN", 2), CardRules("ERROR", 3), CardRules("FATAL", 1)});
  mHost.Files().Write(kInstalled, BlocklistText(rules));
  RunToFile();
  const std::string text = mHost.Files().Read("report.txt");
  EXPECT_THAT(text, HasSubstr("[Video] Card v.1.2.3.4\nISSUES:\n1.\tFATAL 1\n\tID:  " +
                              IDOf(CardRules("FATAL", 1)[0]) + "\n2.\tERROR 1\n"));
  EXPECT_THAT(mHost.Files().Read(kState),
              HasSubstr(R"("fatal_matches":[")" + IDOf(CardRules("FATAL", 1)[0]) + R"("])"));
  EXPECT_EQ(CountInfoIncompatibilities(), 1U);
  EXPECT_EQ(CountWarnIncompatibilities(), 2U);
  EXPECT_EQ(CountErrorIncompatibilities(), 3U);
  EXPECT_EQ(CountFatalIncompatibilities(), 1U);
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(true));
  EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-not-needed 7 1");
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

TEST_F(ReportEntryPointsTest, TheSecondRunFindsTheIssuesAgain) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  RunToFile();
  const std::string report = mHost.Files().Read("report.txt");
  const std::string state = mHost.Files().Read(kState);
  RunToFile();
  EXPECT_EQ(mHost.Files().Read("report.txt"), report);
  EXPECT_EQ(mHost.Files().Read(kState), state);
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("new WARN", "click:unknown-value ui-not-needed 1 0",
                                                 "ongoing WARN", "click:unknown-value ui-not-needed 1 0"));
}

TEST_F(ReportEntryPointsTest, AResolvedIssueIsForgotten) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 3)));
  RunToFile();
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_THAT(
      EventSummaries(mHost),
      ElementsAre("new WARN", "new WARN", "new WARN", "click:unknown-value ui-not-needed 3 0", "ongoing WARN",
                  "resolved WARN", "resolved WARN", "click:unknown-value ui-not-needed 1 2"));
}

TEST_F(ReportEntryPointsTest, ABlocklistOf500MBIsRefusedUnread) {
  mHost.Files().Write(kState, R"({"warn_matches":["before"]})");
  const std::filesystem::path path = mHost.Files().Write(kInstalled, "");
  // It has that length without taking the room.
  std::filesystem::resize_file(path, 500'000'000);
  RunToFile();
  EXPECT_FALSE(Exists("report.txt"));
  EXPECT_EQ(mHost.Files().Read(kState), R"({"warn_matches":["before"]})");
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre(HasSubstr("blocklist.en_US.json: File too large")));
}

TEST_F(ReportEntryPointsTest, WithoutBlocklistTheComponentsAreWrittenAndNothingIsSaved) {
  RunToFile();
  EXPECT_THAT(mHost.Files().Read("report.txt"), HasSubstr("[Video] Card v.1.2.3.4\n"));
  EXPECT_FALSE(Exists(kState));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-not-needed 0 0");
}

TEST_F(ReportEntryPointsTest, WithoutBlocklistTheCountsAreThoseThatAreRemembered) {
  const std::string state = R"({"error_matches":["e"],"warn_matches":["v","w"]})";
  mHost.Files().Write(kState, state);
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 2U);
  EXPECT_EQ(CountErrorIncompatibilities(), 1U);
  EXPECT_EQ(mHost.Files().Read(kState), state);
}

TEST_F(ReportEntryPointsTest, AnEmptyBlocklistFileIsAnError) {
  mHost.Files().Write(kInstalled, "");
  RunToFile();
  EXPECT_FALSE(Exists("report.txt"));
  EXPECT_FALSE(Exists(kState));
  EXPECT_THAT(mHost.Traced(1), ElementsAre(kErrorTrace));
  EXPECT_THAT(mHost.mEvents, IsEmpty());
}

TEST_F(ReportEntryPointsTest, ACorruptBlocklistIsABlocklistWithoutRules) {
  mHost.Files().Write(kInstalled, "{\"blocklist_version\":1,\"blocklist\":[");
  RunToFile();
  EXPECT_THAT(mHost.Files().Read("report.txt"), Not(HasSubstr("ISSUES")));
  EXPECT_TRUE(Exists(kState));
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist"));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
}

TEST_F(ReportEntryPointsTest, ACorruptStateCountsAsNone) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  mHost.Files().Write(kState, R"({"warn_matches":7,"show_issues_at_startup":false})");
  RunToFile();
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("new WARN", "click:unknown-value ui-not-needed 1 0"));
  EXPECT_THAT(mHost.Files().Read(kState), Not(HasSubstr("show_issues_at_startup")));
}

TEST_F(ReportEntryPointsTest, AReportThatCannotBeWrittenSavesNothing) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  mHost.Files().Write(kState, "{}");
  RunToFile("missing/report.txt");
  EXPECT_EQ(mHost.Files().Read(kState), "{}");
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReport"));
  EXPECT_THAT(mHost.Traced(1), ElementsAre(kErrorTrace));
  EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-not-needed 1 0");
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
}

TEST_F(ReportEntryPointsTest, AStateThatCannotBeSavedDoesNotHarmTheReport) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  mHost.Files().Write(kState, "{}");
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string& path) {
    if (operation == FileOperation::kReplace && path.ends_with("SCRPriorState.json")) {
      throw std::runtime_error("disk full");
    }
  });
  RunToFile();
  EXPECT_THAT(mHost.Files().Read("report.txt"), HasSubstr("1.\tWARN 1\n"));
  EXPECT_EQ(mHost.Files().Read(kState), "{}");
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::SavePriorStateToPrefsDir"));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
}

TEST_F(ReportEntryPointsTest, WithoutRegistryTheRunIsAnError) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  mHost.TakeRegistryAway();
  RunToFile();
  EXPECT_FALSE(Exists("report.txt"));
  EXPECT_FALSE(Exists(kState));
  EXPECT_THAT(mHost.Traced(1), ElementsAre(kErrorTrace));
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(true, false));
}

TEST_F(ReportEntryPointsTest, NoExceptionLeavesARun) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string& path) {
    if (operation == FileOperation::kRead && path.ends_with("blocklist.en_US.json")) {
      throw std::runtime_error("bad sector");
    }
  });
  EXPECT_NO_THROW(RunToFile());
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::`anonymous-namespace'::RunReport"));
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("bad sector"));
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_FALSE(Exists("report.txt"));
  EXPECT_FALSE(Exists(kState));
}

TEST_F(ReportEntryPointsTest, AnEmptyPathWritesNoReportAndRemembersTheIssues) {
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  RunReportToFile(u"Example", u"");
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_TRUE(Exists(kState));
  EXPECT_EQ(ReportStatistics::Instance().mNumberOfTimesReportPresented, 1U);
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

TEST_F(ReportEntryPointsTest, AnOlderLongerReportIsReplacedWhole) {
  RunToFile("fresh.txt");
  mHost.Files().Write("report.txt", std::string(1000000, 'x'));
  RunToFile();
  EXPECT_EQ(mHost.Files().Read("report.txt"), mHost.Files().Read("fresh.txt"));
}

TEST_F(ReportEntryPointsTest, TheBlocklistOfTheApplicationsLanguageIsRead) {
  mHost.Files().Write(kInstalled, BlocklistText({RuleText("Video", "Card", "WARN", "English")}));
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.de_DE.json",
                      BlocklistText({RuleText("Video", "Card", "WARN", "Deutsch")}));
  const struct {
    const char* mLanguage;
    const char* mMessage;
  } rows[] = {{"en_US", "1.\tEnglish\n"}, {"de_DE", "1.\tDeutsch\n"}, {"fr_FR", "1.\tEnglish\n"}};
  for (const auto& row : rows) {
    qelcore::host::SetApplicationLanguage(row.mLanguage);
    RunToFile();
    EXPECT_THAT(mHost.Files().Read("report.txt"), HasSubstr(row.mMessage)) << row.mLanguage;
  }
}

TEST_F(ReportEntryPointsTest, ADownloadedBlocklistIsPreferred) {
  mHost.Files().Write(kInstalled, BlocklistText({RuleText("Video", "Card", "WARN", "installed")}));
  mHost.Files().Write("preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json",
                      BlocklistText({RuleText("Video", "Card", "WARN", "downloaded")}));
  RunToFile();
  EXPECT_THAT(mHost.Files().Read("report.txt"), HasSubstr("1.\tdownloaded\n"));
}

// ---- In which order

TEST_F(ReportEntryPointsTest, TheStateIsLoadedThenTheMachineReadThenTheBlocklistFound) {
  mHost.Files().Write(kState, R"({"warn_matches":[]})");
  mHost.Files().Write(kInstalled, BlocklistText(CardRules("WARN", 1)));
  std::vector<std::string> steps;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
    if (operation != FileOperation::kOpenForReading) return;
    steps.push_back(std::filesystem::path(path).filename().string() +
                    ", machine read: " + std::to_string(mHost.mRegistryRequests.size()) +
                    ", places traced: " + std::to_string(mHost.Traced(6).size()));
  });
  RunToFile();
  ASSERT_GE(steps.size(), 2U);
  EXPECT_EQ(steps[0], "SCRPriorState.json, machine read: 0, places traced: 0");
  EXPECT_THAT(steps[1], HasSubstr("blocklist.en_US.json, machine read: 1, places traced: "));
}

TEST_F(ReportEntryPointsTest, AChoiceAboutTheDisplayIsRecordedBeforeItIsSaved) {
  std::vector<std::size_t> eventsAtSaving;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kReplace) eventsAtSaving.push_back(mHost.mEvents.size());
  });
  SetAllowDisplayReportAtStartup(false);
  EXPECT_THAT(eventsAtSaving, ElementsAre(1U));
}

// ---- The feature

constexpr const char* kPropertyRule =
    R"({"type":"Property","name":"memory.mb","ilt":"8192","error_level":"WARN","info_message":"too little"})";

TEST_F(ReportEntryPointsTest, PropertiesTakePartUnlessTheFeatureIsOff) {
  mHost.Files().Write(kInstalled, BlocklistText({kPropertyRule}));
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_TRUE(OSComponent::SupportsProperties());
  // The host is asked by the first run alone.
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "false");
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
}

TEST_F(ReportEntryPointsTest, PropertiesTakeNoPartWhenTheFeatureIsOff) {
  mHost.Files().Write(kInstalled, BlocklistText({kPropertyRule}));
  OSComponent::EnableSupportProperties(true);
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "false");
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
}

TEST_F(ReportEntryPointsTest, ARunWhileTheServiceIsOffDoesNotUseUpTheQuestion) {
  mHost.Files().Write(kInstalled, BlocklistText({kPropertyRule}));
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "false");
  EnableReports(false);
  RunToFile();
  EnableReports(true);
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
  RunToFile();
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
}

}  // namespace
