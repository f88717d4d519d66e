// Writing the remembered state, and deleting it.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::Guid;
using qelcore::host::FileOperation;
using qelsystemcompatibilityreport::DeleteReportSavedState;
using qelsystemcompatibilityreport::LoadPriorStateFromPrefsDir;
using qelsystemcompatibilityreport::SavePriorStateToPrefsDir;
using qelsystemcompatibilityreport::SCRPriorState;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Listing;

constexpr const char* kFile = "preferences/SCRPriorState.json";

SCRPriorState FullState() {
  SCRPriorState state;
  state.mLastMatchJob = Guid::FromUTF8String("01234567-89AB-cdef-0123-456789abcdef");
  state.mInfoMatches = {"i1", "i2"};
  state.mWarnMatches = {"w"};
  state.mErrorMatches = {"e2", "e1", "e2"};
  state.mFatalMatches = {"f\"\\\n\xC3\xA9"};
  state.mShowIssuesAtStartup = false;
  state.mDialogDisableReason = 4294967295;
  return state;
}

class PriorStateSaveTest : public testing::Test {
 protected:
  ~PriorStateSaveTest() override {
    qelcore::host::SetFileOperationHook({});
    qelsystemcompatibilityreport::EnableReports(true);
  }

  std::string Saved(const SCRPriorState& state) {
    EXPECT_TRUE(SavePriorStateToPrefsDir(state));
    return mHost.Files().Read(kFile);
  }

  testsupport::TestHost mHost;
};

TEST_F(PriorStateSaveTest, TheBytesOfTheFile) {
  EXPECT_EQ(Saved({}), R"({"last_match_job":"00000000-0000-0000-0000-000000000000"})");

  SCRPriorState state;
  state.mLastMatchJob = Guid::FromUTF8String("01234567-89ab-cdef-0123-456789abcdef");
  EXPECT_EQ(Saved(state), R"({"last_match_job":"01234567-89ab-cdef-0123-456789abcdef"})");

  state.mShowIssuesAtStartup = false;
  EXPECT_EQ(Saved(state),
            R"({"last_match_job":"01234567-89ab-cdef-0123-456789abcdef","show_issues_at_startup":false})");

  state = {};
  state.mDialogDisableReason = 1;
  EXPECT_EQ(Saved(state),
            R"({"dialog_disable_reason":1,"last_match_job":"00000000-0000-0000-0000-000000000000"})");

  state = {};
  state.mWarnMatches = {"HASH:1"};
  EXPECT_EQ(Saved(state),
            R"({"last_match_job":"00000000-0000-0000-0000-000000000000","warn_matches":["HASH:1"]})");

  EXPECT_EQ(Saved(FullState()),
            R"({"dialog_disable_reason":4294967295,"error_matches":["e2","e1","e2"],)"
            R"("fatal_matches":["f\"\\\n)"
            "\xC3\xA9"
            R"("],"info_matches":["i1","i2"],"last_match_job":"01234567-89ab-cdef-0123-456789abcdef",)"
            R"("show_issues_at_startup":false,"warn_matches":["w"]})");
}

TEST_F(PriorStateSaveTest, WhatIsSavedIsLoaded) {
  for (const SCRPriorState& state : {FullState(), SCRPriorState()}) {
    EXPECT_TRUE(SavePriorStateToPrefsDir(state));
    SCRPriorState loaded = FullState();
    EXPECT_TRUE(LoadPriorStateFromPrefsDir(loaded));
    EXPECT_EQ(loaded, state);
  }
}

TEST_F(PriorStateSaveTest, ManyIssues) {
  SCRPriorState state;
  for (int number = 0; number < 20000; ++number)
    state.mWarnMatches.push_back("HASH:" + std::to_string(number));
  EXPECT_TRUE(SavePriorStateToPrefsDir(state));
  SCRPriorState loaded;
  EXPECT_TRUE(LoadPriorStateFromPrefsDir(loaded));
  EXPECT_EQ(loaded, state);
}

TEST_F(PriorStateSaveTest, ALongerOldFileIsReplacedWhole) {
  mHost.Files().Write(kFile, std::string(100000, 'x'));
  EXPECT_EQ(Saved({}), R"({"last_match_job":"00000000-0000-0000-0000-000000000000"})");
  EXPECT_THAT(Listing(mHost.Preferences()), ElementsAre("SCRPriorState.json"));
}

TEST_F(PriorStateSaveTest, TheDirectoryIsMade) {
  std::filesystem::remove(mHost.Preferences());
  EXPECT_TRUE(SavePriorStateToPrefsDir(FullState()));
  SCRPriorState loaded;
  EXPECT_TRUE(LoadPriorStateFromPrefsDir(loaded));
  EXPECT_EQ(loaded, FullState());
}

