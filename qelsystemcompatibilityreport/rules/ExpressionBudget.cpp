#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"

#include <algorithm>
#include <utility>

#include "qelsystemcompatibilityreport/rules/SeparateState.h"

namespace qelsystemcompatibilityreport {

namespace {

ExpressionBudget::Balances& TheBalances() {
  static ExpressionBudget::Balances balances;
  SeparateState* const separate = SeparateState::Current();
  return separate == nullptr ? balances : separate->mExpressionBalances;
}

void ChangeSides() {
  ExpressionBudget::Balances& balances = TheBalances();
  std::swap(balances.mInUse, balances.mAside);
}

}  // namespace

void ExpressionBudget::Start() {
  TheBalances() = {};
}

bool ExpressionBudget::Take(std::size_t cost) {
  std::ptrdiff_t& balance = TheBalances().mInUse;
  balance = std::min(balance + kAddedForEachExpression, kBalanceAtStart);
  if (cost > static_cast<std::size_t>(balance)) return false;
  balance -= static_cast<std::ptrdiff_t>(cost);
  return true;
}

ExpressionBudget::Aside::Aside() {
  ChangeSides();
}

ExpressionBudget::Aside::~Aside() {
  ChangeSides();
}

}  // namespace qelsystemcompatibilityreport
