#include "authoring/output/Outputs.h"

#include <string_view>

namespace authoring {

namespace {

/// The text on one line: a control character of a list becomes visible.
std::string OnOneLine(const std::string& text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string line;
  for (const char character : text) {
    const auto number = static_cast<unsigned char>(character);
    if (number >= 0x20 && number != 0x7F) {
      line += character;
    } else {
      line += std::string("<U+00") + kDigits[number / 16U] + kDigits[number % 16U] + '>';
    }
  }
  return line;
}

}  // namespace

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
  std::vector<std::string> lines = {OnOneLine(line + finding.mWhat)};
  if (!finding.mMend.empty()) lines.push_back("    " + OnOneLine(finding.mMend));
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
