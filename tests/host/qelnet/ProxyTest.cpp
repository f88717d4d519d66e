// Proxies, which the environment names.
#include <gmock/gmock.h>

#include <string>

#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::StartsWith;
using testsupport::EnvironmentVariable;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ServerConnection;

using Proxies = testsupport::NetTest;

TEST_F(Proxies, AreAskedForTheWholeAddress) {
  std::string request;
  const LoopbackServer proxy([&](ServerConnection& connection) {
    request = connection.ReadRequest();
    connection.Write(HttpAnswer("200 OK", "by proxy"));
  });
  const EnvironmentVariable variable("http_proxy", proxy.Url(""));
  EXPECT_EQ(Fetch("http://lists.invalid/a").mBody, "by proxy");
  EXPECT_THAT(request, StartsWith("GET http://lists.invalid/a HTTP/1.1\r\n"));
}

TEST_F(Proxies, AreAskedForATunnelToAnEncryptedServer) {
  std::string request;
  const LoopbackServer proxy([&](ServerConnection& connection) {
    request = connection.ReadRequest();
    connection.Write(HttpAnswer("403 Forbidden", "not there"));
  });
  const EnvironmentVariable variable("https_proxy", proxy.Url(""));
  // What the proxy says is no answer of the server.
  EXPECT_EQ(Fetch("https://lists.invalid/a").mStatus, 0);
  EXPECT_THAT(request, StartsWith("CONNECT lists.invalid:443 HTTP/1.1\r\n"));
}

TEST_F(Proxies, AreLeftOutWhereTheEnvironmentSaysSo) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "direct"); }));
  const EnvironmentVariable variable("http_proxy", testsupport::UrlWithoutServer(""));
  const EnvironmentVariable exception("no_proxy", "127.0.0.1");
  EXPECT_EQ(Fetch(server.Url("/")).mBody, "direct");
}

}  // namespace
