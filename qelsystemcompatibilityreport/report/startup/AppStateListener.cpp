#include "qelsystemcompatibilityreport/report/startup/AppStateListener.h"

#include <memory>
#include <mutex>
#include <utility>

#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Config.h"
#include "platform/qelcore/Messaging.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/report/startup/SafeMessageListener.h"

namespace qelsystemcompatibilityreport {

namespace {

using qelcore::appstatemanager::AppState;

/// Holds the module's listener. The last reference is dropped outside the lock, because dropping it can wait.
class ListenerHolder {
 public:
  std::shared_ptr<SafeMessageListener> Exchange(std::shared_ptr<SafeMessageListener> listener) {
    const std::lock_guard lock(mMutex);
    if (listener) mLatest = listener;
    return std::exchange(mListener, std::move(listener));
  }

  /// The listener that was held last, if somebody still dispatches to it.
  [[nodiscard]] std::shared_ptr<SafeMessageListener> Latest() {
    const std::lock_guard lock(mMutex);
    return mLatest.lock();
  }

 private:
  std::mutex mMutex;
  std::shared_ptr<SafeMessageListener> mListener;
  std::weak_ptr<SafeMessageListener> mLatest;
};

ListenerHolder gListener;

/// Takes the listener's place with `next` and ends it. Returns whether there was one.
bool Release(std::shared_ptr<SafeMessageListener> next = nullptr) {
  const auto listener = gListener.Exchange(std::move(next));
  if (!listener) return false;
  listener->Shutdown();
  return true;
}

void OnAppState(AppState state) {
  if (state != AppState::kPostStartup) return;
  // Of several threads that come here at once, the one that takes the listener logs.
  if (Release()) LogToAnalytics();
}

/// Releases the listener, and waits for the thread that has taken it and still logs: the module may be
/// unloaded next.
void EndListening() {
  Release();
  if (const auto latest = gListener.Latest()) latest->Shutdown();
}

}  // namespace

void ReplaceAppStateListener() {
  const auto listener = std::make_shared<SafeMessageListener>(OnAppState);
  Release(listener);
  qelcore::messaging::AddListener(listener);
}

void ListenToAppStates() {
  static const bool isListening = [] {
    ReplaceAppStateListener();
    qelcore::config::AddTerminationForSingleton(EndListening,
                                                "qelsystemcompatibilityreport::AppStateListener");
    return true;
  }();
  static_cast<void>(isListening);
}

}  // namespace qelsystemcompatibilityreport
