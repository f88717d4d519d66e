// The thread that serves all requests.
#pragma once

#include <curl/curl.h>

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

#include "host/qelnet/CurlHandles.h"
#include "host/qelnet/Transfer.h"

namespace qelnet {

/// One thread with one multi handle, which starts with the first request and ends with `Shutdown`.
/// Completions run on it, one at a time. Any thread may call the public functions, the completions included.
class Worker {
 public:
  /// The process's worker. It is never destroyed.
  [[nodiscard]] static Worker& Instance();

  /// Hands a transfer over. Returns false when it is refused, after the shutdown or without a thread to serve
  /// it; the transfer is then still the caller's. Throws when there is no memory or no thread, with the same
  /// effect.
  [[nodiscard]] bool Start(std::unique_ptr<Transfer>& transfer);

  /// Refuses all further transfers and completes those that there are. On return the thread has ended, unless
  /// it is the calling one; then a later call waits for it.
  void Shutdown();

 private:
  Worker() = default;
  void BeginThread();

  // All below run on the thread.
  void Run();
  void Serve();
  [[nodiscard]] bool LaunchPending();
  void Launch(std::unique_ptr<Transfer> transfer);
  void FinishStalled();
  void FinishDone();
  void Finish(std::unique_ptr<Transfer> transfer, CURLcode code);
  void FailActive(std::string_view reason);
  void FailAllAtShutdown();
  [[nodiscard]] std::unique_ptr<Transfer> Take(CURL* handle);
  [[nodiscard]] std::unique_ptr<Transfer> TakePending();
  [[nodiscard]] int PollTime() const;

  std::mutex mJoinMutex;
  std::mutex mMutex;
  bool mIsShutDown = false;                        ///< guarded by `mMutex`
  std::deque<std::unique_ptr<Transfer>> mPending;  ///< guarded by `mMutex`: handed over, not yet seen
  MultiHandle mMulti;                              ///< stays from the thread's start to its end
  std::thread mThread;
  std::map<CURL*, std::unique_ptr<Transfer>> mActive;  ///< the thread's own: those that the multi handle has
};

}  // namespace qelnet
