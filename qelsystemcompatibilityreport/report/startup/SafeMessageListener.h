// A listener to the application's states that can be released at any moment, from any thread.
#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Messaging.h"
#include "platform/qelcore/Threads.h"

namespace qelsystemcompatibilityreport {

/// Hands the application's states to a handler, which runs on the thread that announces the state, unlocked,
/// and on several threads at once when several announce. What it throws is logged.
class SafeMessageListener final : public qelcore::messaging::IMessageListener {
 public:
  using Handler = std::function<void(qelcore::appstatemanager::AppState)>;

  explicit SafeMessageListener(Handler handler);
  /// Shuts down.
  ~SafeMessageListener() override;

  [[nodiscard]] qelcore::messaging::StationID GetStationID() const override { return mStationID; }
  [[nodiscard]] qelcore::messaging::MessageID GetMessageID() const override { return mMessageID; }
  void Receive(const qelcore::messaging::Message& message) override;

  /// Ends listening: the handler is not called any more, and when this returns no other thread is inside it.
  /// A call from inside the handler does not wait for itself.
  void Shutdown();

 private:
  /// A call of the handler.
  struct Dispatch {
    std::thread::id mThread;
    qelcore::threads::OpenOnceGate mEnded;
  };

  [[nodiscard]] Handler Begin(const std::shared_ptr<Dispatch>& dispatch);
  void End(const std::shared_ptr<Dispatch>& dispatch);

  const qelcore::messaging::StationID mStationID;
  const qelcore::messaging::MessageID mMessageID;
  qelcore::threads::RecursiveTimedMutex mMutex;
  Handler mHandler;                                 ///< guarded by `mMutex`; empty after the shutdown
  std::vector<std::shared_ptr<Dispatch>> mRunning;  ///< guarded by `mMutex`
};

}  // namespace qelsystemcompatibilityreport
