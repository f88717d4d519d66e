// What one thread waits for until another one is there.
#pragma once

#include <condition_variable>
#include <mutex>

namespace testsupport {

/// Opens once and stays open. Any thread may call.
class Gate {
 public:
  void Open() {
    const std::lock_guard lock(mMutex);
    mIsOpen = true;
    mChanged.notify_all();
  }

  void Wait() {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [&] { return mIsOpen; });
  }

  [[nodiscard]] bool IsOpen() {
    const std::lock_guard lock(mMutex);
    return mIsOpen;
  }

 private:
  std::mutex mMutex;
  std::condition_variable mChanged;
  bool mIsOpen = false;
};

}  // namespace testsupport
