// Listening to the application's states, and stopping from anywhere.
#include "qelsystemcompatibilityreport/report/startup/SafeMessageListener.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/support/Gate.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::appstatemanager::AppState;
using qelcore::host::SetAppState;
using qelsystemcompatibilityreport::SafeMessageListener;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Gate;

std::shared_ptr<SafeMessageListener> Listen(SafeMessageListener::Handler handler) {
  auto listener = std::make_shared<SafeMessageListener>(std::move(handler));
  qelcore::messaging::AddListener(listener);
  return listener;
}

TEST(SafeMessageListener, HandsOverEveryState) {
  std::vector<AppState> states;
  const auto listener = Listen([&](AppState state) { states.push_back(state); });
  SetAppState(AppState::kStarting);
  SetAppState(AppState::kPostStartup);
  SetAppState(AppState{77});
  EXPECT_THAT(states, ElementsAre(AppState::kStarting, AppState::kPostStartup, AppState{77}));
}

TEST(SafeMessageListener, HearsNothingAfterItsShutdown) {
  int calls = 0;
  const auto listener = Listen([&](AppState) { ++calls; });
  listener->Shutdown();
  listener->Shutdown();
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(calls, 0);
}

TEST(SafeMessageListener, HearsNothingAfterItsRelease) {
  int calls = 0;
  auto listener = Listen([&](AppState) { ++calls; });
  listener.reset();
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(calls, 0);
}

TEST(SafeMessageListener, AShutdownFromInsideTheHandlerDoesNotWaitForItself) {
  std::shared_ptr<SafeMessageListener> listener;
  int calls = 0;
  listener = Listen([&](AppState) {
    ++calls;
    listener->Shutdown();
    listener.reset();
  });
  SetAppState(AppState::kStarted);
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(calls, 1);
}

TEST(SafeMessageListener, AShutdownFromInsideANestedMessage) {
  std::shared_ptr<SafeMessageListener> listener;
  std::vector<AppState> states;
  listener = Listen([&](AppState state) {
    states.push_back(state);
    if (state == AppState::kStarting) SetAppState(AppState::kStarted);
    if (state == AppState::kStarted) listener->Shutdown();
  });
  SetAppState(AppState::kStarting);
  SetAppState(AppState::kPostStartup);
  EXPECT_THAT(states, ElementsAre(AppState::kStarting, AppState::kStarted));
}

TEST(SafeMessageListener, AShutdownWaitsForAHandlerOnAnotherThread) {
  Gate isInside;
  Gate mayGo;
  std::atomic<bool> hasEnded{false};
  // One message before, so that the wait is for this call and not for any.
  const auto listener = Listen([&](AppState state) {
    if (state != AppState::kPostStartup) return;
    isInside.Open();
    mayGo.Wait();
    hasEnded = true;
  });
  SetAppState(AppState::kStarted);
  std::thread sender([] { SetAppState(AppState::kPostStartup); });
  isInside.Wait();
  std::thread releaser([&] { mayGo.Open(); });
  listener->Shutdown();
  EXPECT_TRUE(hasEnded);
  releaser.join();
  sender.join();
}

TEST(SafeMessageListener, AHandlerThatThrowsIsLoggedAndCalledAgain) {
  testsupport::TestHost host;
  int calls = 0;
  const auto listener = Listen([&](AppState) {
    ++calls;
    throw std::runtime_error("handler");
  });
  EXPECT_NO_THROW(SetAppState(AppState::kStarting));
  EXPECT_NO_THROW(SetAppState(AppState::kStarted));
  EXPECT_EQ(calls, 2);
  EXPECT_THAT(host.mExceptionTexts, ElementsAre("handler", "handler"));
  // A call that threw has ended, too.
  listener->Shutdown();
}

TEST(SafeMessageListener, ManyThreadsSendWhileOneShutsDown) {
  for (int round = 0; round < 50; ++round) {
    std::atomic<bool> isOver{false};
    std::atomic<int> late{0};
    const auto listener = Listen([&](AppState) {
      if (isOver) ++late;
    });
    std::vector<std::thread> senders;
    for (int sender = 0; sender < 4; ++sender) {
      senders.emplace_back([] {
        for (int message = 0; message < 20; ++message) SetAppState(AppState::kStarted);
      });
    }
    listener->Shutdown();
    isOver = true;
    for (std::thread& sender : senders) sender.join();
    EXPECT_EQ(late, 0);
  }
}

}  // namespace
