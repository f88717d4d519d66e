// Version numbers out of the texts that kernels, drivers and packages call their versions.
#pragma once

#include <string>
#include <string_view>

#include "platform/qelcore/Components.h"

namespace qelcore::host::components {

/// The first numbers of the text, at most four, joined by ".", "-" or "_". Reading stops at anything else. A
/// "v" may stand before the first number. Gives the empty version when there is no number; a number above 32
/// bits and what follows it are left out.
///
///   "5.15.0-91-generic"    5.15.0.91
///   "6.6.67-gentoo"        6.6.67.0
///   "535.113.01"           535.113.1.0
///   "3.2.6-k"              3.2.6.0
///   "N/A"                  empty
[[nodiscard]] utility::OSComponentVersion ReadVersion(std::string_view text);

/// What stands between the epoch and the revision of a package's version: "1:23.2.1-1ubuntu3" has "23.2.1".
[[nodiscard]] std::string_view UpstreamVersion(std::string_view packageVersion);

}  // namespace qelcore::host::components
