// What the optimizer dialog shows of the states, as values.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/optimizer/VisitedStates.h"

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
/// values, and below it the values.
[[nodiscard]] std::vector<qelui::TreeRow> OptimizationRows(const std::vector<OptimizationState>& states);

/// The places of the states that a pass is going to visit. A pass changes what they are chosen by, so this is
/// for before it.
[[nodiscard]] std::vector<std::size_t> PlacesToVisit(const std::vector<OptimizationState>& states,
                                                     IsVisited isVisited);

/// Why a pass over the states in these places failed: the name and the reason of the first that did; empty
/// when none did. What a pass did not visit may look as if it had failed, because a fresh state does.
[[nodiscard]] std::u16string FailureText(const std::vector<OptimizationState>& states,
                                         const std::vector<std::size_t>& visitedPlaces);

}  // namespace qelsystemcompatibilityreport
