// The worker: what each kind of run needs, what it changes, what it answers.
#include "qelsystemcompatibilityreport/report/run/ReportRun.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "host/qelcore/CrashTrail.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "tests/report/run/ReportRunFixture.h"

namespace {

using qelcore::Guid;
using qelsystemcompatibilityreport::IsNotAtLaunch;
using qelsystemcompatibilityreport::IsRequested;
using qelsystemcompatibilityreport::RunReport;
using qelsystemcompatibilityreport::RunReportOnBlocklistFile;
using qelsystemcompatibilityreport::SCRPriorState;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::EventSummaries;
using testsupport::IDsOf;
using testsupport::Joined;
using testsupport::LastEvent;

class ReportRunTest : public testsupport::ReportRunFixture {};

TEST_F(ReportRunTest, TheTwoBitsOfAMode) {
  const struct {
    unsigned mMode;
    bool mIsRequested;
    bool mIsNotAtLaunch;
  } rows[] = {{0, false, false}, {1, true, false}, {2, true, true}, {3, true, true}};
  for (const auto& row : rows) {
    EXPECT_EQ(IsRequested(RunMode{row.mMode}), row.mIsRequested) << row.mMode;
    EXPECT_EQ(IsNotAtLaunch(RunMode{row.mMode}), row.mIsNotAtLaunch) << row.mMode;
  }
  EXPECT_EQ(static_cast<unsigned>(RunMode::kLaunch), 0U);
  EXPECT_EQ(static_cast<unsigned>(RunMode::kFile), 2U);
  EXPECT_EQ(static_cast<unsigned>(RunMode::kHelp), 3U);
}

TEST_F(ReportRunTest, ALaunchWithoutBlocklistFails) {
  Remember({}, CardRules("WARN", 2), {}, {});
  const SCRPriorState before = mState;
  EXPECT_EQ(Run(RunMode::kLaunch, ""), RunResult::kFailed);
  EXPECT_EQ(mState, before);
  EXPECT_EQ(mSecondWarning, "as it was");
  EXPECT_THAT(mPresentations, IsEmpty());
  EXPECT_THAT(EventSummaries(mHost), IsEmpty());
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
  EXPECT_EQ(Statistics().SumOfRemaining(), 0U);
  EXPECT_THAT(qelcore::host::GetTrailMarkers(), IsEmpty());
}

TEST_F(ReportRunTest, ARequestedRunWithoutBlocklistKeepsWhatIsRemembered) {
  for (const RunMode mode : {RunMode{1}, RunMode::kFile, RunMode::kHelp}) {
    SCOPED_TRACE(static_cast<unsigned>(mode));
    mPresentations.clear();
    Statistics() = {};
    Remember(CardRules("INFO", 4), CardRules("WARN", 3), CardRules("ERROR", 2), CardRules("FATAL", 1));
    mState.mLastMatchJob = Guid::FromUTF8String("01234567-89ab-cdef-0123-456789abcdef");
    const SCRPriorState before = mState;
    EXPECT_EQ(Run(mode, ""), RunResult::kRan);
    EXPECT_EQ(mState, before);
    EXPECT_EQ(mSecondWarning, "as it was");
    EXPECT_THAT(Statistics().mRemaining, ElementsAre(4U, 3U, 2U, 1U));
    EXPECT_THAT(Statistics().mResolved, ElementsAre(0U, 0U, 0U, 0U));
    EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 1U);
    ASSERT_EQ(mPresentations.size(), 1U);
    EXPECT_TRUE(mPresentations[0].mBlocklistIsMissing);
    EXPECT_THAT(mPresentations[0].mIssues, IsEmpty());
    EXPECT_EQ(LastEvent(mHost),
              mode == RunMode{1} ? "via:launch ui-displayed 10 1" : "click:unknown-value ui-displayed 10 1");
  }
}

