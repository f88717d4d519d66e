// Blocklists that the user names.
#pragma once

#include <any>
#include <string>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace app {

struct BlocklistFile {
  std::any mDocument;  ///< a dictionary
  qelsystemcompatibilityreport::SCRBlocklist mBlocklist;
};

/// Reads a blocklist, and throws `UserError` for one of which nothing, or not all, could be read. What a
/// download would refuse is noted on standard error.
[[nodiscard]] BlocklistFile ReadBlocklistFile(const std::string& path);

}  // namespace app
