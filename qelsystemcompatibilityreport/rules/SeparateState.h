// What a thread that matches beside others has for itself.
#pragma once

#include <atomic>

#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "qelsystemcompatibilityreport/rules/FileComponents.h"
#include "qelsystemcompatibilityreport/rules/MatchingSwitches.h"

namespace qelsystemcompatibilityreport {

struct SeparateState {
  MatchingSwitches mSwitches;
  ExpressionBudget::Balances mExpressionBalances;
  FileAnswers mFileAnswers;

  /// This thread's; null when it shares the process's, as it does in all but a few tools.
  [[nodiscard]] static SeparateState* Current() {
    return sCount.load(std::memory_order_relaxed) == 0 ? nullptr : OfThisThread();
  }

  /// Makes another one this thread's, or none, and returns the one that was.
  static SeparateState* Replace(SeparateState* state);

 private:
  [[nodiscard]] static SeparateState* OfThisThread();

  /// How many threads have one. Asking it is cheaper than asking for a thread's own value.
  static std::atomic<int> sCount;
};

}  // namespace qelsystemcompatibilityreport
