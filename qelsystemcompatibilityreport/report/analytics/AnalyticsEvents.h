// The events that tell the host's analytics what the report found and what the user saw.
#pragma once

#include <string>

#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace qelsystemcompatibilityreport {

/// What a run did with its result. Do not renumber.
enum class ReportViewOutcome {
  kDisplayed = 0,            ///< "ui-displayed"
  kSuppressedBySetting = 1,  ///< "ui-suppressed-by-setting"
  kNotNeeded = 2,            ///< "ui-not-needed"
};

/// An issue that is new or goes on; `status` is "new" or "ongoing".
void LogIssueEvent(const SCRIssue& issue, const std::string& status);

/// The user opened the page about an issue.
void LogFixEvent(const SCRIssue& issue);

/// The user saved the report from its dialog.
void LogExportEvent();

/// A remembered issue that is gone. Nothing but its level and identifier is known.
void LogIssueResolvedEvent(SCRRuleErrorLevel level, const std::string& id);

/// The end of a run, with the sums of the process's statistics.
void LogReportDisplayEvent(bool isNotAtLaunch, ReportViewOutcome outcome);

/// The user allowed or forbade the display at launch.
void LogDisplaySettingEvent(bool allow);

/// The remembered state was deleted.
void LogReinitializeEvent();

/// The logger that sends an event for every new, ongoing and resolved issue.
[[nodiscard]] const ResolutionLogger& ReportAnalyticsLogger();

}  // namespace qelsystemcompatibilityreport
