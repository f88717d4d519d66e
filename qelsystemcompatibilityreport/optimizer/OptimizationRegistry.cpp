// The optimizations of this process, and whether they are offered.
#include <algorithm>

#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

namespace {

bool gIsEnabled = false;

std::vector<IAppOptimization::Ref>& Registry() {
  static std::vector<IAppOptimization::Ref> registry;
  return registry;
}

/// Sees to it that everything is let go at the process's end, while the modules that registered it are still
/// there.
void ArrangeClearing() {
  static const bool isArranged = [] {
    qelcore::config::AddTerminationForSingleton([] { Registry().clear(); },
                                                "qelsystemcompatibilityreport::OptimizationStates");
    return true;
  }();
  static_cast<void>(isArranged);
}

}  // namespace

bool RegisterAppOptimization(const IAppOptimization::Ref& optimization) {
  return AtBoundary("qelsystemcompatibilityreport::RegisterAppOptimization", false, [&] {
    auto& registry = Registry();
    if (!optimization || std::find(registry.begin(), registry.end(), optimization) != registry.end())
      return false;
    // First, because nothing may stay registered that is not going to be let go.
    ArrangeClearing();
    registry.push_back(optimization);
    return true;
  });
}

void InitOptimizationStates(std::vector<OptimizationState>& states) {
  AtBoundary("qelsystemcompatibilityreport::InitOptimizationStates", [&] {
    states.clear();
    for (const IAppOptimization::Ref& optimization : Registry())
      states.push_back({.mOptimization = optimization});
  });
}

void EnableAppOptimizer(bool enable) {
  gIsEnabled = enable;
}

bool AppOptimizerEnabled() {
  return gIsEnabled;
}

}  // namespace qelsystemcompatibilityreport
