// Redirects of a server.
#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testsupport::CertificateAuthority;
using testsupport::HttpAnswer;
using testsupport::HttpRedirect;
using testsupport::LoopbackServer;
using testsupport::ServerConnection;

class Redirects : public testsupport::NetTest {
 protected:
  Redirects() {
    const auto path = mDirectory.Write("authority.pem", mAuthority.AsPem());
    qelnet::host::SetOptions({.mCertificateAuthorities = path.string()});
  }

  CertificateAuthority mAuthority;
};

/// Sends "/5" to "/4" and so on; "/0" is there.
std::string CountDown(const std::string& path) {
  const unsigned long left = std::stoul(path.substr(1));
  if (left == 0) return HttpAnswer("200 OK", "arrived");
  return HttpRedirect("302 Found", '/' + std::to_string(left - 1));
}

TEST_F(Redirects, EveryKindIsFollowed) {
  for (const char* const status : {"301 Moved Permanently", "302 Found", "303 See Other",
                                   "307 Temporary Redirect", "308 Permanent Redirect"}) {
    SCOPED_TRACE(status);
    const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
      return path == "/new" ? HttpAnswer("200 OK", "found") : HttpRedirect(status, "/new");
    }));
    const std::size_t before = mAnswers->Now().size();
    ASSERT_TRUE(Get(server.Url("/old")));
    const auto answer = mAnswers->WaitFor(before + 1).back();
    EXPECT_EQ(answer.mStatus, 200);
    EXPECT_EQ(answer.mBody, "found");
  }
}

TEST_F(Redirects, AChainOfTenArrives) {
  const LoopbackServer server(LoopbackServer::Answering(CountDown));
  const auto answer = Fetch(server.Url("/10"));
  EXPECT_EQ(answer.mStatus, 200);
  EXPECT_EQ(answer.mBody, "arrived");
}

TEST_F(Redirects, AChainOfElevenDoesNotArrive) {
  const LoopbackServer server(LoopbackServer::Answering(CountDown));
  const auto answer = Fetch(server.Url("/11"));
  EXPECT_EQ(answer.mStatus, 0);
  EXPECT_EQ(answer.mBody, "");
  EXPECT_THAT(Warnings(), ElementsAre("Failed: It was redirected too often."));
}

TEST_F(Redirects, ALoopEndsAfterElevenRequests) {
  std::atomic<int> requests{0};
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    ++requests;
    return HttpRedirect("302 Found", path);
  }));
  EXPECT_EQ(Fetch(server.Url("/again")).mStatus, 0);
  EXPECT_EQ(requests, 11);
}

TEST_F(Redirects, FromHttpToHttpsIsFollowed) {
  const LoopbackServer encrypted(
      mAuthority.Issue("DNS:localhost"),
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "safe"); }));
  const LoopbackServer plain(LoopbackServer::Answering(
      [&](const std::string&) { return HttpRedirect("301 Moved Permanently", encrypted.Url("/")); }));
  EXPECT_EQ(Fetch(plain.Url("/")).mBody, "safe");
}

TEST_F(Redirects, FromHttpsToHttpIsRefused) {
  std::atomic<int> requests{0};
  const LoopbackServer plain(LoopbackServer::Answering([&](const std::string&) {
    ++requests;
    return HttpAnswer("200 OK", "unsafe");
  }));
  const LoopbackServer encrypted(mAuthority.Issue("DNS:localhost"),
                                 LoopbackServer::Answering([&](const std::string&) {
                                   return HttpRedirect("302 Found", plain.Url("/"));
                                 }));
  EXPECT_EQ(Fetch(encrypted.Url("/")).mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre("Failed: It was redirected from https to http."));

  // Nor is it after a way that began with http.
  const LoopbackServer start(LoopbackServer::Answering(
      [&](const std::string&) { return HttpRedirect("302 Found", encrypted.Url("/")); }));
  ASSERT_TRUE(Get(start.Url("/")));
  EXPECT_EQ(mAnswers->WaitFor(2).back().mStatus, 0);
  EXPECT_EQ(requests, 0);
}

TEST_F(Redirects, ToAnotherSchemeIsRefused) {
  const std::string secret = "file://" + mDirectory.Write("secret", "not for servers").string();
  std::size_t count = 0;
  for (const std::string& location :
       {secret, std::string("ftp://127.0.0.1/"), std::string("gopher://127.0.0.1/"),
        std::string("http://127.0.0.1:99999/")}) {
    SCOPED_TRACE(location);
    const LoopbackServer server(
        LoopbackServer::Answering([&](const std::string&) { return HttpRedirect("302 Found", location); }));
    ASSERT_TRUE(Get(server.Url("/")));
    const auto answer = mAnswers->WaitFor(++count).back();
    EXPECT_EQ(answer.mStatus, 0);
    EXPECT_EQ(answer.mBody, "");
  }
}

TEST_F(Redirects, AStatusWithoutAPlaceIsTheAnswer) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("302 Found", "where?"); }));
  const auto answer = Fetch(server.Url("/"));
  EXPECT_EQ(answer.mStatus, 302);
  EXPECT_EQ(answer.mBody, "where?");
}

TEST_F(Redirects, APlaceDoesNotMoveWhatIsNotModified) {
  const LoopbackServer server(LoopbackServer::Answering([](const std::string&) {
    return "HTTP/1.1 304 Not Modified\r\nLocation: /elsewhere\r\nConnection: close\r\n\r\n";
  }));
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 304);
}

TEST_F(Redirects, ThatNeverEndIsFailed) {
  qelnet::host::SetOptions({.mLargestBody = 10'000});
  const LoopbackServer server([](ServerConnection& connection) {
    (void)connection.ReadRequest();
    connection.Write("HTTP/1.0 302 Found\r\nLocation: /\r\n\r\n");
    while (connection.Write(std::string(10'000, 'a'))) {
    }
  });
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 0);
}

TEST_F(Redirects, OtherServersGetNoCredentials) {
  std::mutex mutex;
  std::string request;
  const LoopbackServer other([&](ServerConnection& connection) {
    {
      const std::lock_guard lock(mutex);
      request = connection.ReadRequest();
    }
    connection.Write(HttpAnswer("200 OK", "thanks"));
  });
  const LoopbackServer server(LoopbackServer::Answering(
      [&](const std::string&) { return HttpRedirect("302 Found", other.Url("/")); }));
  std::string url = server.Url("/");
  url.insert(std::string("http://").size(), "user:password@");
  EXPECT_EQ(Fetch(url, {{"Cookie", "mine"}, {"X-Kept", "yes"}}).mBody, "thanks");
  const std::lock_guard lock(mutex);
  EXPECT_THAT(request, HasSubstr("\r\nX-Kept: yes\r\n"));
  EXPECT_THAT(request, Not(HasSubstr("Authorization")));
  EXPECT_THAT(request, Not(HasSubstr("mine")));
}

}  // namespace
