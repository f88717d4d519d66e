// The report dialog.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/qelcore/Files.h"
#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "qelsystemcompatibilityreport/dialogs/ReportDialogContent.h"
#include "qelsystemcompatibilityreport/dialogs/SCRIssueView.h"

namespace qelsystemcompatibilityreport {

/// Writes the text report into a file.
using WriteReport = std::function<void(const qelcore::filesupport::File&)>;

/// The base of the report dialog: a modal dialog of the toolkit, and nothing more.
class SCRDialogBase : public qelui::UI_Dialog {
 public:
  using UI_Dialog::UI_Dialog;
};

/// Lists issues, opens their links, and exports the report. An empty `writeReport` means that there is
/// nothing to export.
class SCRDialog final : public SCRDialogBase {
 public:
  SCRDialog(qelui::DrawSupplier& drawSupplier, qelui::OS_Window* parent,
            const std::u16string& applicationName, std::vector<SCRIssue> issues, WriteReport writeReport,
            bool blocklistIsMissing);

 private:
  void AddHead(const ReportDialogContent& content);
  void AddRows(const ReportDialogContent& content, qelui::DrawSupplier& drawSupplier);
  void AddButtons(const ReportDialogContent& content);
  void ShowRows();

  void OnIssueAction(const SCRIssue& issue);
  void OnExport();
  [[nodiscard]] bool Export(const qelcore::filesupport::File& file);

  std::u16string mTitle;
  std::vector<SCRIssue> mIssues;
  WriteReport mWriteReport;
  bool mIsSerious;
  qelui::ScrollView* mScrollView = nullptr;
  std::vector<SCRIssueView> mIssueViews;
};

}  // namespace qelsystemcompatibilityreport
