// What the expressions of one match may cost together.
#pragma once

#include <cstddef>

namespace qelsystemcompatibilityreport {

/// The bounds of a single expression do not keep a list of a thousand costly ones from stalling the host. So
/// a match starts with a balance, every expression that is tried adds a little, enough for the expressions
/// that real lists have, and takes away what it costs. Once the balance is used up, costly expressions are
/// refused; ordinary ones go on. The unit is a step of the engine, some ten nanoseconds. Process-wide and not
/// synchronised, as matching is.
class ExpressionBudget {
 public:
  static constexpr std::ptrdiff_t kBalanceAtStart = 200'000'000;
  static constexpr std::ptrdiff_t kAddedForEachExpression = 10'000;

  struct Balances {
    std::ptrdiff_t mInUse = kBalanceAtStart;
    std::ptrdiff_t mAside = kBalanceAtStart;
  };

  /// A new match starts.
  static void Start();

  /// Takes the cost of one expression away. Returns false, and takes nothing, when the balance does not
  /// suffice.
  [[nodiscard]] static bool Take(std::size_t cost);

  /// While it lives, expressions are paid from a balance of their own: what is tried for an explanation alone
  /// must not change what becomes of the match. `Start` fills it, too.
  class Aside {
   public:
    Aside();
    ~Aside();
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;
  };
};

}  // namespace qelsystemcompatibilityreport
