// The report dialog.
#pragma once

#include <functional>
#include <optional>
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
/// nothing to export. The first rows are there when the dialog opens, as many as a screen shows; a timer adds
/// the others a few at a time, so that a long list keeps nobody waiting.
class SCRDialog final : public SCRDialogBase {
 public:
  SCRDialog(qelui::DrawSupplier& drawSupplier, qelui::OS_Window* parent,
            const std::u16string& applicationName, std::vector<SCRIssue> issues, WriteReport writeReport,
            bool blocklistIsMissing);

 private:
  void AddHead(const ReportDialogContent& content);
  void AddList(const ReportDialogContent& content, qelui::DrawSupplier& drawSupplier);
  void AddButtons(const ReportDialogContent& content);
  void ShowFirstRows();
  void AddRow();
  void AddMoreRows();
  void OnTimer(qelui::TimerID timer) override;

  void OnIssueAction(const SCRIssue& issue);
  void OnExport();
  [[nodiscard]] bool Export(const qelcore::filesupport::File& file);

  std::u16string mTitle;
  std::vector<SCRIssue> mIssues;
  WriteReport mWriteReport;
  bool mIsSerious;
  qelui::ScrollView* mScrollView = nullptr;  ///< null without rows
  int mRowButtonWidth = 0;
  std::vector<ReportDialogRow> mRows;
  std::vector<SCRIssueView> mIssueViews;    ///< of the rows that are there, which are the first ones
  std::optional<qelui::TimerID> mRowTimer;  ///< while rows come
};

}  // namespace qelsystemcompatibilityreport
