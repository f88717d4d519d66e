// The steps over all optimizations.
#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/optimizer/VisitedStates.h"

namespace qelsystemcompatibilityreport {

using enum AppOptimizationStatus;

namespace {

using States = std::vector<OptimizationState>;

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

/// One pass: `step` for each state that is visited.
template <typename Step>
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
  return Pass(states, VisitAll, Determine);
}

AppOptimizationStatus ContinueDetermineOptimizations(States& states) {
  return Pass(states, VisitPending, Determine);
}

AppOptimizationStatus BeginAcceptOptimizations(States& states) {
  return Pass(states, VisitSelected, Accept);
}

AppOptimizationStatus ContinueAcceptOptimizations(States& states) {
  return Pass(states, VisitPending, Accept);
}

AppOptimizationStatus BeginDefaultOptimizations(States& states) {
  return Pass(states, VisitAll, Default);
}

AppOptimizationStatus ContinueDefaultOptimizations(States& states) {
  return Pass(states, VisitPending, Default);
}

AppOptimizationStatus CancelOptimizations(States& states) {
  return Pass(states, VisitPending, Cancel);
}

}  // namespace qelsystemcompatibilityreport
