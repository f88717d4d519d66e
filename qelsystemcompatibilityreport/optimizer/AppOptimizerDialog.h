// The optimizer dialog.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/optimizer/VisitedStates.h"

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

  struct PassResult {
    AppOptimizationStatus mStatus;
    std::u16string mFailure;  ///< which state failed and why; empty unless one did
  };

  void AddControls();
  void FillTree();
  void UpdateCounts();
  void OnCheck(std::size_t row, bool isChecked);
  PassResult RunPass(Pass pass, IsVisited isVisited);
  AppOptimizationStatus Determine(Pass pass, IsVisited isVisited);
  void RunToTheEndAndClose(Pass begin, IsVisited isVisitedByBegin, Pass goOn);

  std::vector<OptimizationState> mStates;
  std::optional<qelui::TimerID> mTimer;
  bool mIsDetermining = false;
  std::u16string mDetermineFailures;  ///< a line for each
  qelui::ProgressIndicator* mProgress = nullptr;
  qelui::Tree* mTree = nullptr;
  qelui::StaticText* mCountText = nullptr;
  qelui::StaticText* mFailureText = nullptr;
  qelui::Button* mOptimizeButton = nullptr;
};

}  // namespace qelsystemcompatibilityreport
