// The blocklist's second warning: what a user is told after launch beside the report.
#pragma once

#include <string>

#include "platform/qelui.h"

namespace qelsystemcompatibilityreport {

/// Shows `secondWarning`, UTF-8, in an error message box over `parent`, when the last run left WARN or ERROR
/// issues, the text is not empty, the service is on and there is a toolkit that can draw. Else does nothing.
void ShowSecondWarning(const std::string& secondWarning, qelui::OS_Window* parent);

}  // namespace qelsystemcompatibilityreport
