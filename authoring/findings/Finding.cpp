#include "authoring/findings/Finding.h"

#include <algorithm>

namespace authoring {

bool HasErrors(const Findings& findings) {
  return Count(findings, Severity::kError) > 0;
}

std::size_t Count(const Findings& findings, Severity severity) {
  return static_cast<std::size_t>(std::count_if(
      findings.begin(), findings.end(),
      [&](const Finding& finding) { return DescriptionOf(finding.mCode).mSeverity == severity; }));
}

}  // namespace authoring
