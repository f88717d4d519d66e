// The measure of a regular expression, taken from its text.
#pragma once

#include <cstddef>
#include <string_view>

namespace qelsystemcompatibilityreport {

/// How large an expression is. Counts that would overflow stay at the largest value.
struct ExpressionSize {
  std::size_t mExpandedCharacters = 0;  ///< characters with counted repeats written out
  std::size_t mCharacterClasses = 0;    ///< brackets and escaped classes such as "\\w", as they stand
  std::size_t mGroupDepth = 0;          ///< the deepest nesting of groups, look-aheads included
  std::size_t mLookAheadDepth = 0;      ///< the deepest nesting of look-aheads
  bool mHasBackReference = false;       ///< outside of brackets, where there is none
};

/// Measures an ECMAScript expression without compiling it, in one pass and without recursion. A malformed
/// expression is measured as far as it makes sense; whether it is well formed is for the engine to say.
[[nodiscard]] ExpressionSize MeasureExpression(std::string_view expression);

}  // namespace qelsystemcompatibilityreport
