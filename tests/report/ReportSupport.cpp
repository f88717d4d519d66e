#include "tests/report/ReportSupport.h"

#include <algorithm>
#include <filesystem>

#include "tests/support/Rules.h"

namespace testsupport {

using qelappsupport::analytics::SDMEvent;

namespace {

std::string TextsOf(const SDMEvent& event) {
  std::string joined;
  for (const std::string& text : event.GetTexts()) joined += (joined.empty() ? "" : "|") + text;
  return joined;
}

std::string ValueOf(const SDMEvent& event, const std::string& group, const std::string& key) {
  for (const SDMEvent::Item& item : event.GetItems()) {
    if (item.mGroup == group && item.mKey == key) return item.mValue;
  }
  return "(absent)";
}

std::string SummaryOf(const SDMEvent& event) {
  std::string texts = TextsOf(event);
  if (texts == "OPERATIONAL|Stability|info|system-compatibility-report-issue") {
    return ValueOf(event, "content", "status") + ' ' + ValueOf(event, "event", "error_type");
  }
  if (texts == "OPERATIONAL|Stability|success|system-compatibility-report") {
    return ValueOf(event, "qel", "ui_path_to_access") + ' ' + ValueOf(event, "ui", "view_type") + ' ' +
           ValueOf(event, "qel", "items_detected_count") + ' ' +
           ValueOf(event, "qel", "items_resolved_count");
  }
  return texts;
}

}  // namespace

std::string RuleText(const std::string& kind, const std::string& name, const std::string& level,
                     const std::string& message, const std::string& url) {
  std::string text = R"({"type":")" + kind + R"(","name":")" + name + R"(","error_level":")" + level +
                     R"(","info_message":")" + message;
  if (!url.empty()) text += R"(","info_url":")" + url;
  return text + R"("})";
}

std::vector<std::string> CardRules(const std::string& level, int count) {
  std::vector<std::string> rules;
  for (int number = 1; number <= count; ++number) {
    rules.push_back(RuleText("Video", "Card", level, level + ' ' + std::to_string(number)));
  }
  return rules;
}

std::string IDOf(const std::string& ruleText) {
  return ReadRule(ruleText).GetID();
}

std::vector<std::string> IDsOf(const std::vector<std::string>& ruleTexts) {
  std::vector<std::string> ids;
  ids.reserve(ruleTexts.size());
  for (const std::string& text : ruleTexts) ids.push_back(IDOf(text));
  return ids;
}

std::string BlocklistText(const std::vector<std::string>& ruleTexts, const std::string& secondWarning) {
  std::string text = R"({"blocklist_version":1,"blocklist":[)";
  for (std::size_t index = 0; index < ruleTexts.size(); ++index) {
    text += (index == 0 ? "" : ",") + ruleTexts[index];
  }
  text += ']';
  if (!secondWarning.empty()) text += R"(,"second_warning":")" + secondWarning + '"';
  return text + '}';
}

std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& lists) {
  std::vector<std::string> all;
  for (const auto& list : lists) all.insert(all.end(), list.begin(), list.end());
  return all;
}

qelsystemcompatibilityreport::SCRIssue Issue(const std::shared_ptr<qelcore::utility::OSComponent>& component,
                                             const std::string& ruleText) {
  return {*component, ReadRule(ruleText)};
}

std::vector<std::string> Lines(const SDMEvent& event) {
  std::vector<std::string> lines{TextsOf(event)};
  for (const SDMEvent::Item& item : event.GetItems()) {
    std::string line = item.mGroup + '/' + item.mKey;
    switch (item.mKind) {
      case SDMEvent::ItemKind::kValue:
        line += '=' + item.mValue;
        break;
      case SDMEvent::ItemKind::kNone:
        line += " is none" + item.mValue;
        break;
      case SDMEvent::ItemKind::kUnknown:
        line += " is unknown" + item.mValue;
        break;
    }
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> EventSummaries(const TestHost& host) {
  std::vector<std::string> summaries;
  for (const SDMEvent& event : host.mEvents) summaries.push_back(SummaryOf(event));
  return summaries;
}

std::string LastEvent(const TestHost& host) {
  return host.mEvents.empty() ? std::string() : SummaryOf(host.mEvents.back());
}

std::vector<std::string> Listing(const std::filesystem::path& directory) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
    paths.push_back(entry.path().lexically_relative(directory).generic_string() +
                    (entry.is_directory() ? "/" : ""));
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

}  // namespace testsupport
