#include "qelsystemcompatibilityreport/report/text/TextReportSections.h"

#include <algorithm>
#include <utility>

#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

namespace {

std::vector<TextReportSection>& Sections() {
  static std::vector<TextReportSection> sections;
  return sections;
}

}  // namespace

void RegisterTextReportCallback(TextReportCallback callback, DisplayPriority priority) {
  AtBoundary("qelsystemcompatibilityreport::RegisterTextReportCallback", [&] {
    Sections().push_back({std::move(callback), priority});
    std::stable_sort(Sections().begin(), Sections().end(),
                     [](const TextReportSection& left, const TextReportSection& right) {
                       return left.mPriority < right.mPriority;
                     });
  });
}

std::vector<TextReportSection> GetTextReportSections() {
  return Sections();
}

}  // namespace qelsystemcompatibilityreport
