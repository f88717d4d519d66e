// The library's own matching, put to single questions.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/qelcore/Components.h"

namespace authoring {

/// Property components take part while it lives.
class PropertiesScope {
 public:
  PropertiesScope() : mWereOn(qelcore::utility::OSComponent::SupportsProperties()) {
    qelcore::utility::OSComponent::EnableSupportProperties(true);
  }
  ~PropertiesScope() { qelcore::utility::OSComponent::EnableSupportProperties(mWereOn); }
  PropertiesScope(const PropertiesScope&) = delete;
  PropertiesScope& operator=(const PropertiesScope&) = delete;

 private:
  bool mWereOn;
};

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

/// Whether a rule of this kind and name, without versions, hits a component of that name. Main thread only;
/// takes the place of an exception sink while it asks.
[[nodiscard]] bool HitsName(qelcore::utility::OSComponentType kind, const std::string& ruleName,
                            const std::string& componentName);

/// Whether the expression matches the whole value of a property. The same holds.
[[nodiscard]] bool MatchesValue(const std::string& expression, const std::string& value);

/// The engine's reason in its message about an expression, without the expression.
[[nodiscard]] std::string ReasonOf(std::string_view message);

/// Gives the expressions that are tried from here on what those of one match may cost.
void StartExpressionBudget();

}  // namespace authoring
