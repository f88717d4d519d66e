// What completions may do, and how often they are called.
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/host/qelnet/NetTest.h"
#include "tests/support/Gate.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testsupport::Gate;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::ReceivedAnswer;
using testsupport::ReceivedAnswers;

using Completions = testsupport::NetTest;

LoopbackServer::ConnectionHandler Echo() {
  return LoopbackServer::Answering([](const std::string& path) { return HttpAnswer("200 OK", path); });
}

TEST_F(Completions, FiftyRequestsAtOnceCompleteOnceEachOnOneThread) {
  constexpr std::size_t kCount = 50;
  std::mutex mutex;
  std::condition_variable changed;
  std::size_t arrived = 0;
  // No request is answered before all have arrived, so they are served side by side.
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    std::unique_lock lock(mutex);
    ++arrived;
    changed.notify_all();
    changed.wait(lock, [&] { return arrived == kCount; });
    return HttpAnswer("200 OK", path);
  }));
  std::set<std::string> expected;
  for (std::size_t number = 0; number < kCount; ++number) {
    const std::string path = '/' + std::to_string(number);
    expected.insert(path);
    ASSERT_TRUE(Get(server.Url(path)));
  }
  const std::vector<ReceivedAnswer> answers = mAnswers->WaitFor(kCount);
  EXPECT_EQ(answers.size(), kCount);
  std::set<std::string> bodies;
  for (const ReceivedAnswer& answer : answers) {
    EXPECT_EQ(answer.mStatus, 200);
    EXPECT_EQ(answer.mThread, answers.front().mThread);
    bodies.insert(answer.mBody);
  }
  EXPECT_EQ(bodies, expected);
  EXPECT_EQ(mAnswers->Now().size(), kCount);
}

TEST_F(Completions, RequestsOfManyThreadsAreAllServed) {
  constexpr std::size_t kThreads = 8;
  constexpr std::size_t kRequests = 10;
  const LoopbackServer server(Echo());
  std::atomic<std::size_t> accepted{0};
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&] {
      for (std::size_t request = 0; request < kRequests; ++request) {
        if (Get(server.Url("/"))) ++accepted;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(accepted, kThreads * kRequests);
  EXPECT_EQ(mAnswers->WaitFor(kThreads * kRequests).size(), kThreads * kRequests);
}

TEST_F(Completions, ACompletionMayStartAnotherRequest) {
  const LoopbackServer server(Echo());
  ASSERT_TRUE(
      testsupport::Get(server.Url("/first"), [&server, answers = mAnswers](const qelnet::Response& response) {
        answers->Add(response);
        EXPECT_TRUE(testsupport::Get(server.Url("/second"),
                                     [answers](const qelnet::Response& second) { answers->Add(second); }));
      }));
  const std::vector<ReceivedAnswer> answers = mAnswers->WaitFor(2);
  EXPECT_EQ(answers.at(0).mBody, "/first");
  EXPECT_EQ(answers.at(1).mBody, "/second");
  EXPECT_EQ(answers.at(0).mThread, answers.at(1).mThread);
}

TEST_F(Completions, ACompletionThatThrowsIsLoggedAndTheNextOnesRun) {
  const LoopbackServer server(Echo());
  ASSERT_TRUE(testsupport::Get(server.Url("/"), [answers = mAnswers](const qelnet::Response& response) {
    answers->Add(response);
    throw std::runtime_error("no");
  }));
  EXPECT_EQ(mAnswers->WaitFor(1).size(), 1U);
  ASSERT_TRUE(testsupport::Get(server.Url("/"), [answers = mAnswers](const qelnet::Response& response) {
    answers->Add(response);
    throw 7;
  }));
  EXPECT_EQ(mAnswers->WaitFor(2).size(), 2U);
  ASSERT_TRUE(Get(server.Url("/after")));
  EXPECT_EQ(mAnswers->WaitFor(3).back().mBody, "/after");
  EXPECT_EQ(ExceptionContexts(), (std::vector<std::string>{"qelnet::GET", "qelnet::GET"}));
}

TEST_F(Completions, AnEmptyCompletionIsNotCalled) {
  const LoopbackServer server(Echo());
  ASSERT_TRUE(testsupport::Get(server.Url("/"), {}));
  EXPECT_EQ(Fetch(server.Url("/")).mStatus, 200);
  EXPECT_TRUE(ExceptionContexts().empty());
}

/// Asks for an address when it is destroyed.
class AsksAtItsEnd {
 public:
  AsksAtItsEnd(std::string url, std::shared_ptr<ReceivedAnswers> answers)
      : mUrl(std::move(url)), mAnswers(std::move(answers)) {}
  ~AsksAtItsEnd() {
    EXPECT_TRUE(testsupport::Get(
        mUrl, [answers = mAnswers, owner = std::this_thread::get_id()](const qelnet::Response& response) {
          EXPECT_EQ(std::this_thread::get_id(), owner);
          answers->Add(response);
        }));
  }
  AsksAtItsEnd(const AsksAtItsEnd&) = delete;
  AsksAtItsEnd& operator=(const AsksAtItsEnd&) = delete;

 private:
  std::string mUrl;
  std::shared_ptr<ReceivedAnswers> mAnswers;
};

TEST_F(Completions, WhatACompletionHoldsIsReleasedOnTheLibrarysThread) {
  const LoopbackServer server(Echo());
  Gate hasStarted;
  auto held = std::make_shared<AsksAtItsEnd>(server.Url("/end"), mAnswers);
  const std::weak_ptr<AsksAtItsEnd> watched = held;
  ASSERT_TRUE(
      testsupport::Get(server.Url("/"), [held, &hasStarted](const qelnet::Response&) { hasStarted.Wait(); }));
  held.reset();
  EXPECT_FALSE(watched.expired());
  hasStarted.Open();
  EXPECT_EQ(mAnswers->WaitFor(1).front().mStatus, 200);
  EXPECT_TRUE(watched.expired());
}

TEST_F(Completions, TheCallerNeedNotWait) {
  Gate mayAnswer;
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    mayAnswer.Wait();
    return HttpAnswer("200 OK", path);
  }));
  // The server answers only after `GET` has returned.
  ASSERT_TRUE(Get(server.Url("/")));
  EXPECT_TRUE(mAnswers->Now().empty());
  mayAnswer.Open();
  EXPECT_EQ(mAnswers->WaitFor(1).front().mStatus, 200);
}

}  // namespace
