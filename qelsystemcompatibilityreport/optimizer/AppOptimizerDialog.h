// The optimizer dialog.
#pragma once

#include <optional>
#include <vector>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/optimizer/OptimizerDialogContent.h"

namespace qelsystemcompatibilityreport {

/// Shows what is recommended, and lets the user apply it or restore the defaults.
class AppOptimizerDialog final : public qelui::UI_Dialog {
 public:
  /// Begins to determine. May throw, as the steps do.
  AppOptimizerDialog(qelui::DrawSupplier& drawSupplier, qelui::OS_Window* parent);

  /// Polls as long as something is pending, shows the dialog, and returns when it is closed.
  void Run();

 protected:
  void OnTimer(qelui::TimerID timer) override;

 private:
  using Pass = AppOptimizationStatus (*)(std::vector<OptimizationState>&);

  void AddControls();
  void FillTree();
  void UpdateCounts();
  void ShowDetermineFailure(AppOptimizationStatus status);
  void OnCheck(std::size_t row, bool isChecked);
  void RunToTheEndAndClose(Pass begin, Pass goOn, VisitedStates visited);

  std::vector<OptimizationState> mStates;
  std::optional<qelui::TimerID> mTimer;
  bool mIsPending = false;
  qelui::ProgressIndicator* mProgress = nullptr;
  qelui::Tree* mTree = nullptr;
  qelui::StaticText* mCountText = nullptr;
  qelui::StaticText* mFailureText = nullptr;
  qelui::Button* mOptimizeButton = nullptr;
};

}  // namespace qelsystemcompatibilityreport
