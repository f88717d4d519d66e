// When a run shows its result, what it hands to the dialog or the file, and when it takes the shortcut.
#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

#include "host/qelcore/CrashTrail.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "tests/report/run/ReportRunFixture.h"

namespace {

using qelcore::Guid;
using qelsystemcompatibilityreport::RunReport;
using qelsystemcompatibilityreport::SCRPriorState;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::EventSummaries;
using testsupport::Joined;
using testsupport::LastEvent;
using testsupport::RuleText;

class ReportRunPresentationTest : public testsupport::ReportRunFixture {};

// ---- The shortcut

TEST_F(ReportRunPresentationTest, ALaunchWithNothingChangedTakesTheShortcut) {
  const std::string blocklist = BlocklistText(CardRules("INFO", 2), "Careful.");
  mState.mLastMatchJob = MatchJobOf(blocklist);
  // One of them would be resolved and another be new if a match took place.
  Remember({CardRules("INFO", 1)[0], RuleText("Video", "Card", "INFO", "gone")}, {}, {}, {});
  const SCRPriorState before = mState;
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRan);
  EXPECT_EQ(mState, before);
  EXPECT_EQ(mSecondWarning, "Careful.");
  EXPECT_THAT(EventSummaries(mHost), ElementsAre("via:launch ui-not-needed 2 0"));
  EXPECT_THAT(mPresentations, IsEmpty());
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 1U);
  EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, 0U);
  EXPECT_THAT(Statistics().mRemaining, ElementsAre(2U, 0U, 0U, 0U));
  EXPECT_THAT(qelcore::host::GetTrails(), IsEmpty());
  EXPECT_THAT(qelcore::host::GetTrailMarkers(), IsEmpty());
  // The shortcut has not used up the once that the trail has.
  EXPECT_EQ(Run(RunMode::kHelp, blocklist), RunResult::kRanAndChanged);
  EXPECT_EQ(qelcore::host::GetTrails().size(), 1U);
}

TEST_F(ReportRunPresentationTest, WhoTakesTheShortcut) {
  const std::string blocklist = BlocklistText(CardRules("INFO", 1));
  const Guid same = MatchJobOf(blocklist);
  const Guid other = Guid::FromUTF8String("01234567-89ab-cdef-0123-456789abcdef");
  const std::vector<std::string> none;
  const struct {
    const char* mName;
    RunMode mMode;
    Guid mJob;
    std::vector<std::string> mInfos, mWarnings, mErrors, mFatals;
    bool mTakesIt;
  } rows[] = {
      {"nothing remembered", RunMode::kLaunch, same, none, none, none, none, true},
      {"infos remembered", RunMode::kLaunch, same, CardRules("INFO", 3), none, none, none, true},
      {"never matched", RunMode::kLaunch, Guid(), none, none, none, none, false},
      {"something changed", RunMode::kLaunch, other, none, none, none, none, false},
      {"a warning remembered", RunMode::kLaunch, same, none, CardRules("WARN", 1), none, none, false},
      {"an error remembered", RunMode::kLaunch, same, none, none, CardRules("ERROR", 1), none, false},
      {"a fatal one remembered", RunMode::kLaunch, same, none, none, none, CardRules("FATAL", 1), false},
      {"help", RunMode::kHelp, same, none, none, none, none, false},
      {"file", RunMode::kFile, same, none, none, none, none, false},
      {"requested at launch", RunMode{1}, same, none, none, none, none, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mName);
    mState = {};
    mState.mLastMatchJob = row.mJob;
    Remember(row.mInfos, row.mWarnings, row.mErrors, row.mFatals);
    EXPECT_EQ(Run(row.mMode, blocklist), row.mTakesIt ? RunResult::kRan : RunResult::kRanAndChanged);
  }
}

TEST_F(ReportRunPresentationTest, AForcedMatchTakesNoShortcut) {
  const std::string blocklist = BlocklistText({RuleText("Video", "Nothing", "INFO", "forced")});
  mState.mLastMatchJob = MatchJobOf(blocklist);
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRan);
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.force_blocklist_match", "true");
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRanAndChanged);
  EXPECT_EQ(mState.mInfoMatches.size(), 1U);
}

TEST_F(ReportRunPresentationTest, AFileRuleIsMatchedByTheFirstLaunchOfAProcess) {
  const std::string blocklist = BlocklistText({RuleText("File", "/nonexistent/driver", "WARN", "file")});
  mState.mLastMatchJob = MatchJobOf(blocklist);
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRanAndChanged);
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRan);
}

