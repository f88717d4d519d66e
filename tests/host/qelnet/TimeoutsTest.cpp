// Servers that keep the client waiting.
#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/Gate.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::StartsWith;
using testsupport::Gate;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ServerConnection;

using Timeouts = testsupport::NetTest;

struct StallCase {
  const char* mName;
  const char* mBeginning;
};

TEST_F(Timeouts, AServerThatFallsSilentIsGivenUp) {
  const StallCase cases[] = {
      {"no answer at all", ""},
      {"in the headers", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n"},
      {"before the body", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n"},
      {"in the body", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nfive "},
  };
  // No other clock may end the wait.
  qelnet::host::SetOptions({.mConnectTimeout = std::chrono::hours(1), .mStallTimeout = milliseconds(350)});
  std::size_t count = 0;
  for (const StallCase& stallCase : cases) {
    SCOPED_TRACE(stallCase.mName);
    const LoopbackServer server([&](ServerConnection& connection) {
      (void)connection.ReadRequest();
      connection.Write(stallCase.mBeginning);
      connection.WaitForClose();
    });
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(Get(server.Url("/")));
    const auto answer = mAnswers->WaitFor(++count).back();
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(350));
    EXPECT_EQ(answer.mStatus, 0);
    EXPECT_EQ(answer.mBody, "");
    EXPECT_EQ(Warnings().size(), count);
    EXPECT_EQ(Warnings().back(), "Failed: The server is silent.");
  }
}

TEST_F(Timeouts, ASlowBodyIsNotStalled) {
  constexpr milliseconds kStall(1000);
  qelnet::host::SetOptions({.mStallTimeout = kStall});
  const LoopbackServer quick(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", ""); }));
  std::size_t quickAnswers = 0;
  std::string expected;
  const auto quickAnswersOfTheServer = std::make_shared<testsupport::ReceivedAnswers>();
  // Goes on for longer than the time-out, piece by piece; another request is answered between two pieces.
  const LoopbackServer slow([&](ServerConnection& connection) {
    (void)connection.ReadRequest();
    const auto start = std::chrono::steady_clock::now();
    connection.Write("HTTP/1.0 200 OK\r\n\r\n");
    while (std::chrono::steady_clock::now() - start < kStall + kStall / 2) {
      connection.Write("piece ");
      expected += "piece ";
      if (!testsupport::Get(quick.Url("/"), [&](const qelnet::Response& response) {
            quickAnswersOfTheServer->Add(response);
          })) {
        return;
      }
      (void)quickAnswersOfTheServer->WaitFor(++quickAnswers);
    }
  });
  const auto answer = Fetch(slow.Url("/"));
  EXPECT_EQ(answer.mStatus, 200);
  EXPECT_TRUE(answer.mBody == expected);
  EXPECT_GT(quickAnswers, 1U);
}

TEST_F(Timeouts, AConnectionThatIsNotMadeIsGivenUp) {
  qelnet::host::SetOptions({.mConnectTimeout = milliseconds(200)});
  // Accepts, and leaves the client's TLS greeting without an answer.
  const LoopbackServer server([](ServerConnection& connection) { connection.WaitForClose(); });
  EXPECT_EQ(Fetch("https://127.0.0.1:" + std::to_string(server.Port()) + '/').mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre(StartsWith("Failed: ")));
}

TEST_F(Timeouts, AShortStallTimeoutLeavesTheConnectionItsTime) {
  qelnet::host::SetOptions({.mConnectTimeout = milliseconds(600), .mStallTimeout = milliseconds(1)});
  const LoopbackServer server([](ServerConnection& connection) { connection.WaitForClose(); });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Fetch("https://127.0.0.1:" + std::to_string(server.Port()) + '/').mStatus, 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(600));
}

TEST_F(Timeouts, ALongCompletionDoesNotMakeOthersLookSilent) {
  qelnet::host::SetOptions({.mStallTimeout = milliseconds(300)});
  Gate mayAnswer;
  Gate isWaiting;
  const LoopbackServer waiting(LoopbackServer::Answering([&](const std::string& path) {
    isWaiting.Open();
    mayAnswer.Wait();
    return HttpAnswer("200 OK", path);
  }));
  const LoopbackServer quick(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", ""); }));
  ASSERT_TRUE(Get(waiting.Url("/waited")));
  isWaiting.Wait();
  ASSERT_TRUE(testsupport::Get(quick.Url("/"), [&](const qelnet::Response&) {
    mayAnswer.Open();
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < milliseconds(600)) std::this_thread::yield();
  }));
  EXPECT_EQ(mAnswers->WaitFor(1).front().mBody, "/waited");
}

TEST_F(Timeouts, OneStalledRequestDoesNotHoldUpOthers) {
  Gate hasArrived;
  const LoopbackServer silent([&](ServerConnection& connection) {
    (void)connection.ReadRequest();
    hasArrived.Open();
    connection.WaitForClose();
  });
  const LoopbackServer quick(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "here"); }));
  ASSERT_TRUE(Get(silent.Url("/")));
  hasArrived.Wait();
  EXPECT_EQ(Fetch(quick.Url("/")).mBody, "here");
}

TEST_F(Timeouts, BeyondTheirBoundsAreBroughtBack) {
  const LoopbackServer quick(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "here"); }));
  const LoopbackServer silent([](ServerConnection& connection) { connection.WaitForClose(); });
  qelnet::host::SetOptions({.mConnectTimeout = milliseconds::max(), .mStallTimeout = milliseconds::max()});
  EXPECT_EQ(Fetch(quick.Url("/")).mStatus, 200);
  qelnet::host::SetOptions({.mConnectTimeout = milliseconds::max(), .mStallTimeout = milliseconds::min()});
  ASSERT_TRUE(Get(silent.Url("/")));
  EXPECT_EQ(mAnswers->WaitFor(2).back().mStatus, 0);
  qelnet::host::SetOptions({.mConnectTimeout = milliseconds(0)});
  ASSERT_TRUE(Get("https://127.0.0.1:" + std::to_string(silent.Port()) + '/'));
  EXPECT_EQ(mAnswers->WaitFor(3).back().mStatus, 0);
}

}  // namespace
