// Answers that come whole: any status, any body.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <thread>

#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::IsEmpty;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ReceivedAnswer;
using testsupport::ServerConnection;

using Answers = testsupport::NetTest;

struct AnswerCase {
  const char* mName;
  std::string mAnswer;
  int mStatus;
  std::string mBody;
};

std::string EveryByte() {
  std::string bytes;
  for (int value = 255; value >= 0; --value) bytes += static_cast<char>(value);
  return bytes;
}

TEST_F(Answers, ComeAsTheServerSentThem) {
  const std::string large(3'000'000, 'x');
  const AnswerCase cases[] = {
      {"text", HttpAnswer("200 OK", "{\"a\": 1}"), 200, "{\"a\": 1}"},
      {"empty", HttpAnswer("200 OK", ""), 200, ""},
      {"every byte", HttpAnswer("200 OK", EveryByte()), 200, EveryByte()},
      {"large", HttpAnswer("200 OK", large), 200, large},
      {"compressed", HttpAnswer("200 OK", "\x1f\x8b no gzip", "Content-Encoding: gzip\r\n"), 200,
       "\x1f\x8b no gzip"},
      {"in chunks",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: "
       "close\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n",
       200, "abcde"},
      {"up to the end of the connection", "HTTP/1.0 200 OK\r\n\r\nall of it", 200, "all of it"},
      {"after an interim answer", "HTTP/1.1 103 Early Hints\r\n\r\n" + HttpAnswer("200 OK", "late"), 200,
       "late"},
      {"no content", "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n", 204, ""},
      {"not modified", "HTTP/1.1 304 Not Modified\r\nConnection: close\r\n\r\n", 304, ""},
      {"not found", HttpAnswer("404 Not Found", "no such list"), 404, "no such list"},
      {"server error", HttpAnswer("500 Internal Server Error", "sorry"), 500, "sorry"},
      {"wants a password", HttpAnswer("401 Unauthorized", "who?", "WWW-Authenticate: Basic\r\n"), 401,
       "who?"},
  };
  std::string answer;
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    const std::size_t row = std::stoul(path.substr(1));
    return cases[row].mAnswer;
  }));
  std::size_t row = 0;
  for (const AnswerCase& answerCase : cases) {
    SCOPED_TRACE(answerCase.mName);
    ASSERT_TRUE(Get(server.Url('/' + std::to_string(row))));
    const ReceivedAnswer received = mAnswers->WaitFor(row + 1).back();
    EXPECT_EQ(received.mStatus, answerCase.mStatus);
    EXPECT_TRUE(received.mBody == answerCase.mBody);
    ++row;
  }
  EXPECT_THAT(Warnings(), IsEmpty());
}

TEST_F(Answers, TheRequestIsAPlainGet) {
  std::string request;
  const LoopbackServer server([&](ServerConnection& connection) {
    request = connection.ReadRequest();
    connection.Write(HttpAnswer("200 OK", ""));
  });
  EXPECT_EQ(Fetch(server.Url("/systemcompatibilityreport/7.3/win/blocklist.en_US.json?a=b#part")).mStatus,
            200);
  EXPECT_TRUE(
      request.starts_with("GET /systemcompatibilityreport/7.3/win/blocklist.en_US.json?a=b HTTP/1.1\r\n"))
      << request;
  EXPECT_NE(request.find("\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) + "\r\n"), std::string::npos);
  EXPECT_EQ(request.find("Cookie:"), std::string::npos);
}

TEST_F(Answers, ABodyMayComeByteByByte) {
  const LoopbackServer server([](ServerConnection& connection) {
    (void)connection.ReadRequest();
    for (const char byte : HttpAnswer("200 OK", "one by one")) connection.Write({&byte, 1});
  });
  EXPECT_EQ(Fetch(server.Url("/")).mBody, "one by one");
}

TEST_F(Answers, ComeOnAThreadOfTheLibrary) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "a"); }));
  EXPECT_NE(Fetch(server.Url("/")).mThread, std::this_thread::get_id());
}

}  // namespace
