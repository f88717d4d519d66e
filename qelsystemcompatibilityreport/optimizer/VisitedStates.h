// Which states the passes visit: for the passes, and for whoever tells how they went.
#pragma once

#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace qelsystemcompatibilityreport {

/// Whether a pass visits this state. Asked before it does, because the visit changes the status.
using IsVisited = bool (*)(const OptimizationState& state);

[[nodiscard]] inline bool VisitAll(const OptimizationState& /*state*/) {
  return true;
}

[[nodiscard]] inline bool VisitSelected(const OptimizationState& state) {
  return state.mSelected;
}

[[nodiscard]] inline bool VisitPending(const OptimizationState& state) {
  return state.mStatus == AppOptimizationStatus::OptimizationPending;
}

}  // namespace qelsystemcompatibilityreport