TEST_F(ReportRunTest, WithoutRegistryEveryRunFails) {
  mRegistry = nullptr;
  mHost.TakeRegistryAway();
  for (const RunMode mode : {RunMode::kLaunch, RunMode::kFile, RunMode::kHelp}) {
    for (const std::string& text : {BlocklistText(CardRules("WARN", 1), "Careful."), std::string()}) {
      const SCRPriorState before = mState;
      EXPECT_EQ(Run(mode, text), RunResult::kFailed) << static_cast<unsigned>(mode) << text;
      EXPECT_EQ(mState, before);
    }
  }
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
  EXPECT_EQ(mSecondWarning, "as it was");
  EXPECT_THAT(EventSummaries(mHost), IsEmpty());
  EXPECT_THAT(mPresentations, IsEmpty());
  // A launch run without text fails before it asks.
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(false, false, false, false, false));
}

TEST_F(ReportRunTest, AGivenRegistryIsUsedAndNoneIsAskedFor) {
  EXPECT_EQ(Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1))), RunResult::kRanAndChanged);
  EXPECT_THAT(mHost.mRegistryRequests, IsEmpty());
  EXPECT_EQ(Statistics().SumOfRemaining(), 1U);
}

TEST_F(ReportRunTest, WithoutAGivenRegistryTheRunAsksForItsOwn) {
  mHost.SetComponents(mRegistry->GetAllComponents());
  mRegistry = nullptr;
  EXPECT_EQ(Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1))), RunResult::kRanAndChanged);
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(false));
  EXPECT_EQ(Statistics().SumOfRemaining(), 1U);
}

TEST_F(ReportRunTest, AMatchReplacesWhatIsRememberedInEveryMode) {
  const std::string blocklist = BlocklistText(CardRules("ERROR", 2));
  for (const RunMode mode : {RunMode::kLaunch, RunMode{1}, RunMode::kFile, RunMode::kHelp}) {
    SCOPED_TRACE(static_cast<unsigned>(mode));
    mState = {};
    EXPECT_EQ(Run(mode, blocklist), RunResult::kRanAndChanged);
    SCRPriorState expected;
    expected.mLastMatchJob = MatchJobOf(blocklist);
    expected.mErrorMatches = IDsOf(CardRules("ERROR", 2));
    EXPECT_EQ(mState, expected);
    EXPECT_NE(mState.mLastMatchJob, Guid());
  }
}

TEST_F(ReportRunTest, ASecondMatchWithTheSameResultIsSavedToo) {
  const std::string blocklist = BlocklistText(CardRules("WARN", 1));
  EXPECT_EQ(Run(RunMode::kHelp, blocklist), RunResult::kRanAndChanged);
  const SCRPriorState before = mState;
  EXPECT_EQ(Run(RunMode::kHelp, blocklist), RunResult::kRanAndChanged);
  EXPECT_EQ(mState, before);
}

TEST_F(ReportRunTest, WhatTheUserChoseIsKept) {
  mState.mShowIssuesAtStartup = false;
  mState.mDialogDisableReason = 7;
  EXPECT_EQ(Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1))), RunResult::kRanAndChanged);
  EXPECT_FALSE(mState.mShowIssuesAtStartup);
  EXPECT_EQ(mState.mDialogDisableReason, 7U);
}

