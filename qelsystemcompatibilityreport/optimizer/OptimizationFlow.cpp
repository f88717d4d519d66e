// The steps over all optimizations.
#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace qelsystemcompatibilityreport {

using enum AppOptimizationStatus;

namespace {

using States = std::vector<OptimizationState>;

bool IsPending(const OptimizationState& state) {
  return state.mStatus == OptimizationPending;
}

bool IsSelected(const OptimizationState& state) {
  return state.mSelected;
}

bool Always(const OptimizationState&) {
  return true;
}

AppOptimizationStatus Determine(OptimizationState& state) {
  const AppOptimizationStatus status = state.mOptimization->Determine(state.mCurrent, state.mOptimal);
  if (status == OptimizationDone) state.mSelected = true;
  return status;
}

AppOptimizationStatus Accept(OptimizationState& state) {
  return state.mOptimization->Accept();
}

AppOptimizationStatus Default(OptimizationState& state) {
  return state.mOptimization->Default();
}

AppOptimizationStatus Cancel(OptimizationState& state) {
  return state.mOptimization->Cancel();
}

/// One pass: `step` for each state that `isVisited`.
template <typename IsVisited, typename Step>
AppOptimizationStatus Pass(States& states, IsVisited isVisited, Step step) {
  AppOptimizationStatus result = OptimizationDone;
  for (OptimizationState& state : states) {
    if (!isVisited(state)) continue;
    if (!state.mOptimization) qelcore::config::DoThrowNullPtrException("IAppOptimization");
    state.mStatus = step(state);
    if (state.mStatus == OptimizationFailed || state.mStatus == OptimizationStop) return state.mStatus;
    if (state.mStatus == OptimizationPending) result = OptimizationPending;
  }
  return result;
}

}  // namespace

AppOptimizationStatus BeginDetermineOptimizations(States& states) {
  return Pass(states, Always, Determine);
}

AppOptimizationStatus ContinueDetermineOptimizations(States& states) {
  return Pass(states, IsPending, Determine);
}

AppOptimizationStatus BeginAcceptOptimizations(States& states) {
  return Pass(states, IsSelected, Accept);
}

AppOptimizationStatus ContinueAcceptOptimizations(States& states) {
  return Pass(states, IsPending, Accept);
}

AppOptimizationStatus BeginDefaultOptimizations(States& states) {
  return Pass(states, Always, Default);
}

AppOptimizationStatus ContinueDefaultOptimizations(States& states) {
  return Pass(states, IsPending, Default);
}

AppOptimizationStatus CancelOptimizations(States& states) {
  return Pass(states, IsPending, Cancel);
}

}  // namespace qelsystemcompatibilityreport
