#include "host/qelui/native/ModalLevel.h"

#include <utility>

#include "host/qelcore/HostSetup.h"

namespace qelui::native {

namespace {

constexpr int kTaskInterval = 50;  // milliseconds

ModalLevel* gUppermost = nullptr;

}  // namespace

ModalLevel::ModalLevel(std::function<void()> onUncovered)
    : mBelow(std::exchange(gUppermost, this)), mOnUncovered(std::move(onUncovered)), mTimer(*this) {
  mTimer.Start(kTaskInterval);
}

ModalLevel::~ModalLevel() {
  gUppermost = mBelow;
  if (mBelow != nullptr && mBelow->mOnUncovered) mBelow->mOnUncovered();
}

bool ModalLevel::IsUppermost() const {
  return gUppermost == this;
}

void ModalLevel::TaskTimer::Notify() {
  if (mIsRunningTasks || !mLevel.IsUppermost()) return;
  mIsRunningTasks = true;
  // A task that throws is logged by the queue.
  qelcore::host::RunDueMainThreadTasks();
  mIsRunningTasks = false;
}

}  // namespace qelui::native
