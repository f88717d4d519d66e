// Showing the optimizer dialog, one at a time.
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/Dialogs.h"
#include "qelsystemcompatibilityreport/optimizer/AppOptimizerDialog.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The dialog that is open; null when none is.
AppOptimizerDialog* gOpenDialog = nullptr;

}  // namespace

void RunAppOptimizer(qelui::OS_Window* parent) {
  AtBoundary("qelsystemcompatibilityreport::RunAppOptimizer", [&] {
    qelui::DrawSupplier* const drawSupplier = FindDrawSupplier();
    if (drawSupplier == nullptr) return;
    if (gOpenDialog != nullptr) {
      gOpenDialog->BringToFront();
      return;
    }
    AppOptimizerDialog dialog(*drawSupplier, parent);
    const OpenDialogScope scope(gOpenDialog, dialog);
    dialog.Run();
  });
}

}  // namespace qelsystemcompatibilityreport
