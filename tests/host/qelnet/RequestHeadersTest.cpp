#include "host/qelnet/RequestHeaders.h"

#include <gmock/gmock.h>

#include <string>

#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::HasSubstr;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ServerConnection;

using RequestHeaders = testsupport::NetTest;

TEST(RequestHeaderRules, NamesAndValues) {
  for (const qelnet::Headers& headers :
       {qelnet::Headers{}, qelnet::Headers{{"X-A", "b"}, {"X-A", "c"}},
        qelnet::Headers{{"!#$%&'*+-.^_`|~09azAZ", "any \t\xC3\xA4:;"}}, qelnet::Headers{{"X-A", ""}}}) {
    EXPECT_TRUE(qelnet::CanBeSent(headers));
  }
  for (const qelnet::Headers& headers :
       {qelnet::Headers{{"", "b"}}, qelnet::Headers{{"X-A", "b"}, {"X(A)", "c"}},
        qelnet::Headers{{"X\n", "b"}}, qelnet::Headers{{"X-A", "b\r"}}, qelnet::Headers{{"X-A", "\n"}}}) {
    EXPECT_FALSE(qelnet::CanBeSent(headers));
  }
}

TEST_F(RequestHeaders, AllAreSent) {
  std::string request;
  const LoopbackServer server([&](ServerConnection& connection) {
    request = connection.ReadRequest();
    connection.Write(HttpAnswer("200 OK", ""));
  });
  const qelnet::Headers headers = {
      {"X-Twice", "one"}, {"X-Twice", "two"}, {"X-Empty", ""}, {"Accept", "a/b"}};
  EXPECT_EQ(Fetch(server.Url("/"), headers).mStatus, 200);
  for (const char* const line :
       {"\r\nX-Twice: one\r\n", "\r\nX-Twice: two\r\n", "\r\nX-Empty:\r\n", "\r\nAccept: a/b\r\n"}) {
    EXPECT_THAT(request, HasSubstr(line));
  }
  EXPECT_EQ(request.find("*/*"), std::string::npos);
}

}  // namespace
