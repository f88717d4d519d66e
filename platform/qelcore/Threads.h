// Threads: gates, the mutex with a time-out, the main thread's queue, the CPU-bound executor.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/qelcore/Export.h"

namespace qelcore::threads {

/// A gate that is closed until somebody opens it, and then stays open.
class QELCORE_EXPORT OpenOnceGate {
 public:
  OpenOnceGate();
  ~OpenOnceGate();
  OpenOnceGate(const OpenOnceGate&) = delete;
  OpenOnceGate& operator=(const OpenOnceGate&) = delete;

  /// Opens the gate and lets everyone through. Opening it again does nothing.
  void Open();

  /// Waits until the gate is open, at most until `deadline`. Returns whether it is open.
  [[nodiscard]] bool PassThroughUntil(std::chrono::steady_clock::time_point deadline);

 private:
  std::mutex mMutex;
  std::condition_variable mOpened;
  bool mIsOpen = false;
};

/// A mutex that one thread may lock several times, with a bound on the wait. `TimedLock` holds it.
class QELCORE_EXPORT RecursiveTimedMutex {
 public:
  RecursiveTimedMutex();
  ~RecursiveTimedMutex();
  RecursiveTimedMutex(const RecursiveTimedMutex&) = delete;
  RecursiveTimedMutex& operator=(const RecursiveTimedMutex&) = delete;

 private:
  friend class TimedLock;

  [[nodiscard]] bool TryLockFor(std::chrono::milliseconds timeOut);
  void Unlock();

  std::mutex mMutex;
  std::condition_variable mFreed;
  std::thread::id mOwner;      ///< guarded by `mMutex`; means something while the count is not 0
  std::size_t mLockCount = 0;  ///< guarded by `mMutex`
};

/// Holds a recursive mutex for a scope. The wait is bounded; when the time is over the scope goes on without
/// the mutex, which `OwnsLock` tells. The bound is there so that nothing waits for ever, not as an error to
/// handle.
class QELCORE_EXPORT TimedLock {
 public:
  TimedLock(RecursiveTimedMutex& mutex, std::chrono::milliseconds timeOut);
  ~TimedLock();
  TimedLock(const TimedLock&) = delete;
  TimedLock& operator=(const TimedLock&) = delete;

  [[nodiscard]] bool OwnsLock() const { return mOwnsLock; }

 private:
  RecursiveTimedMutex& mMutex;
  bool mOwnsLock;
};

/// Runs `task` on the main thread once `delayMilliseconds` have passed. A delay of 0 still posts: the task
/// never runs inside this call. Tasks that fall due together run in the order of posting; a task that the
/// process does not live to see is dropped. Any thread may call.
QELCORE_EXPORT void AsyncCallFromMainThread(std::function<void()> task, std::uint32_t delayMilliseconds);

/// Calls `work` for every index below `count`, spread over the processors, and returns when all are done. The
/// calls run in any order and at the same time. The first exception that a call throws is thrown again here.
QELCORE_EXPORT void ForEachIndexOnCPUBoundExecutor(std::size_t count,
                                                   const std::function<void(std::size_t)>& work);

}  // namespace qelcore::threads
