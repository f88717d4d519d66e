// Blocklists that the user names.
#pragma once

#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace app {

/// Reads a blocklist. Throws `UserError` that says what is wrong when nothing, or not all, of it can be read.
/// What a download of it would be refused for is said on standard error.
[[nodiscard]] qelsystemcompatibilityreport::SCRBlocklist ReadBlocklist(const std::string& path);

/// The same, for the rules of the list, in its order. They have taken over the default texts, so that their
/// identifiers are those of their issues.
[[nodiscard]] std::vector<qelsystemcompatibilityreport::SCRRule> ReadBlocklistRules(const std::string& path);

}  // namespace app
