#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Threads.h"

namespace {

using qelcore::host::RunDueMainThreadTasks;
using qelcore::host::RunMainThreadUntil;
using qelcore::host::WakeMainThread;
using qelcore::threads::AsyncCallFromMainThread;

class MainThread : public testing::Test {
 protected:
  void SetUp() override {
    qelcore::host::SetMainThreadClock([this] { return mNow.load(); });
  }

  void TearDown() override { qelcore::host::SetMainThreadClock(nullptr); }

  void Post(const std::string& text, std::uint32_t delay) {
    AsyncCallFromMainThread([this, text] { mRan += text; }, delay);
  }

  std::atomic<std::uint64_t> mNow{1000};
  std::string mRan;
};

TEST_F(MainThread, NothingRunsInsideThePost) {
  Post("a", 0);
  EXPECT_EQ(mRan, "");
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(mRan, "a");
  EXPECT_EQ(RunDueMainThreadTasks(), 0U);
}

TEST_F(MainThread, TasksRunWhenTheyAreDue) {
  Post("a", 100);
  Post("b", 50);
  Post("c", 100);
  Post("d", 0);
  Post("e", std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(mRan, "d");
  mNow += 49;
  EXPECT_EQ(RunDueMainThreadTasks(), 0U);
  mNow += 1;
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(mRan, "db");
  mNow += 1000;
  EXPECT_EQ(RunDueMainThreadTasks(), 2U);
  EXPECT_EQ(mRan, "dbac");
  mNow += std::numeric_limits<std::uint32_t>::max();
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(mRan, "dbace");
}

TEST_F(MainThread, DueTimeComesBeforeTheOrderOfPosting) {
  Post("late", 20);
  mNow += 10;
  Post(" early", 5);
  Post(" same", 10);
  mNow += 100;
  EXPECT_EQ(RunDueMainThreadTasks(), 3U);
  EXPECT_EQ(mRan, " earlylate same");
}

TEST_F(MainThread, ATaskThatPostsAgainWaitsForTheNextCall) {
  std::function<void()> again = [&] {
    mRan += 'x';
    AsyncCallFromMainThread(again, 0);
  };
  AsyncCallFromMainThread(again, 0);
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(mRan, "xx");
}

TEST_F(MainThread, ATaskMayRunTheQueue) {
  AsyncCallFromMainThread(
      [this] {
        mRan += '(';
        Post("inner", 0);
        EXPECT_EQ(RunDueMainThreadTasks(), 2U);
        mRan += ')';
      },
      0);
  Post("b", 0);
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(mRan, "(binner)");
}

TEST_F(MainThread, ATaskThatThrowsIsLoggedAndTheOthersRun) {
  std::string logged;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    logged += std::string(context) + ": " + qelcore::host::DescribeException(exception) + '\n';
  });
  AsyncCallFromMainThread([] { throw std::runtime_error("from a task"); }, 0);
  AsyncCallFromMainThread(nullptr, 0);
  Post("a", 0);
  EXPECT_EQ(RunDueMainThreadTasks(), 3U);
  EXPECT_EQ(mRan, "a");
  EXPECT_TRUE(logged.starts_with("qelcore::threads::AsyncCallFromMainThread: from a task\n")) << logged;
}

/// Posts a task while it goes.
struct PostsAtItsEnd {
  ~PostsAtItsEnd() {
    AsyncCallFromMainThread([] {}, 0);
  }
};

TEST_F(MainThread, WhatATaskHoldsMayPostWhileItGoes) {
  AsyncCallFromMainThread([holder = std::make_shared<PostsAtItsEnd>()] {}, 0);
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
}

TEST_F(MainThread, RunningUntilAsksAfterEachTask) {
  Post("a", 0);
  Post("b", 0);
  Post("c", 0);
  RunMainThreadUntil([this] { return mRan.size() == 2; });
  EXPECT_EQ(mRan, "ab");
  EXPECT_EQ(RunDueMainThreadTasks(), 1U);
}

TEST_F(MainThread, RunningUntilWhatIsTrueReturnsAtOnce) {
  Post("a", 0);
  RunMainThreadUntil([] { return true; });
  EXPECT_EQ(mRan, "");
}

TEST_F(MainThread, AnotherThreadMayEndTheWait) {
  std::atomic<bool> isFinished{false};
  std::jthread other([&] {
    isFinished = true;
    WakeMainThread();
  });
  RunMainThreadUntil([&] { return isFinished.load(); });
  EXPECT_TRUE(isFinished);
}

TEST_F(MainThread, ATaskOfAnotherThreadEndsTheWait) {
  const std::thread::id mainThread = std::this_thread::get_id();
  std::thread::id ranOn;
  std::jthread other([&] { AsyncCallFromMainThread([&] { ranOn = std::this_thread::get_id(); }, 0); });
  RunMainThreadUntil([&] { return ranOn != std::thread::id(); });
  EXPECT_EQ(ranOn, mainThread);
}

TEST(RealClock, ADelayedTaskRuns) {
  bool hasRun = false;
  AsyncCallFromMainThread([&] { hasRun = true; }, 5);
  RunMainThreadUntil([&] { return hasRun; });
  EXPECT_TRUE(hasRun);
}

TEST(RealClock, ManyThreadsMayPost) {
  std::atomic<int> ran{0};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int count = 0; count < 250; ++count) {
        AsyncCallFromMainThread([&] { ++ran; }, static_cast<std::uint32_t>(count % 3));
      }
    });
  }
  RunMainThreadUntil([&] { return ran == 1000; });
  EXPECT_EQ(ran, 1000);
}

}  // namespace
