#include "platform/qelcore/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using qelcore::threads::ForEachIndexOnCPUBoundExecutor;
using qelcore::threads::OpenOnceGate;
using qelcore::threads::RecursiveTimedMutex;
using qelcore::threads::TimedLock;
using std::chrono::steady_clock;

/// A time that no test lives to see.
steady_clock::time_point Never() {
  return steady_clock::now() + std::chrono::hours(1);
}

TEST(OpenOnceGate, IsClosedUntilSomebodyOpensIt) {
  OpenOnceGate gate;
  EXPECT_FALSE(gate.PassThroughUntil(steady_clock::now()));
  EXPECT_FALSE(gate.PassThroughUntil(steady_clock::time_point::min()));
  gate.Open();
  EXPECT_TRUE(gate.PassThroughUntil(steady_clock::now()));
  gate.Open();
  EXPECT_TRUE(gate.PassThroughUntil(steady_clock::time_point::min()));
}

TEST(OpenOnceGate, LetsEveryoneThrough) {
  OpenOnceGate gate;
  std::atomic<int> passed{0};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] { passed += gate.PassThroughUntil(Never()) ? 1 : 0; });
  }
  gate.Open();
  threads.clear();
  EXPECT_EQ(passed, 4);
}

TEST(OpenOnceGate, MayGoAsSoonAsSomebodyPassed) {
  for (int count = 0; count < 200; ++count) {
    auto gate = std::make_unique<OpenOnceGate>();
    std::jthread opener([&gate = *gate] { gate.Open(); });
    EXPECT_TRUE(gate->PassThroughUntil(Never()));
    gate.reset();
  }
}

TEST(TimedLock, OneThreadMayLockSeveralTimes) {
  RecursiveTimedMutex mutex;
  const TimedLock first(mutex, std::chrono::milliseconds(60000));
  const TimedLock second(mutex, std::chrono::milliseconds(60000));
  EXPECT_TRUE(first.OwnsLock());
  EXPECT_TRUE(second.OwnsLock());
}

TEST(TimedLock, GoesOnWithoutTheMutexWhenTheTimeIsOver) {
  RecursiveTimedMutex mutex;
  const TimedLock owner(mutex, std::chrono::milliseconds(0));
  ASSERT_TRUE(owner.OwnsLock());
  bool ownsLock = true;
  std::jthread([&] { ownsLock = TimedLock(mutex, std::chrono::milliseconds(1)).OwnsLock(); }).join();
  EXPECT_FALSE(ownsLock);
}

TEST(TimedLock, FreesTheMutex) {
  RecursiveTimedMutex mutex;
  { const TimedLock lock(mutex, std::chrono::milliseconds(0)); }
  bool ownsLock = false;
  std::jthread([&] { ownsLock = TimedLock(mutex, std::chrono::milliseconds(0)).OwnsLock(); }).join();
  EXPECT_TRUE(ownsLock);
}

TEST(TimedLock, IsHeldUntilTheLastOfSeveralIsGone) {
  RecursiveTimedMutex mutex;
  const auto canOthersLock = [&] {
    bool ownsLock = false;
    std::jthread([&] { ownsLock = TimedLock(mutex, std::chrono::milliseconds(0)).OwnsLock(); }).join();
    return ownsLock;
  };
  {
    const TimedLock outer(mutex, std::chrono::milliseconds(0));
    { const TimedLock inner(mutex, std::chrono::milliseconds(0)); }
    EXPECT_FALSE(canOthersLock());
  }
  EXPECT_TRUE(canOthersLock());
}

TEST(TimedLock, OneThreadAtATime) {
  RecursiveTimedMutex mutex;
  int count = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&] {
        for (int turn = 0; turn < 1000; ++turn) {
          const TimedLock lock(mutex, std::chrono::milliseconds(60000));
          ++count;
        }
      });
    }
  }
  EXPECT_EQ(count, 4000);
}

TEST(CPUBoundExecutor, CallsEveryIndexOnce) {
  for (const std::size_t count : {0U, 1U, 2U, 3U, 1000U}) {
    std::vector<std::atomic<int>> calls(count);
    ForEachIndexOnCPUBoundExecutor(count, [&](std::size_t index) { ++calls[index]; });
    for (std::size_t index = 0; index < count; ++index) {
      EXPECT_EQ(calls[index], 1) << index << " of " << count;
    }
  }
}

TEST(CPUBoundExecutor, ThrowsWhatACallThrew) {
  std::atomic<int> calls{0};
  try {
    ForEachIndexOnCPUBoundExecutor(100, [&](std::size_t index) {
      ++calls;
      if (index == 50) {
        throw std::runtime_error("fifty");
      }
    });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "fifty");
  }
  EXPECT_EQ(calls, 100);
  EXPECT_THROW(ForEachIndexOnCPUBoundExecutor(10, [](std::size_t) { throw 5; }), int);
  EXPECT_THROW(ForEachIndexOnCPUBoundExecutor(1, [](std::size_t) { throw std::bad_alloc(); }),
               std::bad_alloc);
}

TEST(CPUBoundExecutor, MayBeUsedInsideItself) {
  std::atomic<int> calls{0};
  ForEachIndexOnCPUBoundExecutor(
      4, [&](std::size_t) { ForEachIndexOnCPUBoundExecutor(4, [&](std::size_t) { ++calls; }); });
  EXPECT_EQ(calls, 16);
}

}  // namespace