TEST_F(ReportRunTest, AllFourLevelsAreResolvedInTheirOrder) {
  const auto infos = CardRules("INFO", 2);
  const auto warnings = CardRules("WARN", 2);
  const auto errors = CardRules("ERROR", 2);
  const auto fatals = CardRules("FATAL", 2);
  // The first of each level goes on, the second is new, and another one is gone.
  const auto remember = [](const std::string& level) {
    return Joined({CardRules(level, 1), {testsupport::RuleText("Video", "Card", level, "gone")}});
  };
  Remember(remember("INFO"), remember("WARN"), remember("ERROR"), remember("FATAL"));
  // The order of the rules is not that of the levels.
  EXPECT_EQ(Run(RunMode::kFile, BlocklistText(Joined({fatals, infos, errors, warnings}))),
            RunResult::kRanAndChanged);
  EXPECT_EQ(mState.mInfoMatches, IDsOf(infos));
  EXPECT_EQ(mState.mWarnMatches, IDsOf(warnings));
  EXPECT_EQ(mState.mErrorMatches, IDsOf(errors));
  EXPECT_EQ(mState.mFatalMatches, IDsOf(fatals));
  EXPECT_THAT(EventSummaries(mHost),
              ElementsAre("ongoing INFO", "resolved INFO", "new INFO", "ongoing WARN", "resolved WARN",
                          "new WARN", "ongoing ERROR", "resolved ERROR", "new ERROR", "ongoing FATAL",
                          "resolved FATAL", "new FATAL", "click:unknown-value ui-displayed 8 2"));
}

TEST_F(ReportRunTest, TheSecondWarningIsCopied) {
  const auto rules = CardRules("WARN", 1);
  EXPECT_EQ(Run(RunMode::kLaunch, BlocklistText(rules, "Work may be lost.")), RunResult::kRanAndChanged);
  EXPECT_EQ(mSecondWarning, "Work may be lost.");
  EXPECT_EQ(Run(RunMode::kHelp, ""), RunResult::kRan);
  EXPECT_EQ(mSecondWarning, "Work may be lost.");
  EXPECT_EQ(Run(RunMode::kHelp, BlocklistText(rules)), RunResult::kRanAndChanged);
  EXPECT_EQ(mSecondWarning, "");
}

TEST_F(ReportRunTest, ABlocklistThatCannotBeReadHasNoIssues) {
  for (const std::string& text : {std::string("{"), std::string("no JSON"), std::string("[]"),
                                  std::string("\xff\xfe"), std::string(100000, '[')}) {
    SCOPED_TRACE(text.substr(0, 10));
    mState = {};
    mPresentations.clear();
    mHost.mExceptionContexts.clear();
    Remember({}, CardRules("WARN", 2), {}, {});
    EXPECT_EQ(Run(RunMode::kHelp, text), RunResult::kRanAndChanged);
    EXPECT_THAT(mState.mWarnMatches, IsEmpty());
    ASSERT_EQ(mPresentations.size(), 1U);
    EXPECT_THAT(mPresentations[0].mIssues, IsEmpty());
    EXPECT_FALSE(mPresentations[0].mBlocklistIsMissing);
    EXPECT_THAT(mHost.mExceptionContexts,
                ElementsAre("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist"));
  }
}

TEST_F(ReportRunTest, TheTrailIsLeftOncePerProcess) {
  Remember({}, CardRules("WARN", 2), {}, {});
  EXPECT_EQ(Run(RunMode::kLaunch, ""), RunResult::kFailed);
  EXPECT_THAT(qelcore::host::GetTrails(), IsEmpty());
  // The run without a blocklist is the first that comes so far.
  EXPECT_EQ(Run(RunMode::kHelp, ""), RunResult::kRan);
  EXPECT_EQ(qelcore::host::GetTrails().size(), 1U);
  EXPECT_EQ(qelcore::host::GetTrailMarkers().at("scr_issue_count"),
            qelcore::debug::brindle::TrailValue(std::string("2")));
  EXPECT_EQ(Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 3))), RunResult::kRanAndChanged);
  EXPECT_EQ(qelcore::host::GetTrails().size(), 1U);
  EXPECT_EQ(qelcore::host::GetTrailMarkers().at("scr_issue_count"),
            qelcore::debug::brindle::TrailValue(std::string("2")));
}

