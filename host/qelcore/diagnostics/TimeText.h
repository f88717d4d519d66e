// Points in time as text.
#pragma once

#include <chrono>
#include <string>

#include "platform/qelcore/Export.h"

namespace qelcore::host {

/// The point in time in UTC, in the form of ISO 8601 with milliseconds: "2024-02-29T23:59:59.007Z". Fractions
/// of a millisecond are cut off.
[[nodiscard]] QELCORE_EXPORT std::string TimeText(std::chrono::system_clock::time_point time);

}  // namespace qelcore::host
