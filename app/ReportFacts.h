// The facts of a report as a JSON document, beside its text.
//
// docs/formats/report-json.md describes the form.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace app {

/// Gathers the facts of the report that runs while it lives: what was remembered before, and which blocklist
/// is read. One at a time; takes the place of a file operation hook.
class ReportFacts {
 public:
  ReportFacts();
  ~ReportFacts();
  ReportFacts(const ReportFacts&) = delete;
  ReportFacts& operator=(const ReportFacts&) = delete;

  /// The document, once the report has run. Throws `UserError` when the machine or the blocklist cannot be
  /// read again.
  [[nodiscard]] std::string WriteJSON() const;

 private:
  using IDs = std::vector<std::string>;

  std::map<qelsystemcompatibilityreport::SCRRuleErrorLevel, IDs> mRemembered;
  std::string mBlocklistPath;  ///< empty as long as none was read
};

}  // namespace app
