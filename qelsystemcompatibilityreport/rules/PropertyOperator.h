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

}  // namespace qelsystemcompatibilityreport
