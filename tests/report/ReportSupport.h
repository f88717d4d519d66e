// Blocklists, issues and events for the tests of the report service.
#pragma once

#include <string>
#include <vector>

#include "platform/qelappsupport.h"
#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "tests/support/TestHost.h"

namespace testsupport {

/// The JSON text of a rule that hits a component of this kind and name, whatever its version.
[[nodiscard]] std::string RuleText(const std::string& kind, const std::string& name, const std::string& level,
                                   const std::string& message, const std::string& url = {});

/// The rules "<level> 1" to "<level> <count>", each of which hits the video component "Card".
[[nodiscard]] std::vector<std::string> CardRules(const std::string& level, int count);

/// The identifier by which an issue of the rule is remembered.
[[nodiscard]] std::string IDOf(const std::string& ruleText);
[[nodiscard]] std::vector<std::string> IDsOf(const std::vector<std::string>& ruleTexts);

/// The text of a blocklist with these rules, and with a second warning unless that is empty.
[[nodiscard]] std::string BlocklistText(const std::vector<std::string>& ruleTexts,
                                        const std::string& secondWarning = {});

/// The rules of all lists, one list after the other.
[[nodiscard]] std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& lists);

/// The issue that the rule makes of the component.
[[nodiscard]] qelsystemcompatibilityreport::SCRIssue Issue(
    const std::shared_ptr<qelcore::utility::OSComponent>& component, const std::string& ruleText);

/// An event as lines: its four texts joined by "|", then each item as "group/key=value", "group/key is none"
/// or "group/key is unknown".
[[nodiscard]] std::vector<std::string> Lines(const qelappsupport::analytics::SDMEvent& event);

/// Every event in its order, on one line: for an issue its status and level, such as "new WARN"; for the end
/// of a run the values of its items, such as "via:launch ui-displayed 3 0"; for any other its texts joined by
/// "|".
[[nodiscard]] std::vector<std::string> EventSummaries(const TestHost& host);

/// The last line of `EventSummaries`; empty when there is none.
[[nodiscard]] std::string LastEvent(const TestHost& host);

/// What is in a directory, at any depth, as sorted paths below it. Directories end with a slash.
[[nodiscard]] std::vector<std::string> Listing(const std::filesystem::path& directory);

}  // namespace testsupport
