#include "qelsystemcompatibilityreport/report/run/SecondWarning.h"

#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Dialogs.h"

namespace qelsystemcompatibilityreport {

void ShowSecondWarning(const std::string& secondWarning, qelui::OS_Window* parent) {
  // Asked again, because the report's dialog may have turned the service off, which also reads as no issues.
  if (!ReportsEnabled()) return;
  // FATAL and INFO issues do not count. That is intended.
  if (CountErrorIncompatibilities() == 0 && CountWarnIncompatibilities() == 0) return;
  if (secondWarning.empty() || FindDrawSupplier() == nullptr) return;
  qelui::SimpleErrorMessageBox(qelcore::Localise("$$$/qel/scr/SecondWarningTitle=Incompatibilities Found"),
                               qelcore::string::UTF8to16(secondWarning), parent);
}

}  // namespace qelsystemcompatibilityreport
