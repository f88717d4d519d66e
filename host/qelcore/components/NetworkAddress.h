// Network and e-mail addresses inside a text.
#pragma once

#include <cstddef>
#include <string_view>

namespace qelcore::host {

/// The length of the address that begins at `place` of `text`, 0 when none does. An address is one of
///
/// - a MAC address: six or more pairs of hexadecimal digits, all joined by ":" or all by "-";
/// - an IPv4 address: four decimal numbers up to 255 joined by points;
/// - an IPv6 address in any of its text forms, with or without a zone;
/// - an e-mail address whose domain ends in letters.
///
/// It must stand alone: the characters round it belong to no longer word or number.
[[nodiscard]] std::size_t AddressLengthAt(std::string_view text, std::size_t place);

/// Whether the character belongs to a word: a letter or digit, or part of a character outside ASCII.
[[nodiscard]] bool IsWordCharacter(char character);

}  // namespace qelcore::host
