// What the tests of reading the remembered state have in common.
#pragma once

#include <gmock/gmock.h>

#include <string_view>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "tests/support/TestHost.h"

namespace testsupport {

/// A state in which nothing is at its default.
inline qelsystemcompatibilityreport::SCRPriorState OtherState() {
  qelsystemcompatibilityreport::SCRPriorState state;
  state.mLastMatchJob = qelcore::Guid::FromUTF8String("ffffffff-ffff-ffff-ffff-ffffffffffff");
  state.mInfoMatches = {"old"};
  state.mWarnMatches = {"old"};
  state.mErrorMatches = {"old"};
  state.mFatalMatches = {"old"};
  state.mShowIssuesAtStartup = false;
  state.mDialogDisableReason = 9;
  return state;
}

class PriorStateFixture : public testing::Test {
 protected:
  ~PriorStateFixture() override { qelcore::host::SetFileOperationHook({}); }

  /// Loads a file of this content over a state in which nothing is at its default.
  bool Load(std::string_view content) {
    mHost.Files().Write("preferences/SCRPriorState.json", content);
    return LoadAgain();
  }

  bool LoadAgain() {
    mHost.mTrace.clear();
    mHost.mExceptionContexts.clear();
    mState = OtherState();
    return qelsystemcompatibilityreport::LoadPriorStateFromPrefsDir(mState);
  }

  void ExpectDefaults() const { EXPECT_EQ(mState, qelsystemcompatibilityreport::SCRPriorState()); }

  void ExpectNothingSaid() const {
    EXPECT_THAT(mHost.mExceptionContexts, testing::IsEmpty());
    EXPECT_THAT(mHost.mTrace, testing::IsEmpty());
  }

  void ExpectLogged() const {
    EXPECT_THAT(mHost.mExceptionContexts,
                testing::ElementsAre("qelsystemcompatibilityreport::LoadPriorStateFromPrefsDir"));
    EXPECT_THAT(mHost.Traced(5), testing::IsEmpty());
  }

  TestHost mHost;
  qelsystemcompatibilityreport::SCRPriorState mState;
};

}  // namespace testsupport
