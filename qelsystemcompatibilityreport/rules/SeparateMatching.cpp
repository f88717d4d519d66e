#include "qelsystemcompatibilityreport/SeparateMatching.h"

#include <utility>

#include "qelsystemcompatibilityreport/rules/SeparateState.h"

namespace qelsystemcompatibilityreport {

namespace {

thread_local SeparateState* tState = nullptr;

}  // namespace

std::atomic<int> SeparateState::sCount{0};

SeparateState* SeparateState::OfThisThread() {
  return tState;
}

SeparateState* SeparateState::Replace(SeparateState* state) {
  SeparateState* const before = std::exchange(tState, state);
  sCount.fetch_add((state != nullptr ? 1 : 0) - (before != nullptr ? 1 : 0), std::memory_order_relaxed);
  return before;
}

SeparateMatching::SeparateMatching()
    : mState(std::make_unique<SeparateState>()), mBefore(SeparateState::Replace(mState.get())) {}

SeparateMatching::~SeparateMatching() {
  SeparateState::Replace(mBefore);
}

}  // namespace qelsystemcompatibilityreport
