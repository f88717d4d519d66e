#include "qelsystemcompatibilityreport/dialogs/ReportDialog.h"

#include <utility>

namespace qelsystemcompatibilityreport {

namespace {

/// The dialog that is open; null when none is.
SCRDialog* gOpenDialog = nullptr;

/// Keeps the open dialog known for as long as it runs.
class OpenDialogScope {
 public:
  explicit OpenDialogScope(SCRDialog& dialog) { gOpenDialog = &dialog; }
  ~OpenDialogScope() { gOpenDialog = nullptr; }
  OpenDialogScope(const OpenDialogScope&) = delete;
  OpenDialogScope& operator=(const OpenDialogScope&) = delete;
};

}  // namespace

void RunReportDialog(qelui::OS_Window* parent, const std::u16string& applicationName,
                     std::vector<SCRIssue> issues, WriteReport writeReport, bool blocklistIsMissing) {
  if (gOpenDialog != nullptr) {
    gOpenDialog->BringToFront();
    return;
  }
  qelui::NodeManager* const manager = qelui::NodeManager::Get();
  qelui::DrawSupplier* const drawSupplier = manager != nullptr ? manager->GetDefaultDrawSupplier() : nullptr;
  if (drawSupplier == nullptr) return;
  SCRDialog dialog(*drawSupplier, parent, applicationName, std::move(issues), std::move(writeReport),
                   blocklistIsMissing);
  const OpenDialogScope scope(dialog);
  dialog.RunModal();
}

}  // namespace qelsystemcompatibilityreport
