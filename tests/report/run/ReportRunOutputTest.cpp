// Runs with an output path.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/TextReport.h"
#include "tests/report/run/ReportRunFixture.h"

namespace {

using qelcore::host::FileOperation;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::IDsOf;
using testsupport::LastEvent;

class ReportRunOutputTest : public testsupport::ReportRunFixture {
 protected:
  ReportRunOutputTest() { SetOutput("report.txt"); }
  ~ReportRunOutputTest() override { qelcore::host::SetFileOperationHook({}); }

  void SetOutput(const std::string& relativePath) {
    mOutput = mHost.Files().Path() / relativePath;
    mOutputPath = qelcore::string::UTF8to16(mOutput.string());
  }

  std::filesystem::path mOutput;
};

TEST_F(ReportRunOutputTest, TheFileIsWrittenInPlaceOfTheDialog) {
  EXPECT_EQ(Run(RunMode::kFile, BlocklistText(CardRules("WARN", 1))), RunResult::kRanAndChanged);
  EXPECT_THAT(mPresentations, IsEmpty());
  EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, 0U);
  EXPECT_FALSE(Statistics().mReportPresentedAtLaunch);
  EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-not-needed 1 0");
  EXPECT_THAT(testsupport::ReadWholeFile(mOutput),
              HasSubstr("[Video] Card v.1.2.3.4\nISSUES:\n1.\tWARN 1\n"));
}

TEST_F(ReportRunOutputTest, WithoutBlocklistTheFileListsTheComponents) {
  EXPECT_EQ(Run(RunMode::kFile, ""), RunResult::kRan);
  EXPECT_EQ(LastEvent(mHost), "click:unknown-value ui-not-needed 0 0");
  EXPECT_THAT(testsupport::ReadWholeFile(mOutput), HasSubstr("[Audio] Speakers v.5.6.0.0\n"));
}

TEST_F(ReportRunOutputTest, ALaunchWritesTheFileOnlyWhenItHasSomethingToShow) {
  mState.mShowIssuesAtStartup = false;
  EXPECT_EQ(Run(RunMode::kLaunch, BlocklistText({})), RunResult::kRanAndChanged);
  EXPECT_FALSE(std::filesystem::exists(mOutput));
  EXPECT_EQ(Run(RunMode::kLaunch, BlocklistText(CardRules("WARN", 1))), RunResult::kRanAndChanged);
  EXPECT_TRUE(std::filesystem::exists(mOutput));
  // The user's choice is about the dialog.
  EXPECT_FALSE(Statistics().mReportSkippedAtLaunch);
  EXPECT_TRUE(Statistics().mShowReportAtLaunch);
  EXPECT_EQ(LastEvent(mHost), "via:launch ui-not-needed 1 0");
}

TEST_F(ReportRunOutputTest, AFileThatCannotBeCreatedFailsTheRun) {
  for (const char* const path : {"missing/report.txt", "preferences", "file/report.txt"}) {
    SCOPED_TRACE(path);
    mHost.Files().Write("file", "no directory");
    for (const std::string& blocklist : {BlocklistText(CardRules("WARN", 2)), std::string()}) {
      mState = {};
      mHost.mExceptionContexts.clear();
      mHost.mEvents.clear();
      SetOutput(path);
      EXPECT_EQ(Run(RunMode::kFile, blocklist), RunResult::kFailed);
      EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReport"));
      EXPECT_EQ(LastEvent(mHost), blocklist.empty() ? "click:unknown-value ui-not-needed 0 0"
                                                    : "click:unknown-value ui-not-needed 2 0");
      EXPECT_THAT(mPresentations, IsEmpty());
    }
  }
  EXPECT_FALSE(std::filesystem::exists(mHost.Files().Path() / "missing"));
}

TEST_F(ReportRunOutputTest, WhateverFailsWhileWritingFailsTheRun) {
  for (const FileOperation failing :
       {FileOperation::kCreate, FileOperation::kOpenForWriting, FileOperation::kWrite}) {
    SCOPED_TRACE(static_cast<int>(failing));
    mHost.mExceptionContexts.clear();
    mHost.mExceptionTexts.clear();
    const std::string output = mOutput.string();
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
      if (operation == failing && path == output) throw std::runtime_error("disk full");
    });
    EXPECT_EQ(Run(RunMode::kFile, BlocklistText(CardRules("WARN", 1))), RunResult::kFailed);
    EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReport"));
    EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("disk full"));
  }
}

TEST_F(ReportRunOutputTest, ASectionThatThrowsFailsTheRunAndLeavesTheOldReport) {
  mHost.Files().Write("report.txt", "the old report");
  qelsystemcompatibilityreport::RegisterTextReportCallback(
      [](auto&, auto&) { throw std::runtime_error("no section"); },
      qelsystemcompatibilityreport::DisplayPriority::kApplication);
  EXPECT_EQ(Run(RunMode::kFile, BlocklistText(CardRules("WARN", 1))), RunResult::kFailed);
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunReport"));
  EXPECT_EQ(testsupport::ReadWholeFile(mOutput), "the old report");
}

TEST_F(ReportRunOutputTest, AFailedFileStillCounts) {
  SetOutput("missing/report.txt");
  EXPECT_EQ(Run(RunMode::kFile, BlocklistText(CardRules("WARN", 2))), RunResult::kFailed);
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 1U);
  EXPECT_THAT(Statistics().mRemaining, ElementsAre(0U, 2U, 0U, 0U));
  EXPECT_EQ(mState.mWarnMatches, IDsOf(CardRules("WARN", 2)));
}

TEST_F(ReportRunOutputTest, PathsOfAnyScript) {
  for (const char* const name :
       {"Bericht für Jörg.txt", "レポート.txt", "\xF0\x9F\x98\x80.txt", "a b c.txt"}) {
    SetOutput(name);
    EXPECT_EQ(Run(RunMode::kFile, ""), RunResult::kRan) << name;
    EXPECT_TRUE(std::filesystem::exists(mOutput)) << name;
  }
}

}  // namespace
