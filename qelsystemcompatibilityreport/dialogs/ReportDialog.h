// Showing the report dialog, one at a time.
#pragma once

#include <string>
#include <vector>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "qelsystemcompatibilityreport/dialogs/SCRDialog.h"

namespace qelsystemcompatibilityreport {

/// Shows the report dialog over `parent`, which may be null, and returns when it is closed. While one is
/// open, brings that one to the front instead and returns at once. Without a toolkit that can draw nothing is
/// shown. What the toolkit throws passes through.
void RunReportDialog(qelui::OS_Window* parent, const std::u16string& applicationName,
                     std::vector<SCRIssue> issues, WriteReport writeReport, bool blocklistIsMissing);

}  // namespace qelsystemcompatibilityreport
