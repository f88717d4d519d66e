#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"

#include <algorithm>

#include "qelsystemcompatibilityreport/rules/SeparateState.h"

namespace qelsystemcompatibilityreport {

namespace {

std::ptrdiff_t& Balance() {
  static std::ptrdiff_t balance = ExpressionBudget::kBalanceAtStart;
  SeparateState* const separate = SeparateState::Current();
  return separate == nullptr ? balance : separate->mExpressionBalance;
}

}  // namespace

void ExpressionBudget::Start() {
  Balance() = kBalanceAtStart;
}

bool ExpressionBudget::Take(std::size_t cost) {
  std::ptrdiff_t& balance = Balance();
  balance = std::min(balance + kAddedForEachExpression, kBalanceAtStart);
  if (cost > static_cast<std::size_t>(balance)) return false;
  balance -= static_cast<std::ptrdiff_t>(cost);
  return true;
}

}  // namespace qelsystemcompatibilityreport
