#include "app/OrderedWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using app::OrderedWork;
using Numbers = std::vector<int>;

Numbers UpTo(int count) {
  Numbers numbers;
  for (int number = 0; number < count; ++number) numbers.push_back(number);
  return numbers;
}

/// Later jobs are done sooner.
int SpendTime(int number) {
  volatile int spent = 0;
  for (int count = number % 7 * 2000; count > 0; --count) spent = spent + 1;
  return number;
}

TEST(OrderedWorkTest, ResultsComeInTheOrderOfJobs) {
  for (const std::size_t threads : {std::size_t{1}, std::size_t{2}, std::size_t{8}}) {
    Numbers taken;
    OrderedWork<int, int> work(threads, SpendTime, [&](int number) { taken.push_back(number); });
    for (const int number : UpTo(1000)) EXPECT_TRUE(work.Add(number));
    work.Finish();
    EXPECT_EQ(taken, UpTo(1000)) << threads;
  }
}

TEST(OrderedWorkTest, WorkAndTakingAreNoMatterOfTheCaller) {
  std::thread::id worker;
  std::thread::id taker;
  OrderedWork<int, std::thread::id> work(
      1, [](int) { return std::this_thread::get_id(); },
      [&](std::thread::id id) {
        worker = id;
        taker = std::this_thread::get_id();
      });
  EXPECT_TRUE(work.Add(1));
  work.Finish();
  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_NE(taker, std::this_thread::get_id());
  EXPECT_NE(worker, taker);
}

TEST(OrderedWorkTest, NoJobsAreFinishedAtOnce) {
  OrderedWork<int, int> work(3, SpendTime, [](int) { FAIL(); });
  work.Finish();
}

TEST(OrderedWorkTest, ItMayBeLeftUnfinished) {
  std::atomic<int> taken = 0;
  {
    OrderedWork<int, int> work(3, SpendTime, [&](int) { ++taken; });
    for (const int number : UpTo(5)) EXPECT_TRUE(work.Add(number));
  }
  EXPECT_LE(taken, 5);
}

/// What is under way, done or taken when a job comes in: never more than the room.
TEST(OrderedWorkTest, OnlySoManyAreUnderWay) {
  std::atomic<int> added = 0;
  std::atomic<int> taken = 0;
  std::atomic<int> most = 0;
  OrderedWork<int, int> work(2, SpendTime, [&](int) {
    const int underWay = added - taken;
    if (underWay > most) most = underWay;
    ++taken;
  });
  for (const int number : UpTo(2000)) {
    EXPECT_TRUE(work.Add(number));
    ++added;
  }
  work.Finish();
  EXPECT_EQ(taken, 2000);
  EXPECT_LE(most, 10) << "four for each thread, and those on the way in and out";
}

TEST(OrderedWorkTest, AFailureOfTheTakerEndsIt) {
  int taken = 0;
  OrderedWork<int, int> work(2, SpendTime, [&](int number) {
    if (number == 10) throw std::runtime_error("full");
    ++taken;
  });
  int number = 0;
  while (work.Add(number)) ++number;
  EXPECT_THROW(work.Finish(), std::runtime_error);
  EXPECT_EQ(taken, 10);
  EXPECT_FALSE(work.Add(0));
}

TEST(OrderedWorkTest, AFailureOfTheWorkEndsIt) {
  OrderedWork<int, int> work(
      2, [](int number) { return number == 10 ? throw std::runtime_error("broken") : number; }, [](int) {});
  while (work.Add(10)) {
  }
  EXPECT_THROW(work.Finish(), std::runtime_error);
}

}  // namespace
