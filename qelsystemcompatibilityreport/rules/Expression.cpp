#include "qelsystemcompatibilityreport/rules/Expression.h"

#include <locale>
#include <utility>

#include "qelsystemcompatibilityreport/rules/ExpressionSize.h"

namespace qelsystemcompatibilityreport {

namespace {

/// Captures are of no interest. Where the library has it, the executor that keeps all states side by side
/// instead of going back; it refuses back-references by itself.
constexpr std::regex_constants::syntax_option_type kSyntax = std::regex_constants::ECMAScript |
                                                             std::regex_constants::nosubs
#if defined(__GLIBCXX__)
                                                             | std::regex_constants::__polynomial
#endif
    ;

void RequireAtMost(std::size_t value, std::size_t bound, const char* what) {
  if (value <= bound) return;
  throw ExpressionTooComplex("the expression is too complex: " + std::string(what) + " " +
                             std::to_string(value) + ", at most " + std::to_string(bound) + " allowed");
}

/// Whether `steps` times `length` as often as `times` says goes beyond the bound.
bool NeedsTooManySteps(std::size_t steps, std::size_t length, std::size_t times) {
  for (std::size_t time = 0; time < times; ++time) {
    if (steps > ExpressionBounds::kMostSteps / length) return true;
    steps *= length;
  }
  return false;
}

void RequireWithinBounds(const std::string& expression, const std::string& text) {
  RequireAtMost(expression.size(), ExpressionBounds::kMostBytes, "its length is");
  const ExpressionSize size = MeasureExpression(expression);
  RequireAtMost(size.mGroupDepth, ExpressionBounds::kDeepestGroups, "its groups are nested");
  RequireAtMost(size.mLookAheadDepth, ExpressionBounds::kDeepestLookAheads, "its look-aheads are nested");
  RequireAtMost(size.mExpandedCharacters, ExpressionBounds::kMostExpandedCharacters,
                "with its repeats written out its length is");
  if (NeedsTooManySteps(size.mExpandedCharacters + 1, text.size() + 1, size.mLookAheadDepth + 1)) {
    throw ExpressionTooComplex("the expression is too complex for a text of " + std::to_string(text.size()) +
                               " bytes");
  }
}

}  // namespace

ExpressionTooComplex::ExpressionTooComplex(std::string message)
    : std::regex_error(std::regex_constants::error_complexity), mMessage(std::move(message)) {}

bool MatchesWhole(const std::string& expression, const std::string& text) {
  RequireWithinBounds(expression, text);
  std::regex compiled;
  compiled.imbue(std::locale::classic());
  compiled.assign(expression, kSyntax);
  return std::regex_match(text, compiled);
}

}  // namespace qelsystemcompatibilityreport
