// The service as scripts see it: an object "SystemCompatibilityReport" with one method.
//
//   SystemCompatibilityReport.CreateReport("report.txt")    -- in a script
//
// The class is made known to the host's scripting library when this library is loaded.
#pragma once

#include <string>

#include "platform/qelscripting.h"
#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

class QELSCR_EXPORT SystemCompatibilityReportObject final : public qelscripting::ScriptObject {
 public:
  SystemCompatibilityReportObject();
  ~SystemCompatibilityReportObject() override;

  /// "SystemCompatibilityReport".
  [[nodiscard]] static std::string GetClassname();

  /// "Provide system compatibility report generation".
  [[nodiscard]] static std::string GetDescription();

  /// Adds the namespace and the method to the scripting library's current definition; without one does
  /// nothing.
  static void DefineObject();

 private:
  /// Writes the text report to `filePath`, as `RunReportToFile` does, under the application's own name.
  /// Returns true in every case: a failure shows in the trace alone.
  bool CreateReport(const std::u16string& filePath);
};

}  // namespace qelsystemcompatibilityreport
