#include "tests/fuzz/support/PlainReport.h"

#include <array>

namespace fuzz {

using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRIssue;

namespace {

std::string Label(OSComponentType type) {
  constexpr std::array kLabels{"Operating System", "Video", "Audio", "Network", "File System", "Property"};
  return std::string("[") + kLabels.at(static_cast<std::size_t>(type)) + "] ";
}

std::string Described(int number, const SCRIssue& issue) {
  std::string text = std::to_string(number) + ".\t" + issue.GetInfoMessage() + "\n";
  if (!issue.GetInfoURL().empty()) text += "\tURL: " + issue.GetInfoURL() + "\n";
  return text + "\tID:  " + issue.GetID() + "\n";
}

}  // namespace

std::string PlainReport(const qelcore::utility::OSComponentRegistry& registry,
                        const std::vector<SCRIssue>& issues) {
  const std::string dashes = "\n" + std::string(76, '-') + "\n";
  std::string text = "System Components:\n\n";
  OSComponentType kind = OSComponentType::kOS;
  for (const auto& component : registry.GetAllComponents()) {
    if (component->GetType() != kind) text += dashes;
    kind = component->GetType();
    text += Label(kind) + component->GetName();
    text += kind == OSComponentType::kProperty ? " : " + component->GetPropertyValue()
                                               : " v." + component->GetVersion().ToString();
    text += '\n';
    int number = 0;
    for (const SCRIssue& issue : issues) {
      if (!issue.IsOSComponent(*component)) continue;
      if (number == 0) text += "ISSUES:\n";
      text += Described(++number, issue);
    }
  }
  bool isFirst = true;
  for (const SCRIssue& issue : issues) {
    if (issue.GetType() != OSComponentType::kFile) continue;
    if (isFirst) text += dashes;
    isFirst = false;
    text += Label(OSComponentType::kFile) + issue.GetName();
    if (issue.GetVersion()) text += " v." + issue.GetVersion().ToString();
    text += "\nISSUES:\n" + Described(1, issue);
  }
  text +=
      "\n" + std::string(76, '_') + "\n\n    Debug database settings:\n        All settings default value\n";
  return text;
}

}  // namespace fuzz
