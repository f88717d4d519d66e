#include "platform/qelcore/Timer.h"

#include <gtest/gtest.h>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::Timer;

TEST(Timer, CountsFromItsBeginning) {
  std::uint64_t now = 1'000;
  qelcore::host::SetTimerClock([&] { return now; });
  Timer timer;
  EXPECT_EQ(timer.GetElapsedMilliseconds(), 0U);
  now += 250;
  EXPECT_EQ(timer.GetElapsedMilliseconds(), 250U);
  timer.Restart();
  now += 1;
  EXPECT_EQ(timer.GetElapsedMilliseconds(), 1U);
  qelcore::host::SetTimerClock({});
}

TEST(Timer, TheRealClockNeverGoesBack) {
  const Timer timer;
  std::uint64_t last = 0;
  for (int reading = 0; reading < 10'000; ++reading) {
    const std::uint64_t elapsed = timer.GetElapsedMilliseconds();
    ASSERT_GE(elapsed, last);
    last = elapsed;
  }
}

}  // namespace
