// Answers that do not come, or not whole: status 0 and no body.
#include <gmock/gmock.h>

#include <string>

#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ReceivedAnswer;
using testsupport::ServerConnection;

using Failures = testsupport::NetTest;

constexpr const char* kChunkedHead =
    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n";

struct FailureCase {
  const char* mName;
  std::string mAnswer;
};

TEST_F(Failures, AnAnswerThatIsNotWholeGivesNothing) {
  const FailureCase cases[] = {
      {"fewer bytes than said", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nshort"},
      {"no body at all", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n"},
      {"no last chunk", std::string(kChunkedHead) + "3\r\nabc\r\n"},
      {"half a chunk", std::string(kChunkedHead) + "a\r\nabc"},
      {"a chunk of no size", std::string(kChunkedHead) + "zz\r\nabc\r\n0\r\n\r\n"},
      {"half a header", "HTTP/1.1 200 OK\r\nContent-Le"},
      {"nothing", ""},
      {"another protocol", "220 mail server ready\r\n"},
      {"a negative length", "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nabcde"},
  };
  const LoopbackServer server(LoopbackServer::Answering(
      [&](const std::string& path) { return cases[std::stoul(path.substr(1))].mAnswer; }));
  std::size_t row = 0;
  for (const FailureCase& failureCase : cases) {
    SCOPED_TRACE(failureCase.mName);
    ASSERT_TRUE(Get(server.Url('/' + std::to_string(row))));
    const ReceivedAnswer received = mAnswers->WaitFor(row + 1).back();
    EXPECT_EQ(received.mStatus, 0);
    EXPECT_EQ(received.mBody, "");
    ++row;
    ASSERT_EQ(Warnings().size(), row);
    EXPECT_THAT(Warnings().back(), StartsWith("Failed: "));
  }
}

TEST_F(Failures, NobodyListens) {
  const ReceivedAnswer received = Fetch(testsupport::UrlWithoutServer("/"));
  EXPECT_EQ(received.mStatus, 0);
  EXPECT_EQ(received.mBody, "");
  EXPECT_THAT(Warnings(), ElementsAre(StartsWith("Failed: ")));
}

struct LimitCase {
  const char* mName;
  std::string mAnswer;
  int mStatus;
};

TEST_F(Failures, ABodyOverTheLimit) {
  const LimitCase cases[] = {
      {"as large as allowed", HttpAnswer("200 OK", std::string(1000, 'a')), 200},
      {"one more, said before", HttpAnswer("200 OK", std::string(1001, 'a')), 0},
      {"as large as allowed, not said", "HTTP/1.0 200 OK\r\n\r\n" + std::string(1000, 'a'), 200},
      {"one more, not said", "HTTP/1.0 200 OK\r\n\r\n" + std::string(1001, 'a'), 0},
      {"much more in chunks",
       std::string(kChunkedHead) + "ffff\r\n" + std::string(0xffff, 'a') + "\r\n0\r\n\r\n", 0},
      {"of an error", HttpAnswer("404 Not Found", std::string(1001, 'a')), 0},
  };
  qelnet::host::SetOptions({.mLargestBody = 1000});
  const LoopbackServer server(LoopbackServer::Answering(
      [&](const std::string& path) { return cases[std::stoul(path.substr(1))].mAnswer; }));
  std::size_t row = 0;
  std::size_t failures = 0;
  for (const LimitCase& limitCase : cases) {
    SCOPED_TRACE(limitCase.mName);
    ASSERT_TRUE(Get(server.Url('/' + std::to_string(row))));
    const ReceivedAnswer received = mAnswers->WaitFor(++row).back();
    EXPECT_EQ(received.mStatus, limitCase.mStatus);
    EXPECT_EQ(received.mBody, limitCase.mStatus == 0 ? "" : std::string(1000, 'a'));
    if (limitCase.mStatus == 0) ++failures;
    EXPECT_EQ(Warnings().size(), failures);
  }
}

TEST_F(Failures, ALengthOverTheLimitIsEnough) {
  const LoopbackServer server([](ServerConnection& connection) {
    (void)connection.ReadRequest();
    connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 67108865\r\n\r\n");
    connection.WaitForClose();
  });
  // The body never comes, and the stall time-out is a minute.
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre("Failed: The body is larger than 67108864 bytes."));
}

TEST_F(Failures, AServerThatNeverEndsItsAnswer) {
  qelnet::host::SetOptions({.mTotalTimeout = std::chrono::milliseconds(200)});
  const LoopbackServer server([](ServerConnection& connection) {
    (void)connection.ReadRequest();
    connection.Write("HTTP/1.0 200 OK\r\n\r\n");
    // It is never silent, and never done.
    while (connection.Write("a")) {
    }
  });
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre(HasSubstr("timed out")));
}

TEST_F(Failures, TheReasonNamesTheLimit) {
  qelnet::host::SetOptions({.mLargestBody = 4});
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return "HTTP/1.0 200 OK\r\n\r\n12345"; }));
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre("Failed: The body is larger than 4 bytes."));
}

TEST_F(Failures, ALimitOfZeroAllowsEmptyBodiesOnly) {
  qelnet::host::SetOptions({.mLargestBody = 0});
  const LoopbackServer server(LoopbackServer::Answering(
      [](const std::string& path) { return HttpAnswer("200 OK", path == "/full" ? "a" : ""); }));
  EXPECT_EQ(Fetch(server.Url("/empty")).mStatus, 200);
  ASSERT_TRUE(Get(server.Url("/full")));
  EXPECT_EQ(mAnswers->WaitFor(2).back().mStatus, 0);
}

TEST_F(Failures, TheUsualLimitIs64MiB) {
  constexpr std::size_t kLimit = std::size_t{64} * 1024 * 1024;
  const LoopbackServer server([](ServerConnection& connection) {
    const std::string request = connection.ReadRequest();
    const std::size_t size = request.starts_with("GET /allowed ") ? kLimit : kLimit + 1;
    const std::string block(1'048'576, 'b');
    connection.Write("HTTP/1.0 200 OK\r\n\r\n");
    for (std::size_t sent = 0; sent < size; sent += block.size()) {
      if (!connection.Write(std::string_view(block).substr(0, size - sent))) return;
    }
  });
  EXPECT_EQ(Fetch(server.Url("/allowed")).mBody.size(), kLimit);
  ASSERT_TRUE(Get(server.Url("/refused")));
  EXPECT_EQ(mAnswers->WaitFor(2).back().mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre("Failed: The body is larger than 67108864 bytes."));
}

TEST_F(Failures, NothingIsWrittenToTheStandardStreams) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "body"); }));
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const bool isRefused = !Get("ftp://127.0.0.1/");
  const int good = Fetch(server.Url("/")).mStatus;
  const bool isAccepted = Get(testsupport::UrlWithoutServer("/"));
  const int bad = mAnswers->WaitFor(2).back().mStatus;
  qelnet::host::Shutdown();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_TRUE(isRefused);
  EXPECT_TRUE(isAccepted);
  EXPECT_EQ(good, 200);
  EXPECT_EQ(bad, 0);
}

}  // namespace
