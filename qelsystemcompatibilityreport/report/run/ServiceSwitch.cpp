// The master switch.
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace qelsystemcompatibilityreport {

namespace {

bool gReportsAreEnabled = true;

}  // namespace

void EnableReports(bool enable) {
  gReportsAreEnabled = enable;
}

bool ReportsEnabled() {
  return gReportsAreEnabled;
}

}  // namespace qelsystemcompatibilityreport
