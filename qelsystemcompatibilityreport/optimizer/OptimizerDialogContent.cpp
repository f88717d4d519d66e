#include "qelsystemcompatibilityreport/optimizer/OptimizerDialogContent.h"

#include <algorithm>
#include <string>

#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"

namespace qelsystemcompatibilityreport {

using qelcore::Localise;
using qelcore::string::UTF8to16;

namespace {

std::u16string NameOf(const OptimizationState& state) {
  return state.mOptimization ? UTF8to16(state.mOptimization->GetName()) : std::u16string();
}

}  // namespace

OptimizationCounts CountOptimizations(const std::vector<OptimizationState>& states) {
  OptimizationCounts counts;
  for (const OptimizationState& state : states) {
    if (state.mStatus == AppOptimizationStatus::OptimizationDone) ++counts.mRecommended;
    if (state.mSelected) ++counts.mSelected;
  }
  return counts;
}

bool CanOptimize(const OptimizationCounts& counts) {
  return counts.mRecommended > 0 && counts.mSelected > 0;
}

std::u16string CountText(const OptimizationCounts& counts) {
  return qelcore::ReplacePlaceholders(
      Localise("$$$/qelsystemcompatibilityreport/AppOptimizerDialog/CountSelected=@0 of @1 selected"),
      {UTF8to16(std::to_string(counts.mSelected)), UTF8to16(std::to_string(counts.mRecommended))});
}

std::vector<qelui::TreeRow> OptimizationRows(const std::vector<OptimizationState>& states) {
  const std::u16string current =
      Localise("$$$/qelsystemcompatibilityreport/AppOptimizerDialog/GroupRow/Current=CURRENT");
  const std::u16string optimal =
      Localise("$$$/qelsystemcompatibilityreport/AppOptimizerDialog/GroupRow/Optimal=OPTIMAL");
  std::vector<qelui::TreeRow> rows;
  rows.reserve(states.size());
  for (const OptimizationState& state : states) {
    rows.push_back({.mCells = {NameOf(state), current, optimal},
                    .mStyle = qelui::FontStyle::kBold,
                    .mHasCheckBox = true,
                    .mIsChecked = state.mSelected,
                    .mChildren = {{.mCells = {u"", UTF8to16(state.mCurrent), UTF8to16(state.mOptimal)}}}});
  }
  return rows;
}

std::u16string FailureText(const std::vector<OptimizationState>& states, VisitedStates visited) {
  // A pass ends at a failure, so the states behind it may be fresh ones, which look the same.
  const auto failed = std::find_if(states.begin(), states.end(), [&](const OptimizationState& state) {
    const bool isVisited = visited == VisitedStates::kAll || state.mSelected;
    return isVisited && state.mStatus == AppOptimizationStatus::OptimizationFailed;
  });
  if (failed == states.end() || !failed->mOptimization) return {};
  return NameOf(*failed) + u": " + UTF8to16(failed->mOptimization->GetFailureText());
}

}  // namespace qelsystemcompatibilityreport
