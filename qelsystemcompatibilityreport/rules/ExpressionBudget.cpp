#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"

#include <algorithm>
#include <utility>

namespace qelsystemcompatibilityreport {

namespace {

std::ptrdiff_t gBalance = ExpressionBudget::kBalanceAtStart;
std::ptrdiff_t gOtherBalance = ExpressionBudget::kBalanceAtStart;

}  // namespace

void ExpressionBudget::Start() {
  gBalance = kBalanceAtStart;
  gOtherBalance = kBalanceAtStart;
}

bool ExpressionBudget::Take(std::size_t cost) {
  gBalance = std::min(gBalance + kAddedForEachExpression, kBalanceAtStart);
  if (cost > static_cast<std::size_t>(gBalance)) return false;
  gBalance -= static_cast<std::ptrdiff_t>(cost);
  return true;
}

ExpressionBudget::Aside::Aside() {
  std::swap(gBalance, gOtherBalance);
}

ExpressionBudget::Aside::~Aside() {
  std::swap(gBalance, gOtherBalance);
}

}  // namespace qelsystemcompatibilityreport
