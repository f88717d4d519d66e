#include "host/qelcore/threads/MainThreadQueue.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Threads.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

using Clock = std::function<std::uint64_t()>;

struct Task {
  std::uint64_t mDueTime = 0;
  std::uint64_t mNumber = 0;  ///< counts in the order of posting
  std::function<void()> mAction;
};

bool ComesBefore(const Task& left, const Task& right) {
  return left.mDueTime != right.mDueTime ? left.mDueTime < right.mDueTime : left.mNumber < right.mNumber;
}

/// What moves when somebody posts a task or wakes the main thread.
struct Counters {
  std::uint64_t mNextNumber = 0;
  std::uint64_t mWakeCount = 0;

  friend bool operator==(const Counters&, const Counters&) = default;
};

struct Queue {
  std::mutex mMutex;
  std::condition_variable mChanged;
  std::vector<Task> mTasks;
  Counters mCounters;
  std::shared_ptr<const Clock> mClock;  ///< null for the real one
};

Queue& TheQueue() {
  // Never destroyed, because other libraries' static objects may still post while the process ends.
  static Queue& queue = *new Queue;
  return queue;
}

Counters CountersOf(Queue& queue) {
  const std::lock_guard lock(queue.mMutex);
  return queue.mCounters;
}

std::uint64_t Now(const Queue& queue) {
  if (queue.mClock) {
    return (*queue.mClock)();
  }
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

/// Takes the next task if one is due that was posted before the task of the number `limit`. The queue is
/// locked.
std::optional<Task> TakeDueTask(Queue& queue, std::uint64_t limit) {
  const std::uint64_t now = Now(queue);
  auto next = queue.mTasks.end();
  for (auto place = queue.mTasks.begin(); place != queue.mTasks.end(); ++place) {
    const bool isCandidate = place->mDueTime <= now && place->mNumber < limit;
    if (isCandidate && (next == queue.mTasks.end() || ComesBefore(*place, *next))) {
      next = place;
    }
  }
  if (next == queue.mTasks.end()) {
    return std::nullopt;
  }
  std::optional<Task> task(std::move(*next));
  queue.mTasks.erase(next);
  return task;
}

/// Runs the next due task that was posted before the task of the number `limit`. Returns false when there is
/// none.
bool RunDueTask(Queue& queue, std::uint64_t limit) {
  std::optional<Task> task;
  {
    const std::lock_guard lock(queue.mMutex);
    task = TakeDueTask(queue, limit);
  }
  if (!task) {
    return false;
  }
  // The task runs and goes without the lock, because both may post.
  try {
    task->mAction();
  } catch (...) {
    LogException(std::current_exception(), "qelcore::threads::AsyncCallFromMainThread");
  }
  return true;
}

/// Waits until the next task is due, a task is posted or somebody wakes the main thread, since the
/// counters were read.
void Wait(Queue& queue, const Counters& seen) {
  std::unique_lock lock(queue.mMutex);
  const auto hasChanged = [&] { return !(queue.mCounters == seen); };
  if (queue.mTasks.empty()) {
    queue.mChanged.wait(lock, hasChanged);
    return;
  }
  const auto next = std::min_element(queue.mTasks.begin(), queue.mTasks.end(), ComesBefore);
  const std::uint64_t now = Now(queue);
  if (next->mDueTime > now) {
    queue.mChanged.wait_for(lock, std::chrono::milliseconds(next->mDueTime - now), hasChanged);
  }
}

}  // namespace

void threads::AsyncCallFromMainThread(std::function<void()> task, std::uint32_t delayMilliseconds) {
  Queue& queue = TheQueue();
  const std::lock_guard lock(queue.mMutex);
  queue.mTasks.push_back({Now(queue) + delayMilliseconds, queue.mCounters.mNextNumber++, std::move(task)});
  queue.mChanged.notify_all();
}

namespace host {

std::size_t RunDueMainThreadTasks() {
  Queue& queue = TheQueue();
  // A task that posts itself again with no delay must not keep this call for ever.
  const std::uint64_t limit = CountersOf(queue).mNextNumber;
  std::size_t count = 0;
  while (RunDueTask(queue, limit)) {
    ++count;
  }
  return count;
}

void RunMainThreadUntil(const std::function<bool()>& finished) {
  Queue& queue = TheQueue();
  for (;;) {
    const Counters seen = CountersOf(queue);
    if (finished()) {
      return;
    }
    if (!RunDueTask(queue, seen.mNextNumber)) {
      Wait(queue, seen);
    }
  }
}

void DropMainThreadTasks() {
  Queue& queue = TheQueue();
  std::vector<Task> dropped;
  {
    const std::lock_guard lock(queue.mMutex);
    dropped.swap(queue.mTasks);
    queue.mChanged.notify_all();
  }
  // What they hold goes without the lock, because it may post.
}

void WakeMainThread() {
  Queue& queue = TheQueue();
  const std::lock_guard lock(queue.mMutex);
  ++queue.mCounters.mWakeCount;
  queue.mChanged.notify_all();
}

void SetMainThreadClock(Clock clock) {
  Queue& queue = TheQueue();
  const std::lock_guard lock(queue.mMutex);
  queue.mClock = clock ? std::make_shared<const Clock>(std::move(clock)) : nullptr;
  ++queue.mCounters.mWakeCount;
  queue.mChanged.notify_all();
}

}  // namespace host
}  // namespace qelcore
