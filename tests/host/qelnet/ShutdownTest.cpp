// The end of the library, with and without requests in flight.
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/Gate.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Gate;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ServerConnection;

using Shutdown = testsupport::NetTest;

/// Receives a request, says so, and never answers.
LoopbackServer::ConnectionHandler Silent(Gate& hasArrived) {
  return [&hasArrived](ServerConnection& connection) {
    (void)connection.ReadRequest();
    hasArrived.Open();
    connection.WaitForClose();
  };
}

TEST_F(Shutdown, CompletesWhatIsInFlight) {
  Gate hasArrived;
  const LoopbackServer server(Silent(hasArrived));
  ASSERT_TRUE(Get(server.Url("/")));
  hasArrived.Wait();
  // The stall time-out is a minute, and the test's own end is not much later.
  qelnet::host::Shutdown();
  const auto answers = mAnswers->Now();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers.front().mStatus, 0);
  EXPECT_NE(answers.front().mThread, std::this_thread::get_id());
  EXPECT_THAT(Warnings(), ElementsAre("Failed: The host shuts down."));
}

TEST_F(Shutdown, CompletesABodyThatHasBegun) {
  Gate hasBegun;
  const LoopbackServer server([&](ServerConnection& connection) {
    (void)connection.ReadRequest();
    connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf");
    hasBegun.Open();
    connection.WaitForClose();
  });
  ASSERT_TRUE(Get(server.Url("/")));
  hasBegun.Wait();
  qelnet::host::Shutdown();
  ASSERT_EQ(mAnswers->Now().size(), 1U);
  EXPECT_EQ(mAnswers->Now().front().mStatus, 0);
  EXPECT_EQ(mAnswers->Now().front().mBody, "");
}

TEST_F(Shutdown, CompletesAConnectionThatIsBeingMade) {
  Gate hasConnected;
  // Accepts, and leaves the client's TLS greeting without an answer.
  const LoopbackServer server([&](ServerConnection& connection) {
    hasConnected.Open();
    connection.WaitForClose();
  });
  ASSERT_TRUE(Get("https://127.0.0.1:" + std::to_string(server.Port()) + '/'));
  hasConnected.Wait();
  qelnet::host::Shutdown();
  ASSERT_EQ(mAnswers->Now().size(), 1U);
  EXPECT_EQ(mAnswers->Now().front().mStatus, 0);
}

TEST_F(Shutdown, CompletesRequestsThatHaveJustStarted) {
  Gate hasArrived;
  const LoopbackServer server(Silent(hasArrived));
  for (int number = 0; number < 20; ++number) ASSERT_TRUE(Get(server.Url("/")));
  qelnet::host::Shutdown();
  EXPECT_EQ(mAnswers->Now().size(), 20U);
}

TEST_F(Shutdown, ComesWithTheEndOfTheProcess) {
  Gate hasArrived;
  const LoopbackServer server(Silent(hasArrived));
  ASSERT_TRUE(Get(server.Url("/")));
  hasArrived.Wait();
  qelcore::host::EndProcess();
  EXPECT_EQ(mAnswers->Now().size(), 1U);
  EXPECT_FALSE(Get(server.Url("/")));
}

TEST_F(Shutdown, WaitsForACompletionThatRuns) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", ""); }));
  Gate hasBegun;
  Gate mayEnd;
  std::atomic<bool> hasEnded{false};
  ASSERT_TRUE(testsupport::Get(server.Url("/"), [&](const qelnet::Response&) {
    hasBegun.Open();
    mayEnd.Wait();
    hasEnded = true;
  }));
  hasBegun.Wait();
  std::thread ender([&] {
    qelnet::host::Shutdown();
    EXPECT_TRUE(hasEnded);
  });
  // From here on requests are refused, though the shutdown has not returned.
  while (testsupport::Get("http://127.0.0.1:1/", {})) std::this_thread::yield();
  EXPECT_FALSE(hasEnded);
  mayEnd.Open();
  ender.join();
}

TEST_F(Shutdown, FromWithinACompletionCompletesTheOthersFirst) {
  Gate hasArrived;
  const LoopbackServer silent(Silent(hasArrived));
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", ""); }));
  ASSERT_TRUE(Get(silent.Url("/")));
  hasArrived.Wait();
  Gate hasShutDown;
  ASSERT_TRUE(testsupport::Get(server.Url("/"), [&, answers = mAnswers](const qelnet::Response& response) {
    qelnet::host::Shutdown();
    EXPECT_EQ(answers->Now().size(), 1U);
    EXPECT_FALSE(testsupport::Get(server.Url("/"), {}));
    answers->Add(response);
    hasShutDown.Open();
  }));
  hasShutDown.Wait();
  qelnet::host::Shutdown();
  const auto answers = mAnswers->Now();
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers.at(0).mStatus, 0);
  EXPECT_EQ(answers.at(1).mStatus, 200);
}

TEST_F(Shutdown, ACompletionOfTheShutdownMayShutDownToo) {
  Gate hasArrived;
  const LoopbackServer server(Silent(hasArrived));
  for (int number = 0; number < 3; ++number) {
    ASSERT_TRUE(testsupport::Get(server.Url("/"), [answers = mAnswers](const qelnet::Response& response) {
      answers->Add(response);
      qelnet::host::Shutdown();
      EXPECT_EQ(answers->Now().size(), 3U);
    }));
  }
  hasArrived.Wait();
  qelnet::host::Shutdown();
  EXPECT_EQ(mAnswers->Now().size(), 3U);
}

TEST_F(Shutdown, FromManyThreadsWhileOthersAsk) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string& path) { return HttpAnswer("200 OK", path); }));
  std::atomic<std::size_t> accepted{0};
  std::vector<std::thread> threads;
  threads.reserve(7);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      // At most so many at once: the server has a thread for each.
      constexpr std::size_t kAtOnce = 40;
      while (Get(server.Url("/"))) {
        const std::size_t mine = ++accepted;
        static_cast<void>(mAnswers->WaitFor(mine - std::min(mine, kAtOnce)));
      }
    });
  }
  EXPECT_GE(mAnswers->WaitFor(20).size(), 20U);
  for (int thread = 0; thread < 3; ++thread) threads.emplace_back([] { qelnet::host::Shutdown(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mAnswers->Now().size(), accepted);
}

TEST_F(Shutdown, TwiceIsAsOnce) {
  qelnet::host::Shutdown();
  qelnet::host::Shutdown();
  EXPECT_THAT(Warnings(), IsEmpty());
}

}  // namespace
