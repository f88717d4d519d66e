#include "authoring/output/Outputs.h"

namespace authoring {

std::vector<std::string> DescribeAsText(const Finding& finding) {
  const CodeDescription& description = DescriptionOf(finding.mCode);
  std::string line = finding.mFile + ':';
  if (finding.mPlace.mLine > 0) {
    line += std::to_string(finding.mPlace.mLine) + ':' + std::to_string(finding.mPlace.mColumn) + ':';
  }
  line += ' ';
  line += SeverityToString(description.mSeverity);
  line += ' ';
  line += description.mID;
  line += ": ";
  if (finding.mRule) {
    line += "rule " + std::to_string(*finding.mRule);
    if (!finding.mRuleName.empty()) line += " \"" + finding.mRuleName + '"';
    line += ": ";
  }
  std::vector<std::string> lines = {line + finding.mWhat};
  if (!finding.mMend.empty()) lines.push_back("    " + finding.mMend);
  return lines;
}

std::string Summarise(const Findings& findings) {
  std::string summary;
  for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kNote}) {
    const std::size_t count = Count(findings, severity);
    if (count == 0) continue;
    summary += (summary.empty() ? "" : ", ") + std::to_string(count) + ' ';
    summary += SeverityToString(severity);
    summary += count == 1 ? "" : "s";
  }
  return summary.empty() ? "no findings" : summary;
}

}  // namespace authoring
