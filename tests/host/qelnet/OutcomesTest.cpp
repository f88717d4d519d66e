// What the application learns about how requests end.
#include <gmock/gmock.h>

#include <mutex>
#include <stdexcept>
#include <vector>

#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using qelnet::host::Outcome;
using testing::HasSubstr;
using testsupport::HttpAnswer;
using testsupport::HttpRedirect;
using testsupport::LoopbackServer;

class Outcomes : public testsupport::NetTest {
 protected:
  Outcomes() {
    qelnet::host::SetOutcomeObserver([this](const Outcome& outcome) {
      const std::lock_guard lock(mMutex);
      mOutcomes.push_back(outcome);
    });
  }
  ~Outcomes() override { qelnet::host::SetOutcomeObserver({}); }

  [[nodiscard]] std::vector<Outcome> Seen() {
    const std::lock_guard lock(mMutex);
    return mOutcomes;
  }

 private:
  std::mutex mMutex;
  std::vector<Outcome> mOutcomes;
};

TEST_F(Outcomes, OfAnAnswer) {
  const LoopbackServer server(LoopbackServer::Answering([](const std::string& path) {
    return path == "/new" ? HttpAnswer("404 Not Found", "x") : HttpRedirect("302 Found", "/new");
  }));
  static_cast<void>(Fetch(server.Url("/old?secret")));
  ASSERT_EQ(Seen().size(), 1U);
  EXPECT_EQ(Seen()[0].mUrl, server.Url("/new"));
  EXPECT_EQ(Seen()[0].mStatus, 404);
  EXPECT_EQ(Seen()[0].mFailure, "");
}

TEST_F(Outcomes, OfAFailure) {
  const std::string url = testsupport::UrlWithoutServer("/x");
  static_cast<void>(Fetch(url));
  ASSERT_EQ(Seen().size(), 1U);
  EXPECT_EQ(Seen()[0].mUrl, url);
  EXPECT_EQ(Seen()[0].mStatus, 0);
  EXPECT_THAT(Seen()[0].mFailure, HasSubstr("connect"));
}

class OutcomesWithoutAStatus : public Outcomes, public testing::WithParamInterface<const char*> {};

TEST_P(OutcomesWithoutAStatus, HaveAReason) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return std::string(GetParam()) + "\r\n\r\nbody"; }));
  EXPECT_EQ(Fetch(server.Url("/x")).mStatus, 0);
  ASSERT_EQ(Seen().size(), 1U);
  EXPECT_EQ(Seen()[0].mStatus, 0);
  // Some versions of libcurl refuse these by themselves, in words of their own.
  EXPECT_NE(Seen()[0].mFailure, "");
}

INSTANTIATE_TEST_SUITE_P(OfThreeDigits, OutcomesWithoutAStatus,
                         testing::Values("HTTP/20 OK", "HTTP/2100031.1 301 Moved"));

TEST_F(Outcomes, OfARefusal) {
  EXPECT_FALSE(Get("ftp://example.com/"));
  EXPECT_FALSE(Get("http://example.com/", {{"a b", "c"}}));
  ASSERT_EQ(Seen().size(), 2U);
  EXPECT_EQ(Seen()[0].mUrl, "");
  EXPECT_EQ(Seen()[0].mFailure, "Its address is malformed or of another scheme.");
  EXPECT_EQ(Seen()[1].mUrl, "http://example.com/");
}

TEST_F(Outcomes, AnObserverThatThrowsDoesNotKeepTheCompletion) {
  qelnet::host::SetOutcomeObserver([](const Outcome&) { throw std::runtime_error("observer"); });
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", "x"); }));
  EXPECT_EQ(Fetch(server.Url("/x")).mStatus, 200);
  EXPECT_THAT(ExceptionContexts(), testing::ElementsAre("qelnet::host::OutcomeObserver"));
}

}  // namespace
