#include "qelsystemcompatibilityreport/optimizer/OptimizerDialogContent.h"

#include <string>

#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"

namespace qelsystemcompatibilityreport {

using qelcore::Localise;
using qelcore::string::UTF8to16;

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
    rows.push_back({.mCells = {UTF8to16(state.mOptimization->GetName()), current, optimal},
                    .mStyle = qelui::FontStyle::kBold,
                    .mHasCheckBox = true,
                    .mIsChecked = state.mSelected,
                    .mChildren = {{.mCells = {u"", UTF8to16(state.mCurrent), UTF8to16(state.mOptimal)}}}});
  }
  return rows;
}

std::vector<std::size_t> PlacesToVisit(const std::vector<OptimizationState>& states, IsVisited isVisited) {
  std::vector<std::size_t> places;
  for (std::size_t place = 0; place < states.size(); ++place) {
    if (isVisited(states[place])) places.push_back(place);
  }
  return places;
}

std::u16string FailureText(const std::vector<OptimizationState>& states,
                           const std::vector<std::size_t>& visitedPlaces) {
  for (const std::size_t place : visitedPlaces) {
    const OptimizationState& state = states.at(place);
    if (state.mStatus != AppOptimizationStatus::OptimizationFailed) continue;
    return UTF8to16(state.mOptimization->GetName()) + u": " + UTF8to16(state.mOptimization->GetFailureText());
  }
  return {};
}

}  // namespace qelsystemcompatibilityreport
