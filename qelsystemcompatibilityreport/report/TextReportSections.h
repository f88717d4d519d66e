// The sections that modules registered for the text report.
#pragma once

#include <vector>

#include "qelsystemcompatibilityreport/TextReport.h"

namespace qelsystemcompatibilityreport {

struct TextReportSection {
  TextReportCallback mCallback;
  DisplayPriority mPriority;
};

/// The process's sections, in the order in which they are written. They are never removed.
[[nodiscard]] const std::vector<TextReportSection>& GetTextReportSections();

}  // namespace qelsystemcompatibilityreport
