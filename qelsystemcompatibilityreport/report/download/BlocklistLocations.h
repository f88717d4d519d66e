// Where blocklist files are, and which one a run reads.
//
//   installed    <application directory>/SystemCompatibilityReport/blocklist.en_US.json
//   downloaded   <preferences directory>/SystemCompatibilityReport/7.3/win/blocklist.en_US.json
//
// 7.3 is the application's version. Below the preferences directory's SystemCompatibilityReport, a directory
// "Deployed" stands for "7.3/win" when it exists, and a file "test/blocklist.json" for every downloaded one.
//
// Nothing here throws: a failure is logged, and the result is what was known by then, an empty file at worst.
#pragma once

#include <optional>
#include <string>

#include "platform/qelcore/Files.h"

namespace qelsystemcompatibilityreport {

/// An ASCII code such as "en_US"; nothing stands for the application's language.
using Language = std::optional<std::string>;

/// The installed blocklist's file. It need not exist, and nothing is created.
[[nodiscard]] qelcore::filesupport::File GetAppBlocklistFileLocation(const Language& language = {});

/// The downloaded blocklist's file. It need not exist; the directories that lead to it are created.
[[nodiscard]] qelcore::filesupport::File GetDownloadBlocklistFileLocation(const Language& language = {});

/// The file that a run reads: the first that exists of the downloaded and the installed one, in the
/// application's language, then in `language`, then in "en_US". When none exists, the installed one in the
/// last of these languages, which the caller then finds missing. The debug setting
/// "qelsystemcompatibilityreport.use_installed_blocklist" passes over the downloaded ones.
[[nodiscard]] qelcore::filesupport::File SelectBlocklistFile(const Language& language = {});

}  // namespace qelsystemcompatibilityreport
