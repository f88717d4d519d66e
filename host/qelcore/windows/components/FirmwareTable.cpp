#include "host/qelcore/windows/components/FirmwareTable.h"

#include <cstddef>

namespace qelcore::host::windows {
namespace {

// Windows puts four bytes of versions and a 32-bit length before the table.
constexpr std::size_t kHeaderSize = 8;

constexpr std::uint8_t kChassis = 3;
constexpr std::uint8_t kEndOfTable = 127;

std::uint8_t ByteAt(std::string_view bytes, std::size_t place) {
  return static_cast<std::uint8_t>(bytes[place]);
}

}  // namespace

std::optional<std::uint8_t> ReadChassisNumber(std::string_view table) {
  constexpr std::size_t kSmallestStructure = 4;
  constexpr std::size_t kKindPlace = 5;
  constexpr std::uint8_t kKindBits = 0x7F;  // the highest one tells of a lock
  table = table.substr(table.size() < kHeaderSize ? table.size() : kHeaderSize);
  while (table.size() >= kSmallestStructure) {
    const std::uint8_t type = ByteAt(table, 0);
    const std::size_t length = ByteAt(table, 1);
    if (type == kEndOfTable || length < kSmallestStructure || length > table.size()) return std::nullopt;
    if (type == kChassis && length > kKindPlace) {
      return static_cast<std::uint8_t>(ByteAt(table, kKindPlace) & kKindBits);
    }
    // The texts of the structure follow it, up to an empty one.
    const std::size_t end = table.find(std::string_view("\0\0", 2), length);
    if (end == std::string_view::npos) return std::nullopt;
    table.remove_prefix(end + 2);
  }
  return std::nullopt;
}

}  // namespace qelcore::host::windows
