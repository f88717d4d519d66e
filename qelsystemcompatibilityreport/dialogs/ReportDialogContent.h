// What the report dialog shows, as a value.
#pragma once

#include <string>
#include <vector>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace qelsystemcompatibilityreport {

/// The row of one issue. All texts are UTF-16 and meant to be shown as they are.
struct ReportDialogRow {
  qelui::IconKind mIcon = qelui::IconKind::kInformation;  ///< of the issue's level
  std::u16string mLevel;                                  ///< "INFO", "WARN", "ERROR" or "FATAL"
  std::u16string mHeading;                                ///< such as "Unsupported Video Driver"
  std::u16string mComponent;      ///< the kind's label, the name, and the version or value
  std::u16string mMessage;        ///< the issue's message
  std::u16string mActionCaption;  ///< "Fix..." or "Info..."
  /// What a screen reader calls the row and its button. Several issues may be about one component, so the
  /// names hold the row's number, too.
  std::u16string mAccessibleName;
  std::u16string mActionAccessibleName;

  friend bool operator==(const ReportDialogRow&, const ReportDialogRow&) = default;
};

struct ReportDialogContent {
  std::u16string mCaption;  ///< of the window: the application's name
  std::u16string mTitle;
  std::u16string mIconName;  ///< what a screen reader calls the icon beside the title
  bool mIsSerious = false;   ///< whether an issue of level WARN or higher is among them
  std::u16string mNote;      ///< about serious issues; shown only with such
  std::u16string mInstead;   ///< shown in place of rows; empty when there are rows
  std::vector<ReportDialogRow> mRows;
  std::u16string mExportCaption;
  std::u16string mOkCaption;
  std::u16string mContinueCaption;
  /// The captions that a row's button may have; it is wide enough for each.
  std::vector<std::u16string> mActionCaptions;

  friend bool operator==(const ReportDialogContent&, const ReportDialogContent&) = default;
};

/// The colour of the title when an issue is serious.
inline constexpr qelui::Color kWarningColor{0.9607843, 0.2352941, 0.2352941, 1.0};

/// The content for these issues, which are sorted. Without a blocklist no rows are shown.
[[nodiscard]] ReportDialogContent MakeReportDialogContent(const std::u16string& applicationName,
                                                          const std::vector<SCRIssue>& issues,
                                                          bool blocklistIsMissing);

}  // namespace qelsystemcompatibilityreport
