#include "qelsystemcompatibilityreport/report/analytics/AnalyticsEvents.h"

#include <utility>

#include "platform/qelappsupport.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"

namespace qelsystemcompatibilityreport {

namespace {

using qelappsupport::analytics::ErrorHandlingPolicy;
using qelappsupport::analytics::Privacy;
using qelappsupport::analytics::SDMEvent;
using qelappsupport::analytics::SDMUsageLogger;

/// An event under construction, with the policy and privacy that all events of this library have.
class Event {
 public:
  Event(const char* workflow, const char* category, const char* subtype, const char* name)
      : mEvent(workflow, category, subtype, name, ErrorHandlingPolicy::kDefault) {}

  void Add(const char* group, const char* key, std::string value) {
    mEvent.AddSDMData(group, key, std::move(value), Privacy::kDefault);
  }
  void AddNone(const char* group, const char* key) { mEvent.AddSDMDataNone(group, key); }
  void AddUnknown(const char* group, const char* key) { mEvent.AddSDMDataUnknown(group, key); }
  void Send() const { SDMUsageLogger::LogEvent(mEvent); }

 private:
  SDMEvent mEvent;
};

Event IssueEvent() {
  return {"OPERATIONAL", "Stability", "info", "system-compatibility-report-issue"};
}

/// The items that follow the link: a property has a value, everything else a version.
void AddValueOrVersion(Event& event, const SCRIssue& issue) {
  if (issue.GetType() == OSComponentType::kProperty) {
    event.Add("event", "value", issue.GetPropertyValue());
    event.AddNone("content", "mimetype");
    event.AddNone("qel", "content_version");
    return;
  }
  event.AddNone("event", "value");
  // The version is sent under both keys. That is intended.
  event.Add("content", "mimetype", issue.GetVersion().ToString());
  event.Add("qel", "content_version", issue.GetVersion().ToString());
}

void AddIssue(Event& event, const SCRIssue& issue, const std::string& status) {
  event.Add("content", "status", status);
  event.Add("content", "type", qelcore::utility::ComponentTypeToString(issue.GetType()));
  event.Add("content", "name", issue.GetPIISafeName());
  event.Add("content", "id", issue.GetID());
  event.Add("event", "error_type", SCRRule::ErrorLevelToString(issue.GetErrorLevel()));
  event.Add("event", "error_desc", issue.GetInfoMessage());
  event.Add("event", "url", issue.GetInfoURL());
  AddValueOrVersion(event, issue);
}

const char* ViewType(ReportViewOutcome outcome) {
  switch (outcome) {
    case ReportViewOutcome::kDisplayed:
      return "ui-displayed";
    case ReportViewOutcome::kSuppressedBySetting:
      return "ui-suppressed-by-setting";
    case ReportViewOutcome::kNotNeeded:
      break;
  }
  return "ui-not-needed";
}

}  // namespace

void LogIssueEvent(const SCRIssue& issue, const std::string& status) {
  Event event = IssueEvent();
  AddIssue(event, issue, status);
  event.Send();
}

void LogFixEvent(const SCRIssue& issue) {
  Event event("OPERATIONAL", "Stability", "continue", "system-compatibility-report-fix");
  AddIssue(event, issue, "ongoing");
  event.Send();
}

void LogExportEvent() {
  Event("OPERATIONAL", "Stability", "success", "export-system-compatibility-report").Send();
}

void LogIssueResolvedEvent(SCRRuleErrorLevel level, const std::string& id) {
  Event event = IssueEvent();
  event.Add("content", "status", "resolved");
  event.Add("content", "id", id);
  event.Add("event", "error_type", SCRRule::ErrorLevelToString(level));
  event.AddUnknown("content", "type");
  event.AddUnknown("content", "name");
  event.AddUnknown("content", "mimetype");
  event.AddUnknown("qel", "content_version");
  event.AddUnknown("event", "error_desc");
  event.AddUnknown("event", "url");
  event.AddUnknown("event", "value");
  event.Send();
}

void LogReportDisplayEvent(bool isNotAtLaunch, ReportViewOutcome outcome) {
  Event event("OPERATIONAL", "Stability", "success", "system-compatibility-report");
  event.Add("qel", "ui_path_to_access", isNotAtLaunch ? "click:unknown-value" : "via:launch");
  event.Add("ui", "view_type", ViewType(outcome));
  const ReportStatistics& statistics = ReportStatistics::Instance();
  event.Add("qel", "items_detected_count", std::to_string(statistics.SumOfRemaining()));
  event.Add("qel", "items_resolved_count", std::to_string(statistics.SumOfResolved()));
  event.Send();
}

void LogDisplaySettingEvent(bool allow) {
  Event("APP", "Settings", allow ? "enable" : "disable", "system-compatibility-report-display").Send();
}

void LogReinitializeEvent() {
  Event("OPERATIONAL", "Stability", "apply", "reinitialize-system-compatibility-report").Send();
}

const ResolutionLogger& ReportAnalyticsLogger() {
  static const ResolutionLogger logger([](const SCRIssue& issue) { LogIssueEvent(issue, "new"); },
                                       [](const SCRIssue& issue) { LogIssueEvent(issue, "ongoing"); },
                                       LogIssueResolvedEvent);
  return logger;
}

}  // namespace qelsystemcompatibilityreport
