// Whom the client trusts.
#include <gmock/gmock.h>

#include <chrono>
#include <string>

#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/Gate.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testsupport::CertificateAuthority;
using testsupport::Gate;
using testsupport::HttpAnswer;
using testsupport::Identity;
using testsupport::LoopbackServer;
using testsupport::ServerConnection;

class Trust : public testsupport::NetTest {
 protected:
  void TrustAuthority(const CertificateAuthority& authority) const {
    const auto path = mDirectory.Write("authority.pem", authority.AsPem());
    qelnet::host::SetOptions({.mCertificateAuthorities = path.string()});
  }

  /// Asks a server with this certificate, and expects that nothing was asked of it.
  void ExpectRefused(const Identity& identity) {
    std::string request;
    {
      const LoopbackServer server(identity, [&](ServerConnection& connection) {
        request = connection.ReadRequest();
        connection.Write(HttpAnswer("200 OK", "trust me"));
      });
      const auto answer = Fetch(server.Url("/"));
      EXPECT_EQ(answer.mStatus, 0);
      EXPECT_EQ(answer.mBody, "");
    }
    EXPECT_EQ(request, "");
    EXPECT_THAT(Warnings(), ElementsAre(StartsWith("Failed: ")));
  }

  CertificateAuthority mAuthority;
};

TEST_F(Trust, AServerOfATrustedAuthorityIsAsked) {
  TrustAuthority(mAuthority);
  const LoopbackServer server(
      mAuthority.Issue("DNS:localhost"),
      LoopbackServer::Answering([](const std::string& path) { return HttpAnswer("200 OK", path); }));
  const auto answer = Fetch(server.Url("/good"));
  EXPECT_EQ(answer.mStatus, 200);
  EXPECT_EQ(answer.mBody, "/good");
  EXPECT_THAT(Warnings(), IsEmpty());
}

TEST_F(Trust, AnAuthorityThatTheSystemDoesNotKnowIsRefused) {
  ExpectRefused(mAuthority.Issue("DNS:localhost"));
}

TEST_F(Trust, AnotherAuthorityOfTheSameNameIsRefused) {
  TrustAuthority(CertificateAuthority());
  ExpectRefused(mAuthority.Issue("DNS:localhost"));
}

TEST_F(Trust, AnotherHostsCertificateIsRefused) {
  TrustAuthority(mAuthority);
  ExpectRefused(mAuthority.Issue("DNS:lists.example,IP:127.0.0.2"));
}

TEST_F(Trust, ACertificateThatHasEndedIsRefused) {
  TrustAuthority(mAuthority);
  ExpectRefused(mAuthority.Issue("DNS:localhost", std::chrono::minutes(-1)));
}

TEST_F(Trust, AFileOfAuthoritiesThatIsMissingTrustsNobody) {
  qelnet::host::SetOptions({.mCertificateAuthorities = (mDirectory.Path() / "missing.pem").string()});
  ExpectRefused(mAuthority.Issue("DNS:localhost"));
}

TEST_F(Trust, APlainServerIsNoEncryptedOne) {
  TrustAuthority(mAuthority);
  const LoopbackServer server([](ServerConnection& connection) {
    connection.Write(HttpAnswer("200 OK", "plain"));
    connection.WaitForClose();
  });
  EXPECT_EQ(Fetch("https://127.0.0.1:" + std::to_string(server.Port()) + '/').mStatus, 0);
  EXPECT_THAT(Warnings(), ElementsAre(StartsWith("Failed: ")));
}

TEST_F(Trust, AConnectionThatBreaksOffGivesNothing) {
  TrustAuthority(mAuthority);
  const LoopbackServer server(mAuthority.Issue("DNS:localhost"), [](ServerConnection& connection) {
    (void)connection.ReadRequest();
    connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nfive ");
    connection.Reset();
  });
  const auto answer = Fetch(server.Url("/"));
  EXPECT_EQ(answer.mStatus, 0);
  EXPECT_EQ(answer.mBody, "");
}

TEST_F(Trust, AKeptConnectionThatBreaksOffDoesNotEndTheProcess) {
  TrustAuthority(mAuthority);
  Gate mayBreak;
  Gate isBroken;
  const LoopbackServer server(mAuthority.Issue("DNS:localhost"), [&](ServerConnection& connection) {
    const std::string request = connection.ReadRequest();
    connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    if (!request.starts_with("GET /first ")) return;
    mayBreak.Wait();
    connection.EndSending();
    connection.Reset();
    isBroken.Open();
  });
  EXPECT_EQ(Fetch(server.Url("/first")).mStatus, 200);
  mayBreak.Open();
  isBroken.Wait();
  // The client takes leave of the broken connection before it makes another one.
  ASSERT_TRUE(Get(server.Url("/second")));
  EXPECT_EQ(mAnswers->WaitFor(2).back().mStatus, 200);
}

TEST_F(Trust, AKeptConnectionThatBreaksOffDoesNotDisturbTheShutdown) {
  TrustAuthority(mAuthority);
  Gate mayBreak;
  Gate isBroken;
  const LoopbackServer server(mAuthority.Issue("DNS:localhost"), [&](ServerConnection& connection) {
    (void)connection.ReadRequest();
    connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    mayBreak.Wait();
    connection.EndSending();
    connection.Reset();
    isBroken.Open();
  });
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 200);
  mayBreak.Open();
  isBroken.Wait();
  qelnet::host::Shutdown();
  EXPECT_THAT(Warnings(), IsEmpty());
}

}  // namespace
