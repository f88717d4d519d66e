#include "platform/qelcore/Threads.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace qelcore::threads {

OpenOnceGate::OpenOnceGate() = default;
OpenOnceGate::~OpenOnceGate() = default;

void OpenOnceGate::Open() {
  const std::lock_guard lock(mMutex);
  mIsOpen = true;
  // Under the lock, because whoever passes may destroy the gate at once.
  mOpened.notify_all();
}

bool OpenOnceGate::PassThroughUntil(std::chrono::steady_clock::time_point deadline) {
  std::unique_lock lock(mMutex);
  // Some standard libraries compute the time that is left without regard to what a duration can hold.
  const auto end = std::max(deadline, std::chrono::steady_clock::now());
  return mOpened.wait_until(lock, end, [this] { return mIsOpen; });
}

RecursiveTimedMutex::RecursiveTimedMutex() = default;
RecursiveTimedMutex::~RecursiveTimedMutex() = default;

bool RecursiveTimedMutex::TryLockFor(std::chrono::milliseconds timeOut) {
  const std::thread::id self = std::this_thread::get_id();
  std::unique_lock lock(mMutex);
  if (!mFreed.wait_for(lock, timeOut, [&] { return mLockCount == 0 || mOwner == self; })) return false;
  mOwner = self;
  ++mLockCount;
  return true;
}

void RecursiveTimedMutex::Unlock() {
  const std::lock_guard lock(mMutex);
  // Under the lock, because whoever gets the mutex next may destroy it.
  if (--mLockCount == 0) mFreed.notify_one();
}

TimedLock::TimedLock(RecursiveTimedMutex& mutex, std::chrono::milliseconds timeOut)
    : mMutex(mutex), mOwnsLock(mutex.TryLockFor(timeOut)) {}

TimedLock::~TimedLock() {
  if (mOwnsLock) mMutex.Unlock();
}

namespace {

/// Hands the indices out to the threads that work on them, and keeps the first exception.
class SharedWork {
 public:
  SharedWork(std::size_t count, const std::function<void(std::size_t)>& work) : mCount(count), mWork(work) {}

  /// Works until no index is left.
  void Run() noexcept {
    for (std::size_t index = mNext++; index < mCount; index = mNext++) {
      try {
        mWork(index);
      } catch (...) {
        const std::lock_guard lock(mMutex);
        if (!mFirstException) {
          mFirstException = std::current_exception();
        }
      }
    }
  }

  void ThrowFirstException() {
    if (mFirstException) {
      std::rethrow_exception(mFirstException);
    }
  }

 private:
  std::size_t mCount;
  const std::function<void(std::size_t)>& mWork;
  std::atomic<std::size_t> mNext{0};
  std::mutex mMutex;
  std::exception_ptr mFirstException;
};

}  // namespace

void ForEachIndexOnCPUBoundExecutor(std::size_t count, const std::function<void(std::size_t)>& work) {
  SharedWork shared(count, work);
  {
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t helpers = std::min(count, processors);
    std::vector<std::jthread> threads;
    // The calling thread works too.
    for (std::size_t helper = 1; helper < helpers; ++helper) {
      try {
        threads.emplace_back([&shared] { shared.Run(); });
      } catch (const std::system_error&) {
        // The system gives no more threads; those that are there do the work.
        break;
      }
    }
    shared.Run();
  }
  shared.ThrowFirstException();
}

}  // namespace qelcore::threads