// ---- Conditions at launch

TEST_F(ReportRunPresentationTest, WhatBringsTheDialogUpAtLaunch) {
  const std::vector<std::string> none;
  const auto info = CardRules("INFO", 1);
  const auto warning = CardRules("WARN", 1);
  const auto error = CardRules("ERROR", 1);
  const auto fatal = CardRules("FATAL", 1);
  const struct {
    const char* mName;
    std::vector<std::string> mInfos, mWarnings, mErrors, mFatals;  // remembered
    std::vector<std::string> mFound;
    bool mIsShown;
  } rows[] = {
      {"nothing", none, none, none, none, none, false},
      {"a new info", none, none, none, none, info, true},
      {"an ongoing info", info, none, none, none, info, false},
      {"a resolved info", info, none, none, none, none, false},
      {"one info ongoing, one new", info, none, none, none, CardRules("INFO", 2), true},
      {"a new warning", none, none, none, none, warning, true},
      {"an ongoing warning", none, warning, none, none, warning, true},
      {"a resolved warning", none, warning, none, none, none, false},
      {"a new error", none, none, none, none, error, true},
      {"an ongoing error", none, none, error, none, error, true},
      {"a resolved error", none, none, error, none, none, false},
      {"a new fatal one", none, none, none, none, fatal, true},
      {"an ongoing fatal one", none, none, none, fatal, fatal, true},
      {"a resolved fatal one", none, none, none, fatal, none, false},
      {"a warning resolved, an info ongoing", info, warning, none, none, info, false},
      {"a warning resolved, an info new", none, warning, none, none, info, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mName);
    mState = {};
    mPresentations.clear();
    Statistics() = {};
    Remember(row.mInfos, row.mWarnings, row.mErrors, row.mFatals);
    EXPECT_EQ(Run(RunMode::kLaunch, BlocklistText(row.mFound)), RunResult::kRanAndChanged);
    EXPECT_EQ(mPresentations.size(), row.mIsShown ? 1U : 0U);
    EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, row.mIsShown ? 1U : 0U);
    EXPECT_EQ(Statistics().mReportPresentedAtLaunch, row.mIsShown);
    EXPECT_THAT(LastEvent(mHost),
                testing::StartsWith(row.mIsShown ? "via:launch ui-displayed " : "via:launch ui-not-needed "));
  }
}

TEST_F(ReportRunPresentationTest, ARequestedRunIsAlwaysShown) {
  for (const RunMode mode : {RunMode{1}, RunMode::kFile, RunMode::kHelp}) {
    mPresentations.clear();
    EXPECT_EQ(Run(mode, BlocklistText({})), RunResult::kRanAndChanged);
    EXPECT_EQ(mPresentations.size(), 1U) << static_cast<unsigned>(mode);
  }
}

// ---- The user's choice not to see it at launch

TEST_F(ReportRunPresentationTest, ASuppressedLaunchIsPresentedAndSkipped) {
  mState.mShowIssuesAtStartup = false;
  EXPECT_EQ(Run(RunMode::kLaunch, BlocklistText(CardRules("WARN", 1))), RunResult::kRanAndChanged);
  EXPECT_THAT(mPresentations, IsEmpty());
  EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, 1U);
  EXPECT_FALSE(Statistics().mReportPresentedAtLaunch);
  EXPECT_TRUE(Statistics().mReportSkippedAtLaunch);
  EXPECT_FALSE(Statistics().mShowReportAtLaunch);
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-suppressed-by-setting 1 0");
}

TEST_F(ReportRunPresentationTest, SkippedIsNeverClearedAndPresentedIs) {
  const std::string blocklist = BlocklistText(CardRules("WARN", 1));
  Run(RunMode::kLaunch, blocklist);
  EXPECT_TRUE(Statistics().mReportPresentedAtLaunch);
  EXPECT_FALSE(Statistics().mReportSkippedAtLaunch);
  mState.mShowIssuesAtStartup = false;
  Run(RunMode::kLaunch, blocklist);
  EXPECT_FALSE(Statistics().mReportPresentedAtLaunch);
  EXPECT_TRUE(Statistics().mReportSkippedAtLaunch);
  mState.mShowIssuesAtStartup = true;
  Run(RunMode::kLaunch, blocklist);
  EXPECT_TRUE(Statistics().mReportPresentedAtLaunch);
  EXPECT_TRUE(Statistics().mReportSkippedAtLaunch);
  EXPECT_TRUE(Statistics().mShowReportAtLaunch);
  EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, 3U);
  EXPECT_EQ(mPresentations.size(), 2U);
}

