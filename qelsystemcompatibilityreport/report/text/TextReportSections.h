// The sections that modules registered for the text report.
#pragma once

#include <vector>

#include "qelsystemcompatibilityreport/TextReport.h"

namespace qelsystemcompatibilityreport {

struct TextReportSection {
  TextReportCallback mCallback;
  DisplayPriority mPriority;
};

/// The process's sections, in the order in which they are written. They are never removed. A copy, so that a
/// section which registers another one while it is written does no harm; the new one is heard from the next
/// report on.
[[nodiscard]] std::vector<TextReportSection> GetTextReportSections();

}  // namespace qelsystemcompatibilityreport
