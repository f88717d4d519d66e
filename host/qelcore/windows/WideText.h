// Text for the system, which takes UTF-16 in wide characters.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qelcore::host {

/// The text as the system takes it. Malformed sequences become U+FFFD.
[[nodiscard]] std::wstring ToWide(std::string_view text);

/// The text as the system takes it; nothing when it is not UTF-8 or holds a null character, at which the
/// system would stop reading.
[[nodiscard]] std::optional<std::wstring> ToWideExactly(std::string_view text);

/// UTF-8. Unpaired surrogates become U+FFFD.
[[nodiscard]] std::string ToNarrow(std::wstring_view text);

}  // namespace qelcore::host
