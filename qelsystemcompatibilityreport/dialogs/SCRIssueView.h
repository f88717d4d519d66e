// The row of one issue in the report dialog.
#pragma once

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/dialogs/ReportDialogContent.h"
#include "qelsystemcompatibilityreport/dialogs/SCRBorderedSubView.h"

namespace qelsystemcompatibilityreport {

/// Shows a row inside `parent`: what it is about, the message, and a button that runs `action`. The button is
/// at least `buttonWidth` wide.
class SCRIssueView {
 public:
  SCRIssueView(qelui::View& parent, const ReportDialogRow& row, int buttonWidth, qelui::Action action);

  [[nodiscard]] qelui::View& GetView() { return mBorder.GetView(); }

 private:
  dialogutils::SCRBorderedSubView mBorder;
};

}  // namespace qelsystemcompatibilityreport
