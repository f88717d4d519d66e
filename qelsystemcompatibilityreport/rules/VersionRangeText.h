// The text form of a range of versions, read.
#pragma once

#include <string_view>

#include "qelsystemcompatibilityreport/VersionRange.h"

namespace qelsystemcompatibilityreport {

/// Reads the text as the constructor of `VersionRange` does, without a copy where it holds no blanks.
[[nodiscard]] VersionRange ReadVersionRange(std::string_view text);

}  // namespace qelsystemcompatibilityreport
