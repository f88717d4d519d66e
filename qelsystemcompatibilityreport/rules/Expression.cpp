#include "qelsystemcompatibilityreport/rules/Expression.h"

#include <locale>
#include <optional>
#include <utility>

#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"

namespace qelsystemcompatibilityreport {

namespace {

using Bounds = ExpressionBounds;

/// Captures are of no interest. Where the library has it, the executor that keeps all states side by side
/// instead of going back; it refuses back-references by itself.
constexpr std::regex_constants::syntax_option_type kSyntax = std::regex_constants::ECMAScript |
                                                             std::regex_constants::nosubs
#if defined(__GLIBCXX__)
                                                             | std::regex_constants::__polynomial
#endif
    ;

/// What compiling costs, in steps of a match: for each character, and for each class of characters.
constexpr std::size_t kCompilingACharacter = 25;
constexpr std::size_t kCompilingAClass = 1'000;

/// As much of an expression as a message quotes.
constexpr std::size_t kMostBytesQuoted = 100;

std::string Quoted(const std::string& expression) {
  if (expression.size() <= kMostBytesQuoted) return "\"" + expression + "\"";
  return "\"" + expression.substr(0, kMostBytesQuoted) + "...\"";
}

/// The steps of a match at worst; nothing when they are beyond the bound.
std::optional<std::size_t> CountSteps(const ExpressionSize& size, std::size_t textLength) {
  std::size_t steps = size.mExpandedCharacters + 1;
  for (std::size_t level = 0; level <= size.mLookAheadDepth; ++level) {
    if (steps > Bounds::kMostSteps / (textLength + 1)) return std::nullopt;
    steps *= textLength + 1;
  }
  return steps;
}

[[noreturn]] void Refuse(const std::string& expression, const std::string& reason) {
  throw ExpressionError(expression, std::regex_constants::error_complexity, reason);
}

void Require(const std::string& expression, std::size_t value, std::size_t bound, const char* what) {
  if (value <= bound) return;
  Refuse(expression, "too complex: " + std::string(what) + " " + std::to_string(value) + ", at most " +
                         std::to_string(bound) + " allowed");
}

}  // namespace

ExpressionError::ExpressionError(const std::string& expression, std::regex_constants::error_type code,
                                 const std::string& reason)
    : std::regex_error(code), mMessage("the expression " + Quoted(expression) + " is refused: " + reason) {}

Expression::Expression(std::string text) : mText(std::move(text)) {}

void Expression::RequireWithinBounds(std::size_t textLength) const {
  // The engine refuses it as well, but computes the number first, which may be beyond all numbers.
  if (mSize.mHasBackReference) Refuse(mText, "too complex: it refers back to a group");
  Require(mText, mSize.mGroupDepth, Bounds::kDeepestGroups, "its groups are nested");
  Require(mText, mSize.mLookAheadDepth, Bounds::kDeepestLookAheads, "its look-aheads are nested");
  Require(mText, mSize.mExpandedCharacters, Bounds::kMostExpandedCharacters,
          "with its repeats written out its length is");
  const std::optional<std::size_t> steps = CountSteps(mSize, textLength);
  if (!steps) Refuse(mText, "too complex for a text of " + std::to_string(textLength) + " bytes");
  const std::size_t compiling =
      mSize.mExpandedCharacters * kCompilingACharacter + mSize.mCharacterClasses * kCompilingAClass;
  if (!ExpressionBudget::Take(compiling + *steps)) {
    Refuse(mText,
           "too complex: the expressions of this blocklist have used up the time that a match may take");
  }
}

bool Expression::MatchesWhole(const std::string& text) {
  if (!mIsRead) {
    Require(mText, mText.size(), Bounds::kMostBytes, "its length is");
    mSize = MeasureExpression(mText);
    mPlain = PlainExpression::Read(mText);
    mIsRead = true;
  }
  // A plain expression costs little, but whether one is refused must not depend on how it is run.
  RequireWithinBounds(text.size());
  return mPlain ? mPlain->MatchesWhole(text) : MatchesWholeByEngine(mText, text);
}

bool MatchesWhole(const std::string& expression, const std::string& text) {
  return Expression(expression).MatchesWhole(text);
}

bool MatchesWholeByEngine(const std::string& expression, const std::string& text) {
  std::regex compiled;
  try {
    compiled.imbue(std::locale::classic());
    compiled.assign(expression, kSyntax);
    return std::regex_match(text, compiled);
  } catch (const std::regex_error& error) {
    throw ExpressionError(expression, error.code(), error.what());
  }
}

}  // namespace qelsystemcompatibilityreport
