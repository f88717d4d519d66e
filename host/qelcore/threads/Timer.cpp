#include "platform/qelcore/Timer.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "host/qelcore/HostSetup.h"

namespace qelcore {

namespace {

using Clock = std::function<std::uint64_t()>;

struct ClockHolder {
  std::mutex mMutex;
  std::shared_ptr<const Clock> mClock;  ///< null for the real one
};

ClockHolder& TheClock() {
  static ClockHolder holder;
  return holder;
}

std::uint64_t Now() {
  std::shared_ptr<const Clock> clock;
  {
    ClockHolder& holder = TheClock();
    const std::lock_guard lock(holder.mMutex);
    clock = holder.mClock;
  }
  if (clock) return (*clock)();
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

}  // namespace

Timer::Timer() : mStart(Now()) {}

void Timer::Restart() {
  mStart = Now();
}

std::uint64_t Timer::GetElapsedMilliseconds() const {
  return Now() - mStart;
}

void host::SetTimerClock(Clock clock) {
  auto shared = clock ? std::make_shared<const Clock>(std::move(clock)) : nullptr;
  ClockHolder& holder = TheClock();
  const std::lock_guard lock(holder.mMutex);
  holder.mClock = std::move(shared);
}

}  // namespace qelcore
