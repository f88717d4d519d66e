// Requests that are refused at once.
#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;

using Refusals = testsupport::NetTest;

TEST_F(Refusals, AddressesThatAreNoneOfTheWeb) {
  const std::string file = "file://" + mDirectory.Write("list.json", "{}").string();
  const std::string addresses[] = {
      "",
      " ",
      "127.0.0.1/list.json",
      "//127.0.0.1/list.json",
      "/list.json",
      "http:",
      "http://",
      "https://:80/",
      "http://127.0.0.1:port/",
      "http://127.0.0.1:70000/",
      "http://127.0.0.1/a b",
      " http://127.0.0.1/",
      "http://127.0.0.1/\r\nX-Injected: yes",
      std::string("http://127.0.0.1/\0", 18),
      "ftp://127.0.0.1/list.json",
      "ftps://127.0.0.1/list.json",
      "FILE:///etc/hostname",
      "smb://127.0.0.1/list.json",
      "gopher://127.0.0.1/",
      "data:text/plain,{}",
      "javascript:alert(1)",
      file,
  };
  for (const std::string& address : addresses) {
    EXPECT_FALSE(Get(address)) << address;
    ASSERT_FALSE(Warnings().empty()) << address;
    EXPECT_THAT(Warnings().back(), StartsWith("Refused: ")) << address;
  }
  qelnet::host::Shutdown();
  EXPECT_TRUE(mAnswers->Now().empty());
  EXPECT_TRUE(ExceptionContexts().empty());
}

TEST_F(Refusals, HeadersThatWouldBringOthersAlong) {
  const qelnet::Headers headers[] = {
      {{"X-A", "b\r\nX-Injected: yes"}},
      {{"X-A", "b\nc"}},
      {{"X-A\r\nX-Injected", "b"}},
      {{"X-A", std::string("b\0c", 3)}},
      {{"", "b"}},
      {{"X A", "b"}},
      {{"X-A:", "b"}},
      {{"X-\xC3\xA4", "b"}},
  };
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", ""); }));
  for (const qelnet::Headers& row : headers) {
    EXPECT_FALSE(Get(server.Url("/"), row)) << row.begin()->first << ": " << row.begin()->second;
  }
  qelnet::host::Shutdown();
  EXPECT_TRUE(mAnswers->Now().empty());
}

TEST_F(Refusals, EverythingAfterTheShutdown) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", ""); }));
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 200);
  qelnet::host::Shutdown();
  EXPECT_FALSE(Get(server.Url("/")));
  EXPECT_THAT(Warnings(), ElementsAre(StartsWith("Refused: ")));
  EXPECT_EQ(mAnswers->Now().size(), 1U);
}

TEST_F(Refusals, EverythingAfterAShutdownWithoutAnyRequest) {
  qelnet::host::Shutdown();
  EXPECT_FALSE(Get("http://127.0.0.1/"));
  EXPECT_TRUE(mAnswers->Now().empty());
}

TEST_F(Refusals, WhatARefusedCompletionHeldIsReleased) {
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watched = held;
  EXPECT_FALSE(testsupport::Get("ftp://127.0.0.1/", [held = std::move(held)](const qelnet::Response&) {}));
  EXPECT_TRUE(watched.expired());
}

}  // namespace
