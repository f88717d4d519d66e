#include "host/qelnet/Outcomes.h"

#include <exception>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/qelcore/Trace.h"

namespace qelnet {

namespace {

struct ObserverHolder {
  std::mutex mMutex;
  std::shared_ptr<const host::OutcomeObserver> mObserver;
};

ObserverHolder& TheObserver() {
  // Never destroyed, because the worker may still end requests while the process ends.
  static ObserverHolder& holder = *new ObserverHolder;
  return holder;
}

}  // namespace

void TellOutcome(const std::function<host::Outcome()>& makeOutcome) noexcept {
  try {
    std::shared_ptr<const host::OutcomeObserver> observer;
    {
      ObserverHolder& holder = TheObserver();
      const std::lock_guard lock(holder.mMutex);
      observer = holder.mObserver;
    }
    if (observer) (*observer)(makeOutcome());
  } catch (...) {
    qelcore::LogException(std::current_exception(), "qelnet::host::OutcomeObserver");
  }
}

void host::SetOutcomeObserver(OutcomeObserver observer) {
  auto shared = observer ? std::make_shared<const OutcomeObserver>(std::move(observer)) : nullptr;
  ObserverHolder& holder = TheObserver();
  const std::lock_guard lock(holder.mMutex);
  holder.mObserver = std::move(shared);
}

}  // namespace qelnet
