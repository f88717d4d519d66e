// Regular expressions from a blocklist: the one place that runs them.
//
// A blocklist is downloaded, so its expressions are not trusted. A backtracking engine can be made to run for
// hours or to overflow the stack by a few dozen characters, and a crash cannot be caught. So an expression is
// measured before the engine sees it, and the engine runs in the mode that does not backtrack. An expression
// that is too large, or that only backtracking could run, is refused in the same way as a malformed one.
#pragma once

#include <cstddef>
#include <optional>
#include <regex>
#include <string>

#include "qelsystemcompatibilityreport/rules/ExpressionSize.h"
#include "qelsystemcompatibilityreport/rules/PlainExpression.h"

namespace qelsystemcompatibilityreport {

/// The bounds. They are chosen so that compiling and running stays well inside a stack of 1 MiB, which is
/// what a Windows program's threads have, and a fraction of a second.
struct ExpressionBounds {
  /// Bytes of the expression. Compiling recurses once for each character.
  static constexpr std::size_t kMostBytes = 4096;
  /// Groups inside groups.
  static constexpr std::size_t kDeepestGroups = 32;
  /// Look-aheads inside look-aheads. Each level multiplies the time by the length of the text.
  static constexpr std::size_t kDeepestLookAheads = 2;
  /// Characters of the expression once its counted repeats are written out: a group counts one more than what
  /// it holds, so "(?:ab){3}" counts 9.
  static constexpr std::size_t kMostExpandedCharacters = 4096;
  /// Steps of a match at worst: expanded characters, times the length of the text for the match itself and
  /// once more for each level of look-ahead.
  static constexpr std::size_t kMostSteps = 20'000'000;
};

/// Thrown for an expression that is malformed, beyond the bounds, or cannot be run without backtracking. The
/// message quotes the expression and says what is wrong with it.
class ExpressionError : public std::regex_error {
 public:
  ExpressionError(const std::string& expression, std::regex_constants::error_type code,
                  const std::string& reason);
  [[nodiscard]] const char* what() const noexcept override { return mMessage.c_str(); }

 private:
  std::string mMessage;
};

/// An expression that is tried on one text after another.
class Expression {
 public:
  explicit Expression(std::string text);
  // What was read of the text refers to it.
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  [[nodiscard]] const std::string& Text() const { return mText; }

  /// Whether the whole of `text` matches: ECMAScript grammar, case-sensitive, bytes as characters, whatever
  /// the process's locale. Unless the expression is a plain one (`PlainExpression`), the engine compiles it
  /// afresh by each call. Throws `ExpressionError` for an expression that is malformed, beyond the bounds,
  /// beyond what is left of the match's budget (`ExpressionBudget`), or that needs backtracking (a
  /// back-reference).
  [[nodiscard]] bool MatchesWhole(const std::string& text);

 private:
  void RequireWithinBounds(std::size_t textLength) const;

  std::string mText;
  bool mIsRead = false;  ///< whether what follows is set
  ExpressionSize mSize;
  std::optional<PlainExpression> mPlain;
};

/// Whether the whole of `text` matches `expression`, which is tried on this text alone.
[[nodiscard]] bool MatchesWhole(const std::string& expression, const std::string& text);

/// The same by the engine in any case, without asking for bounds.
[[nodiscard]] bool MatchesWholeByEngine(const std::string& expression, const std::string& text);

}  // namespace qelsystemcompatibilityreport
