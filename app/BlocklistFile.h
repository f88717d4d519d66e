// Blocklists that the user names.
#pragma once

#include <any>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace app {

// Each of these throws `UserError` for a list of which nothing, or not all, could be read. What a download
// would refuse is noted on standard error.

[[nodiscard]] qelsystemcompatibilityreport::SCRBlocklist ReadBlocklist(const std::string& path);

struct BlocklistFile {
  std::any mDocument;  ///< a dictionary
  qelsystemcompatibilityreport::SCRBlocklist mBlocklist;
};

/// The list with its document.
[[nodiscard]] BlocklistFile ReadBlocklistFile(const std::string& path);

/// The rules of the list, in its order. They have taken over the default texts, so that their identifiers are
/// those of their issues.
[[nodiscard]] std::vector<qelsystemcompatibilityreport::SCRRule> ReadBlocklistRules(const std::string& path);

}  // namespace app