/// Lets every operation of a save fail in turn, until one save succeeds.
TEST_F(PriorStateSaveTest, AFailedSaveLeavesTheOldFile) {
  for (const bool hasOldFile : {true, false}) {
    SCOPED_TRACE(hasOldFile);
    if (hasOldFile) {
      mHost.Files().Write(kFile, "the old state");
    } else {
      std::filesystem::remove(mHost.Preferences() / "SCRPriorState.json");
    }
    const std::vector<std::string> before = Listing(mHost.Preferences());
    int failures = 0;
    for (bool isSaved = false; !isSaved && failures < 100;) {
      mHost.mExceptionContexts.clear();
      mHost.mExceptionTexts.clear();
      int operations = 0;
      qelcore::host::SetFileOperationHook([&](FileOperation, const std::string&) {
        if (operations++ == failures) throw std::runtime_error("disk full");
      });
      isSaved = SavePriorStateToPrefsDir(FullState());
      qelcore::host::SetFileOperationHook({});
      if (isSaved) break;
      SCOPED_TRACE(failures);
      EXPECT_THAT(mHost.mExceptionContexts,
                  ElementsAre("qelsystemcompatibilityreport::SavePriorStateToPrefsDir"));
      EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("disk full"));
      EXPECT_EQ(Listing(mHost.Preferences()), before);
      if (hasOldFile) {
        EXPECT_EQ(mHost.Files().Read(kFile), "the old state");
      }
      ++failures;
    }
    // Opening, writing, flushing and replacing at the least.
    EXPECT_GE(failures, 4);
    SCRPriorState loaded;
    EXPECT_TRUE(LoadPriorStateFromPrefsDir(loaded));
    EXPECT_EQ(loaded, FullState());
  }
}

TEST_F(PriorStateSaveTest, WithoutPreferencesDirectoryASaveFails) {
  std::filesystem::remove_all(mHost.Preferences());
  mHost.Files().Write("preferences", "a file stands where the directory should");
  EXPECT_FALSE(SavePriorStateToPrefsDir(FullState()));
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::SavePriorStateToPrefsDir"));
  EXPECT_EQ(mHost.Files().Read("preferences"), "a file stands where the directory should");
}

// ---- Deleting

class DeleteReportSavedStateTest : public PriorStateSaveTest {
 protected:
  DeleteReportSavedStateTest() {
    mHost.Files().Write("preferences/SystemProperties.json", "{}");
    mHost.Files().Write("preferences/other.json", "{}");
  }
};

TEST_F(DeleteReportSavedStateTest, TheStateAndThePropertiesGo) {
  mHost.Files().Write(kFile, "whatever it holds");
  DeleteReportSavedState();
  EXPECT_THAT(Listing(mHost.Preferences()), ElementsAre("other.json"));
  EXPECT_THAT(testsupport::EventSummaries(mHost),
              ElementsAre("OPERATIONAL|Stability|apply|reinitialize-system-compatibility-report"));
  EXPECT_THAT(mHost.mEvents.at(0).GetItems(), IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  SCRPriorState state = FullState();
  EXPECT_FALSE(LoadPriorStateFromPrefsDir(state));
  EXPECT_EQ(state, SCRPriorState());
}

TEST_F(DeleteReportSavedStateTest, WithoutAStateThePropertiesGoWithoutAnEvent) {
  DeleteReportSavedState();
  EXPECT_THAT(Listing(mHost.Preferences()), ElementsAre("other.json"));
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  DeleteReportSavedState();
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

TEST_F(DeleteReportSavedStateTest, ItWorksWhileTheServiceIsOff) {
  mHost.Files().Write(kFile, "{}");
  qelsystemcompatibilityreport::EnableReports(false);
  DeleteReportSavedState();
  EXPECT_THAT(Listing(mHost.Preferences()), ElementsAre("other.json"));
  EXPECT_EQ(mHost.mEvents.size(), 1U);
}

TEST_F(DeleteReportSavedStateTest, AStateThatCannotBeDeletedKeepsNothingElse) {
  mHost.Files().Write(kFile, "{}");
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string& path) {
    if (operation == FileOperation::kDelete && path.ends_with("SCRPriorState.json")) {
      throw std::runtime_error("in use");
    }
  });
  DeleteReportSavedState();
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("in use"));
  EXPECT_THAT(Listing(mHost.Preferences()), ElementsAre("SCRPriorState.json", "other.json"));
}

}  // namespace
