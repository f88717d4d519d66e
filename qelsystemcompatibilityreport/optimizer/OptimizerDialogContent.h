// What the optimizer dialog shows of the states, as values.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace qelsystemcompatibilityreport {

/// How many states are recommended and how many are selected.
struct OptimizationCounts {
  std::size_t mRecommended = 0;
  std::size_t mSelected = 0;

  friend bool operator==(const OptimizationCounts&, const OptimizationCounts&) = default;
};

[[nodiscard]] OptimizationCounts CountOptimizations(const std::vector<OptimizationState>& states);

/// Whether there is something to optimize.
[[nodiscard]] bool CanOptimize(const OptimizationCounts& counts);

/// Such as "1 of 3 selected".
[[nodiscard]] std::u16string CountText(const OptimizationCounts& counts);

/// A row for each state, in their order, in three columns: its name with a check box and the captions of the
/// values, and below it the values. An empty reference has no name.
[[nodiscard]] std::vector<qelui::TreeRow> OptimizationRows(const std::vector<OptimizationState>& states);

/// Which states a pass visits.
enum class VisitedStates { kAll, kSelected };

/// Why a pass ended with a failure: the name and the reason of the first state that failed among those that
/// it visits; empty when none did.
[[nodiscard]] std::u16string FailureText(const std::vector<OptimizationState>& states, VisitedStates visited);

}  // namespace qelsystemcompatibilityreport