TEST_F(ReportRunTest, TheTrailHasTheIssuesOfTheMatch) {
  Remember({}, CardRules("WARN", 5), {}, {});
  EXPECT_EQ(Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 3))), RunResult::kRanAndChanged);
  EXPECT_EQ(qelcore::host::GetTrailMarkers().at("scr_issue_count"),
            qelcore::debug::brindle::TrailValue(std::string("3")));
}

TEST_F(ReportRunTest, WhatTheDialogThrowsReachesTheCaller) {
  auto request = Request(RunMode::kHelp);
  request.mPresent = [](const auto&) { throw std::runtime_error("no window"); };
  EXPECT_THROW(static_cast<void>(RunReport(request, "", mState, mSecondWarning)), std::runtime_error);
}

// ---- From a file

class ReportRunOnFileTest : public testsupport::ReportRunFixture {
 protected:
  RunResult RunOnFile(RunMode mode) {
    const qelcore::filesupport::File file(
        qelcore::string::UTF8to16((mHost.Files().Path() / "blocklist.json").string()));
    return RunReportOnBlocklistFile(Request(mode), file, mState, mSecondWarning);
  }
};

TEST_F(ReportRunOnFileTest, MissingFile) {
  EXPECT_EQ(RunOnFile(RunMode::kLaunch), RunResult::kFailed);
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
  for (const RunMode mode : {RunMode{1}, RunMode::kFile, RunMode::kHelp}) {
    mPresentations.clear();
    EXPECT_EQ(RunOnFile(mode), RunResult::kRan) << static_cast<unsigned>(mode);
    ASSERT_EQ(mPresentations.size(), 1U);
    EXPECT_TRUE(mPresentations[0].mBlocklistIsMissing);
  }
}

TEST_F(ReportRunOnFileTest, ADirectoryInTheFilesPlaceIsNoFile) {
  std::filesystem::create_directory(mHost.Files().Path() / "blocklist.json");
  EXPECT_EQ(RunOnFile(RunMode::kLaunch), RunResult::kFailed);
  EXPECT_EQ(RunOnFile(RunMode::kHelp), RunResult::kRan);
}

TEST_F(ReportRunOnFileTest, AnEmptyFileFailsInEveryMode) {
  mHost.Files().Write("blocklist.json", "");
  for (const RunMode mode : {RunMode::kLaunch, RunMode{1}, RunMode::kFile, RunMode::kHelp}) {
    EXPECT_EQ(RunOnFile(mode), RunResult::kFailed) << static_cast<unsigned>(mode);
  }
  EXPECT_THAT(mPresentations, IsEmpty());
  EXPECT_THAT(EventSummaries(mHost), IsEmpty());
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
}

TEST_F(ReportRunOnFileTest, TheWholeFileIsRead) {
  mHost.Files().Write("blocklist.json", BlocklistText(CardRules("WARN", 1500), "Careful."));
  for (const RunMode mode : {RunMode::kLaunch, RunMode::kFile, RunMode::kHelp}) {
    mState = {};
    EXPECT_EQ(RunOnFile(mode), RunResult::kRanAndChanged) << static_cast<unsigned>(mode);
    EXPECT_EQ(mState.mWarnMatches.size(), 1500U);
  }
  EXPECT_EQ(mSecondWarning, "Careful.");
}

TEST_F(ReportRunOnFileTest, AFileThatCannotBeReadThrows) {
  using qelcore::host::FileOperation;
  mHost.Files().Write("blocklist.json", BlocklistText(CardRules("WARN", 1)));
  for (const FileOperation failing : {FileOperation::kOpenForReading, FileOperation::kRead}) {
    qelcore::host::SetFileOperationHook([failing](FileOperation operation, const std::string&) {
      if (operation == failing) throw std::runtime_error("bad sector");
    });
    EXPECT_THROW(static_cast<void>(RunOnFile(RunMode::kHelp)), std::runtime_error);
  }
  qelcore::host::SetFileOperationHook({});
  EXPECT_EQ(mState, SCRPriorState());
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
}

}  // namespace
