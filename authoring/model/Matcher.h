// The library's own matching, put to single questions.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace authoring {

/// What the engine says of an expression.
struct ExpressionVerdict {
  bool mIsMalformed = false;
  bool mIsRefused = false;  ///< beyond a bound
  std::string mReason;      ///< the engine's words, of an expression that is either

  [[nodiscard]] bool IsSound() const { return !mIsMalformed && !mIsRefused; }
};

/// Asks the library about the expressions of one list, each once. They share what the expressions of a list
/// may cost, as they do in a match. Main thread only; takes the place of an exception sink while it asks.
class ExpressionJudge {
 public:
  ExpressionJudge();

  [[nodiscard]] const ExpressionVerdict& Judge(const std::string& expression);

 private:
  std::unordered_map<std::string, ExpressionVerdict> mVerdicts;
};

/// The engine's reason in its message about an expression, without the expression.
[[nodiscard]] std::string ReasonOf(std::string_view message);

/// Gives the expressions that are tried from here on what those of one match may cost.
void StartExpressionBudget();

}  // namespace authoring
