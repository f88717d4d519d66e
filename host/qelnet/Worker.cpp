#include "host/qelnet/Worker.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <utility>

#include "host/qelnet/Outcomes.h"
#include "platform/qelcore/Trace.h"

namespace qelnet {

namespace {

constexpr std::chrono::milliseconds kLongestPoll = std::chrono::minutes(10);
constexpr std::string_view kContext = "qelnet::GET";
constexpr std::string_view kShutdownReason = "The host shuts down.";

thread_local bool isWorkerThread = false;

/// Calls the completion, and lets go of it and of the transfer.
void Complete(std::unique_ptr<Transfer> transfer) {
  TellOutcome([&] { return transfer->GetOutcome(); });
  try {
    const Completion completion = transfer->TakeCompletion();
    const Answer answer = transfer->TakeAnswer();
    transfer.reset();
    if (completion) completion(answer);
  } catch (...) {
    qelcore::LogException(std::current_exception(), kContext);
  }
}

}  // namespace

Worker& Worker::Instance() {
  // Never destroyed, because static objects of other libraries may still ask for something at the end.
  static Worker& worker = *new Worker;
  return worker;
}

bool Worker::Start(std::unique_ptr<Transfer>& transfer) {
  const std::lock_guard lock(mMutex);
  if (mIsShutDown) return false;
  if (!mThread.joinable()) BeginThread();
  mPending.push_back(std::move(transfer));
  if (curl_multi_wakeup(mMulti.get()) == CURLM_OK) return true;
  // A request that the thread would not see before its next turn counts as refused.
  transfer = std::move(mPending.back());
  mPending.pop_back();
  return false;
}

void Worker::BeginThread() {
  MultiHandle multi(curl_multi_init());
  if (!multi) throw std::bad_alloc();
  mMulti = std::move(multi);
  mThread = std::thread([this] { Run(); });
}

void Worker::Shutdown() {
  {
    const std::lock_guard lock(mMutex);
    if (!mIsShutDown && mMulti) curl_multi_wakeup(mMulti.get());
    mIsShutDown = true;
  }
  if (isWorkerThread) {
    FailAllAtShutdown();
    return;
  }
  const std::lock_guard lock(mJoinMutex);
  if (mThread.joinable()) mThread.join();
}

void Worker::Run() {
  isWorkerThread = true;
  while (LaunchPending()) Serve();
  FailAllAtShutdown();
  // Nobody else uses it after the shutdown.
  mMulti.reset();
}

void Worker::Serve() {
  int running = 0;
  CURLMcode code = curl_multi_perform(mMulti.get(), &running);
  // The stalled go before any completion runs: one that takes long must not make others look silent.
  FinishStalled();
  FinishDone();
  if (code == CURLM_OK) code = curl_multi_poll(mMulti.get(), nullptr, 0, PollTime(), nullptr);
  if (code != CURLM_OK) FailActive(curl_multi_strerror(code));
}

/// Returns false after the shutdown.
bool Worker::LaunchPending() {
  for (;;) {
    {
      const std::lock_guard lock(mMutex);
      if (mIsShutDown) return false;
    }
    std::unique_ptr<Transfer> transfer = TakePending();
    if (!transfer) return true;
    Launch(std::move(transfer));
  }
}

void Worker::Launch(std::unique_ptr<Transfer> transfer) {
  CURL* const handle = transfer->Handle();
  const CURLMcode code = curl_multi_add_handle(mMulti.get(), handle);
  if (code == CURLM_OK) {
    mActive.emplace(handle, std::move(transfer));
  } else {
    transfer->Fail(curl_multi_strerror(code));
    Complete(std::move(transfer));
  }
}

void Worker::FinishStalled() {
  const Transfer::Clock::time_point now = Transfer::Clock::now();
  for (;;) {
    // Searched anew each time, because a completion may shut down.
    const auto place = std::find_if(mActive.begin(), mActive.end(), [&](const auto& active) {
      const auto stallsAt = active.second->StallsAt();
      return stallsAt && *stallsAt <= now;
    });
    if (place == mActive.end()) return;
    std::unique_ptr<Transfer> transfer = Take(place->first);
    transfer->Fail("The server is silent.");
    Complete(std::move(transfer));
  }
}

void Worker::FinishDone() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(mMulti.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode code = message->data.result;
    // The message goes with the handle's removal.
    Finish(Take(message->easy_handle), code);
  }
}

void Worker::Finish(std::unique_ptr<Transfer> transfer, CURLcode code) {
  bool isDone = true;
  try {
    isDone = transfer->Conclude(code);
  } catch (const std::exception& exception) {
    transfer->Fail(exception.what());
  }
  if (isDone) {
    Complete(std::move(transfer));
  } else {
    Launch(std::move(transfer));
  }
}

void Worker::FailActive(std::string_view reason) {
  while (!mActive.empty()) {
    std::unique_ptr<Transfer> transfer = Take(mActive.begin()->first);
    transfer->Fail(reason);
    Complete(std::move(transfer));
  }
}

void Worker::FailAllAtShutdown() {
  FailActive(kShutdownReason);
  while (std::unique_ptr<Transfer> transfer = TakePending()) {
    transfer->Fail(kShutdownReason);
    Complete(std::move(transfer));
  }
}

std::unique_ptr<Transfer> Worker::Take(CURL* handle) {
  curl_multi_remove_handle(mMulti.get(), handle);
  return std::move(mActive.extract(handle).mapped());
}

std::unique_ptr<Transfer> Worker::TakePending() {
  const std::lock_guard lock(mMutex);
  if (mPending.empty()) return nullptr;
  std::unique_ptr<Transfer> transfer = std::move(mPending.front());
  mPending.pop_front();
  return transfer;
}

int Worker::PollTime() const {
  const Transfer::Clock::time_point now = Transfer::Clock::now();
  std::chrono::milliseconds time = kLongestPoll;
  for (const auto& active : mActive) {
    const auto stallsAt = active.second->StallsAt();
    // Rounded up, so that the time-out has passed when the poll ends.
    if (stallsAt) time = std::min(time, std::chrono::ceil<std::chrono::milliseconds>(*stallsAt - now));
  }
  return static_cast<int>(std::max(time, std::chrono::milliseconds(0)).count());
}

}  // namespace qelnet
