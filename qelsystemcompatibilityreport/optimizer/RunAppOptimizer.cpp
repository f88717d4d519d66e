// Showing the optimizer dialog, one at a time.
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/Dialogs.h"
#include "qelsystemcompatibilityreport/optimizer/AppOptimizerDialog.h"
#include "qelsystemcompatibilityreport/optimizer/NativeWindow.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The dialog that is open; null when none is.
AppOptimizerDialog* gOpenDialog = nullptr;

/// Whether a request is being served, from before its dialog is created until the dialog is gone.
bool gIsServing = false;

class ServingScope {
 public:
  ServingScope() { gIsServing = true; }
  ~ServingScope() { gIsServing = false; }
  ServingScope(const ServingScope&) = delete;
  ServingScope& operator=(const ServingScope&) = delete;
};

void BringToFront(AppOptimizerDialog& dialog) {
  dialog.BringToFront();
  BringNativeWindowToFront(dialog.GetNativeWindow());
}

}  // namespace

void RunAppOptimizer(qelui::OS_Window* parent) {
  AtBoundary("qelsystemcompatibilityreport::RunAppOptimizer", [&] {
    qelui::DrawSupplier* const drawSupplier = FindDrawSupplier();
    if (drawSupplier == nullptr) return;
    if (gOpenDialog != nullptr) {
      BringToFront(*gOpenDialog);
      return;
    }
    // A dialog that is being created determines, and an optimization may run an event loop of its own or ask
    // for the optimizer meanwhile. There is nothing yet that could come to the front.
    if (gIsServing) return;
    const ServingScope serving;
    AppOptimizerDialog dialog(*drawSupplier, parent);
    const OpenDialogScope scope(gOpenDialog, dialog);
    dialog.Run();
  });
}

}  // namespace qelsystemcompatibilityreport
