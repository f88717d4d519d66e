#include "qelsystemcompatibilityreport/report/startup/SafeMessageListener.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

namespace appstatemanager = qelcore::appstatemanager;
namespace messaging = qelcore::messaging;
using qelcore::threads::TimedLock;

namespace {

/// The longest wait for the mutex, and for a call of the handler to end.
constexpr std::chrono::milliseconds kTimeOut{60000};

}  // namespace

SafeMessageListener::SafeMessageListener(Handler handler)
    : mStationID(appstatemanager::GetStationID()),
      mMessageID(messaging::HashMessageTypeNameToMessageID(appstatemanager::AppStateMessage::kTypeName)),
      mHandler(std::move(handler)) {}

SafeMessageListener::~SafeMessageListener() {
  AtBoundary("qelsystemcompatibilityreport::SafeMessageListener::~SafeMessageListener", [&] { Shutdown(); });
}

void SafeMessageListener::Receive(const messaging::Message& message) {
  constexpr std::string_view kContext = "qelsystemcompatibilityreport::SafeMessageListener::Receive";
  AtBoundary(kContext, [&] {
    const auto dispatch = std::make_shared<Dispatch>();
    const Handler handler = Begin(dispatch);
    if (!handler) return;
    AtBoundary(kContext,
               [&] { handler(static_cast<const appstatemanager::AppStateMessage&>(message).GetState()); });
    End(dispatch);
  });
}

SafeMessageListener::Handler SafeMessageListener::Begin(const std::shared_ptr<Dispatch>& dispatch) {
  const TimedLock lock(mMutex, kTimeOut);
  if (!mHandler) return {};
  dispatch->mThread = std::this_thread::get_id();
  mRunning.push_back(dispatch);
  // The caller gets a copy, because a shutdown from inside the handler takes the original away.
  return mHandler;
}

void SafeMessageListener::End(const std::shared_ptr<Dispatch>& dispatch) {
  // Before the lock, which can fail: a shutdown must not wait for a call that is over.
  dispatch->mEnded.Open();
  const TimedLock lock(mMutex, kTimeOut);
  std::erase(mRunning, dispatch);
}

void SafeMessageListener::Shutdown() {
  std::vector<std::shared_ptr<Dispatch>> running;
  {
    const TimedLock lock(mMutex, kTimeOut);
    mHandler = nullptr;
    running = mRunning;
  }
  const auto deadline = std::chrono::steady_clock::now() + kTimeOut;
  for (const auto& dispatch : running) {
    if (dispatch->mThread == std::this_thread::get_id()) continue;
    // After the deadline it goes on all the same: the call's own references keep alive what it uses.
    static_cast<void>(dispatch->mEnded.PassThroughUntil(deadline));
  }
}

}  // namespace qelsystemcompatibilityreport