TEST_F(ReportRunPresentationTest, ALaunchThatNeedsNoDialogLeavesTheChoiceAlone) {
  mState.mShowIssuesAtStartup = false;
  EXPECT_EQ(Run(RunMode::kLaunch, BlocklistText({})), RunResult::kRanAndChanged);
  EXPECT_TRUE(Statistics().mShowReportAtLaunch);
  EXPECT_FALSE(Statistics().mReportSkippedAtLaunch);
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-not-needed 0 0");
}

TEST_F(ReportRunPresentationTest, ARunThatIsNotAtLaunchIgnoresTheChoice) {
  mState.mShowIssuesAtStartup = false;
  for (const RunMode mode : {RunMode::kFile, RunMode::kHelp}) {
    Statistics() = {};
    mPresentations.clear();
    Run(mode, BlocklistText(CardRules("WARN", 1)));
    EXPECT_EQ(mPresentations.size(), 1U);
    EXPECT_FALSE(Statistics().mReportPresentedAtLaunch);
    EXPECT_FALSE(Statistics().mReportSkippedAtLaunch);
    EXPECT_TRUE(Statistics().mShowReportAtLaunch);
    EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, 1U);
    EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-displayed 1 0");
  }
}

TEST_F(ReportRunPresentationTest, ARequestAtLaunchHeedsTheChoice) {
  mState.mShowIssuesAtStartup = false;
  EXPECT_EQ(Run(RunMode{1}, ""), RunResult::kRan);
  EXPECT_THAT(mPresentations, IsEmpty());
  EXPECT_TRUE(Statistics().mReportSkippedAtLaunch);
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-suppressed-by-setting 0 0");
}

// ---- What the dialog gets

TEST_F(ReportRunPresentationTest, TheDialogGetsWhatItShows) {
  auto request = Request(RunMode::kHelp);
  int window = 0;
  request.mParentWindow = reinterpret_cast<qelui::OS_Window*>(&window);
  request.mApplicationName = u"M\u00fcller \U0001F600";
  const auto rules =
      Joined({CardRules("INFO", 1),
              CardRules("FATAL", 1),
              {RuleText("Audio", "Speakers", "WARN", "b"), RuleText("OS", "Example OS", "WARN", "z"),
               RuleText("Audio", "Speakers", "WARN", "a")},
              CardRules("ERROR", 1)});
  static_cast<void>(RunReport(request, BlocklistText(rules), mState, mSecondWarning));
  ASSERT_EQ(mPresentations.size(), 1U);
  const auto& shown = mPresentations[0];
  EXPECT_EQ(shown.mParentWindow, reinterpret_cast<qelui::OS_Window*>(&window));
  EXPECT_EQ(shown.mApplicationName, u"M\u00fcller \U0001F600");
  EXPECT_FALSE(shown.mBlocklistIsMissing);
  std::vector<std::string> messages;
  for (const auto& issue : shown.mIssues) messages.push_back(issue.GetInfoMessage());
  EXPECT_THAT(messages, ElementsAre("FATAL 1", "ERROR 1", "z", "a", "b", "INFO 1"));
}

TEST_F(ReportRunPresentationTest, TheWriterOutlivesTheRun) {
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1)));
  ASSERT_EQ(mPresentations.size(), 1U);
  const auto writer = mPresentations[0].mTextWriter;
  mPresentations.clear();
  mRegistry = nullptr;
  const auto path = mHost.Files().Path() / "export.txt";
  writer(qelcore::filesupport::File(qelcore::string::UTF8to16(path.string())));
  EXPECT_THAT(
      testsupport::ReadWholeFile(path),
      testing::StartsWith("System Components:\n\n[Operating System] Example OS v.10.0.0.0\n\n"
                          "----------------------------------------------------------------------------\n"
                          "[Video] Card v.1.2.3.4\nISSUES:\n1.\tWARN 1\n"));
}

TEST_F(ReportRunPresentationTest, TheWriterOfARunWithoutBlocklistListsTheComponents) {
  Run(RunMode::kHelp, "");
  ASSERT_EQ(mPresentations.size(), 1U);
  const auto path = mHost.Files().Path() / "export.txt";
  mPresentations[0].mTextWriter(qelcore::filesupport::File(qelcore::string::UTF8to16(path.string())));
  const std::string text = testsupport::ReadWholeFile(path);
  EXPECT_THAT(text, testing::HasSubstr("[Video] Card v.1.2.3.4\n"));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("ISSUES")));
}

}  // namespace
