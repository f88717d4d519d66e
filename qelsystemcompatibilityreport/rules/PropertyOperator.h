// The 13 property operators and their JSON keys.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

/// The operator's JSON key; "invalid_operator" for a value outside 0 to 12.
[[nodiscard]] const std::string& PropertyOperatorToString(SCRPropertyOperator propertyOperator);

/// The operator of a JSON key; nothing for any other text.
[[nodiscard]] std::optional<SCRPropertyOperator> PropertyOperatorFromString(std::string_view key);

/// Whether the operator compares integers; the others compare texts.
[[nodiscard]] bool ComparesIntegers(SCRPropertyOperator propertyOperator);

/// Whether the operator's relation holds when a value compares with its operand like this: below 0 the value
/// is less, 0 they are equal, above 0 it is greater. False for the expression, which does not compare.
[[nodiscard]] bool ComparisonHolds(SCRPropertyOperator propertyOperator, int comparison);

/// White space, a sign and decimal digits are read, the rest is ignored; a text without digits is 0, one
/// beyond 64 bits the nearest that fits.
[[nodiscard]] long long ToInteger(const std::string& text);

/// Below 0 when `left` is less, 0 when they are equal, above 0 when it is greater.
[[nodiscard]] int CompareIntegers(long long left, long long right);

}  // namespace qelsystemcompatibilityreport
