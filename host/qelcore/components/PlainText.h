// Small readings of text that comes from system files.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace qelcore::host::components {

/// The text without blanks, tabs and line ends at both sides.
[[nodiscard]] std::string_view Trim(std::string_view text);

/// A text as components may carry it, made from any bytes: up to the first zero byte, valid UTF-8 (malformed
/// sequences become U+FFFD), control characters turned into blanks, trimmed, and not longer than 256 UTF-16
/// units.
[[nodiscard]] std::string CleanText(std::string_view bytes);

/// A hexadecimal number with or without "0x"; nothing for every other text and above 32 bits.
[[nodiscard]] std::optional<std::uint32_t> ParseHexadecimal(std::string_view text);

/// A decimal number; nothing for every other text and above 64 bits.
[[nodiscard]] std::optional<std::uint64_t> ParseDecimal(std::string_view text);

/// The number in lower-case hexadecimal digits, at least four.
[[nodiscard]] std::string FourHexadecimalDigits(std::uint32_t number);

/// Orders texts with the runs of decimal digits in them compared as numbers: "card2" stands before "card10".
[[nodiscard]] bool NaturalLess(std::string_view left, std::string_view right);

/// Calls `see` for each line, without its end, until it returns false.
void ForEachLine(std::string_view text, const std::function<bool(std::string_view line)>& see);

}  // namespace qelcore::host::components
