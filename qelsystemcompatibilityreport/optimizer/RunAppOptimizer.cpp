// Showing the optimizer dialog, one at a time.
#include <utility>

#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/optimizer/AppOptimizerDialog.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The dialog that is open; null when none is.
AppOptimizerDialog* gOpenDialog = nullptr;

/// Keeps the open dialog known for as long as it runs.
class OpenDialogScope {
 public:
  explicit OpenDialogScope(AppOptimizerDialog& dialog) { gOpenDialog = &dialog; }
  ~OpenDialogScope() { gOpenDialog = nullptr; }
  OpenDialogScope(const OpenDialogScope&) = delete;
  OpenDialogScope& operator=(const OpenDialogScope&) = delete;
};

}  // namespace

void RunAppOptimizer(qelui::OS_Window* parent) {
  AtBoundary("qelsystemcompatibilityreport::RunAppOptimizer", [&] {
    qelui::NodeManager* const manager = qelui::NodeManager::Get();
    qelui::DrawSupplier* const drawSupplier =
        manager != nullptr ? manager->GetDefaultDrawSupplier() : nullptr;
    if (drawSupplier == nullptr) return;
    if (gOpenDialog != nullptr) {
      gOpenDialog->BringToFront();
      return;
    }
    AppOptimizerDialog dialog(*drawSupplier, parent);
    const OpenDialogScope scope(dialog);
    dialog.Run();
  });
}

}  // namespace qelsystemcompatibilityreport
