// Work on several threads whose results come out in the order in which it was handed in.
//
//   OrderedWork<std::string, std::string> work(4, [](std::string path) { return Judge(path); },
//                                              [](std::string result) { Print(result); });
//   while (source.Next(path) && work.Add(std::move(path))) {}
//   work.Finish();
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace app {

/// Only so many jobs are under way or wait for their turn, so that memory does not grow with their number.
template <typename Job, typename Result>
class OrderedWork {
 public:
  /// `work` runs on one of the threads, at the same time as others; `take` runs on a thread of its own, one
  /// call after the other. Throws `std::system_error` when no thread can be had.
  OrderedWork(std::size_t threads, std::function<Result(Job)> work, std::function<void(Result)> take)
      : mWork(std::move(work)), mTake(std::move(take)), mMostSlots(kSlotsForEachThread * threads) {
    try {
      mThreads.emplace_back([this] { TakeResults(); });
      for (std::size_t count = 0; count < threads; ++count) mThreads.emplace_back([this] { DoJobs(); });
    } catch (const std::system_error&) {
      // Fewer threads do as well, as long as there is one that works and one that takes.
      if (mThreads.size() > 1) return;
      Stop();
      throw;
    }
  }

  ~OrderedWork() { Stop(); }

  OrderedWork(const OrderedWork&) = delete;
  OrderedWork& operator=(const OrderedWork&) = delete;

  /// Hands a job in, and waits for room if need be. False when `work` or `take` has thrown: nothing more is
  /// taken then.
  [[nodiscard]] bool Add(Job job) {
    std::unique_lock lock(mMutex);
    mRoom.wait(lock, [this] { return mIsStopped || mSlots.size() < mMostSlots; });
    if (mIsStopped) return false;
    mSlots.push_back({std::move(job), std::nullopt});
    mJobs.notify_one();
    return true;
  }

  /// Waits until every result was taken. Throws what `work` or `take` threw.
  void Finish() {
    {
      std::unique_lock lock(mMutex);
      mRoom.wait(lock, [this] { return mIsStopped || mSlots.empty(); });
    }
    Stop();
    if (mFailure) std::rethrow_exception(std::exchange(mFailure, nullptr));
  }

 private:
  static constexpr std::size_t kSlotsForEachThread = 4;

  struct Slot {
    Job mJob;
    std::optional<Result> mResult;
  };

  void DoJobs() {
    std::unique_lock lock(mMutex);
    while (true) {
      mJobs.wait(lock, [this] { return mIsStopped || mBegun < mSlots.size(); });
      if (mIsStopped) return;
      // A deque's elements stay where they are while others come and go at its ends.
      Slot& slot = mSlots[mBegun++];
      lock.unlock();
      RunGuarded([&] {
        Result result = mWork(std::move(slot.mJob));
        const std::lock_guard guard(mMutex);
        slot.mResult = std::move(result);
      });
      lock.lock();
      mResults.notify_one();
    }
  }

  void TakeResults() {
    std::unique_lock lock(mMutex);
    while (true) {
      mResults.wait(lock,
                    [this] { return mIsStopped || (!mSlots.empty() && mSlots.front().mResult.has_value()); });
      if (mIsStopped) return;
      Result result = std::move(*mSlots.front().mResult);
      lock.unlock();
      RunGuarded([&] { mTake(std::move(result)); });
      lock.lock();
      // Not before it was taken, so that `Finish` waits for that, too.
      mSlots.pop_front();
      --mBegun;
      mRoom.notify_all();
    }
  }

  template <typename Action>
  void RunGuarded(const Action& action) {
    try {
      action();
    } catch (...) {
      const std::lock_guard lock(mMutex);
      if (!mFailure) mFailure = std::current_exception();
      mIsStopped = true;
      WakeAll();
    }
  }

  void Stop() {
    {
      const std::lock_guard lock(mMutex);
      mIsStopped = true;
      WakeAll();
    }
    for (std::thread& thread : mThreads) thread.join();
    mThreads.clear();
  }

  void WakeAll() {
    mRoom.notify_all();
    mJobs.notify_all();
    mResults.notify_all();
  }

  const std::function<Result(Job)> mWork;
  const std::function<void(Result)> mTake;
  const std::size_t mMostSlots;
  std::mutex mMutex;
  std::condition_variable mRoom;
  std::condition_variable mJobs;
  std::condition_variable mResults;
  std::deque<Slot> mSlots;
  std::size_t mBegun = 0;  ///< of the slots, those that a thread has taken
  bool mIsStopped = false;
  std::exception_ptr mFailure;
  std::vector<std::thread> mThreads;
};

}  // namespace app
