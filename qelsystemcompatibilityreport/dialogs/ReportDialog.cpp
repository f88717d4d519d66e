#include "qelsystemcompatibilityreport/dialogs/ReportDialog.h"

#include <utility>

#include "qelsystemcompatibilityreport/common/Dialogs.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The dialog that is open; null when none is.
SCRDialog* gOpenDialog = nullptr;

}  // namespace

void RunReportDialog(qelui::OS_Window* parent, const std::u16string& applicationName,
                     std::vector<SCRIssue> issues, WriteReport writeReport, bool blocklistIsMissing) {
  if (gOpenDialog != nullptr) {
    gOpenDialog->BringToFront();
    return;
  }
  qelui::DrawSupplier* const drawSupplier = FindDrawSupplier();
  if (drawSupplier == nullptr) return;
  SCRDialog dialog(*drawSupplier, parent, applicationName, std::move(issues), std::move(writeReport),
                   blocklistIsMissing);
  const OpenDialogScope scope(gOpenDialog, dialog);
  dialog.RunModal();
}

}  // namespace qelsystemcompatibilityreport
