// Start-up: what the library does by itself when the host starts it and tells its states.
#include "qelsystemcompatibilityreport/report/startup/AppStateListener.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/support/Gate.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::appstatemanager::AppState;
using qelcore::host::SetAppState;
using qelsystemcompatibilityreport::EnableReports;
using testing::IsEmpty;

class AppStateListenerTest : public testing::Test {
 protected:
  AppStateListenerTest() { EXPECT_TRUE(qelcore::host::BeginProcess()); }

  [[nodiscard]] std::size_t TimesLogged() const { return mHost.mUsageEntries.size(); }

  testsupport::TestHost mHost;
};

TEST_F(AppStateListenerTest, OnlyTheEndOfStartUpLogsTheStatistics) {
  for (const int state : {0, 1, 2, 3, 4, 6, 7, -5, 50}) {
    SetAppState(AppState{state});
    EXPECT_EQ(TimesLogged(), 0U) << state;
  }
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 1U);
  EXPECT_THAT(mHost.mEvents, IsEmpty());
}

TEST_F(AppStateListenerTest, ASecondEndOfStartUpLogsNothing) {
  SetAppState(AppState::kPostStartup);
  SetAppState(AppState::kStarted);
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(AppStateListenerTest, ListeningAgainDoesNothing) {
  SetAppState(AppState::kPostStartup);
  qelsystemcompatibilityreport::ListenToAppStates();
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(AppStateListenerTest, TheEndOfStartUpFromInsideItself) {
  mHost.mOnUsageEntry = [] { SetAppState(AppState::kPostStartup); };
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(AppStateListenerTest, TheEndOfStartUpFromTwoThreadsAtOnce) {
  for (std::size_t round = 1; round <= 200; ++round) {
    qelsystemcompatibilityreport::ReplaceAppStateListener();
    std::atomic<int> ready = 0;
    const auto send = [&] {
      for (++ready; ready != 2;) std::this_thread::yield();
      SetAppState(AppState::kPostStartup);
    };
    std::thread other(send);
    send();
    other.join();
    ASSERT_EQ(TimesLogged(), round);
  }
}

TEST_F(AppStateListenerTest, AReplacedListenerHearsNothing) {
  qelsystemcompatibilityreport::ReplaceAppStateListener();
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 1U);
}

TEST_F(AppStateListenerTest, WhileTheServiceIsOffTheOccasionPasses) {
  EnableReports(false);
  SetAppState(AppState::kPostStartup);
  EnableReports(true);
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 0U);
}

TEST_F(AppStateListenerTest, TheEndOfTheProcessWaitsForAThreadThatStillLogs) {
  testsupport::Gate isLogging;
  testsupport::Gate mayGo;
  std::atomic<bool> hasLogged = false;
  mHost.mOnUsageEntry = [&] {
    isLogging.Open();
    mayGo.Wait();
    hasLogged = true;
  };
  std::thread sender([] { SetAppState(AppState::kPostStartup); });
  isLogging.Wait();
  std::thread releaser([&] { mayGo.Open(); });
  qelcore::host::EndProcess();
  EXPECT_TRUE(hasLogged);
  releaser.join();
  sender.join();
}

TEST_F(AppStateListenerTest, AfterTheProcessEndedNothingIsHeard) {
  qelcore::host::EndProcess();
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(TimesLogged(), 0U);
}

}  // namespace
