// The firmware's table of the machine (SMBIOS), as Windows hands it out.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qelcore::host::windows {

/// The number that the table gives the kind of housing; nothing when the bytes hold none. Reads nothing else,
/// since other entries hold serial numbers, and nothing outside the bytes. `table` begins with the header
/// that Windows puts before it.
[[nodiscard]] std::optional<std::uint8_t> ReadChassisNumber(std::string_view table);

}  // namespace qelcore::host::windows
