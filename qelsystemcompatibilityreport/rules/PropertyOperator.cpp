#include "qelsystemcompatibilityreport/rules/PropertyOperator.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace qelsystemcompatibilityreport {

namespace {

using Pair = std::pair<SCRPropertyOperator, std::string>;

// Built on first use; the language makes that safe from any thread.
const std::array<Pair, 13>& Table() {
  static const std::array<Pair, 13> table{{
      {SCRPropertyOperator::kEqual, "eq"},
      {SCRPropertyOperator::kNotEqual, "ne"},
      {SCRPropertyOperator::kLess, "lt"},
      {SCRPropertyOperator::kLessOrEqual, "lte"},
      {SCRPropertyOperator::kGreater, "gt"},
      {SCRPropertyOperator::kGreaterOrEqual, "gte"},
      {SCRPropertyOperator::kIntegerEqual, "ieq"},
      {SCRPropertyOperator::kIntegerNotEqual, "ine"},
      {SCRPropertyOperator::kIntegerLess, "ilt"},
      {SCRPropertyOperator::kIntegerLessOrEqual, "ilte"},
      {SCRPropertyOperator::kIntegerGreater, "igt"},
      {SCRPropertyOperator::kIntegerGreaterOrEqual, "igte"},
      {SCRPropertyOperator::kRegularExpression, "regex"},
  }};
  return table;
}

}  // namespace

const std::string& PropertyOperatorToString(SCRPropertyOperator propertyOperator) {
  static const std::string invalid = "invalid_operator";
  const auto found = std::find_if(Table().begin(), Table().end(),
                                  [&](const Pair& pair) { return pair.first == propertyOperator; });
  return found == Table().end() ? invalid : found->second;
}

std::optional<SCRPropertyOperator> PropertyOperatorFromString(std::string_view key) {
  const auto found =
      std::find_if(Table().begin(), Table().end(), [&](const Pair& pair) { return pair.second == key; });
  if (found == Table().end()) return std::nullopt;
  return found->first;
}

bool ComparesIntegers(SCRPropertyOperator propertyOperator) {
  return propertyOperator >= SCRPropertyOperator::kIntegerEqual &&
         propertyOperator <= SCRPropertyOperator::kIntegerGreaterOrEqual;
}

bool ComparisonHolds(SCRPropertyOperator propertyOperator, int comparison) {
  switch (propertyOperator) {
    case SCRPropertyOperator::kEqual:
    case SCRPropertyOperator::kIntegerEqual:
      return comparison == 0;
    case SCRPropertyOperator::kNotEqual:
    case SCRPropertyOperator::kIntegerNotEqual:
      return comparison != 0;
    case SCRPropertyOperator::kLess:
    case SCRPropertyOperator::kIntegerLess:
      return comparison < 0;
    case SCRPropertyOperator::kLessOrEqual:
    case SCRPropertyOperator::kIntegerLessOrEqual:
      return comparison <= 0;
    case SCRPropertyOperator::kGreater:
    case SCRPropertyOperator::kIntegerGreater:
      return comparison > 0;
    case SCRPropertyOperator::kGreaterOrEqual:
    case SCRPropertyOperator::kIntegerGreaterOrEqual:
      return comparison >= 0;
    case SCRPropertyOperator::kRegularExpression:
      break;
  }
  return false;
}

long long ToInteger(const std::string& text) {
  return std::strtoll(text.c_str(), nullptr, 10);
}

int CompareIntegers(long long left, long long right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

}  // namespace qelsystemcompatibilityreport
