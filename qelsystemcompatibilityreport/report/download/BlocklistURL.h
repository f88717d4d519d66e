// Where on a server the downloaded blocklist's place is mirrored.
#pragma once

#include <string>

#include "platform/qelcore/Files.h"

namespace qelsystemcompatibilityreport {

/// The URL below `base` that mirrors the file's place from its "SystemCompatibilityReport" directory down, in
/// lower case but for the file's own name. Empty, and traced, for a file in a directory "test" and for one
/// that is in no such directory. UTF-8.
[[nodiscard]] std::string BlocklistURL(const std::string& base, const qelcore::filesupport::File& file);

}  // namespace qelsystemcompatibilityreport
