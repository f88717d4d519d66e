#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "platform/qelcore/Components.h"

namespace qelcore::utility {

OSComponentVersion::OSComponentVersion(std::uint32_t w, std::uint32_t x, std::uint32_t y, std::uint32_t z)
    : mVersionW(w), mVersionX(x), mVersionY(y), mVersionZ(z), mIsValid(true) {}

OSComponentVersion::OSComponentVersion(std::string_view text) {
  std::array<std::uint32_t, 4> parts{};
  const char* next = text.data();
  const char* const end = next + text.size();
  for (auto part = parts.begin();; ++part) {
    if (part == parts.end()) {
      return;
    }
    // Nothing after a "+" is read.
    if (next != end && *next == '+') {
      std::fill(part, parts.end(), kLargestPart);
      break;
    }
    const char* const begin = next;
    std::uint64_t value = 0;
    for (; next != end; ++next) {
      const std::uint32_t digit = static_cast<unsigned char>(*next) - std::uint32_t{'0'};
      if (digit > 9) {
        break;
      }
      value = value * 10 + digit;
      if (value > kLargestPart) {
        return;
      }
    }
    if (next == begin) {
      return;
    }
    *part = static_cast<std::uint32_t>(value);
    if (next == end) {
      break;
    }
    if (*next++ != '.') {
      return;
    }
  }
  *this = OSComponentVersion(parts[0], parts[1], parts[2], parts[3]);
}

std::string OSComponentVersion::ToString() const {
  std::array<char, kLongestText> room{};
  return {room.data(), WriteTo(room.data())};
}

char* OSComponentVersion::WriteTo(char* room) const {
  if (!mIsValid) {
    return room;
  }
  const std::array<std::uint32_t, 4> parts{mVersionW, mVersionX, mVersionY, mVersionZ};
  std::size_t numberCount = parts.size();
  while (numberCount > 0 && parts[numberCount - 1] == kLargestPart) {
    --numberCount;
  }
  char* const end = room + kLongestText;
  for (std::size_t index = 0; index < numberCount; ++index) {
    if (index > 0) {
      *room++ = '.';
    }
    room = std::to_chars(room, end, parts[index]).ptr;
  }
  if (numberCount < parts.size()) {
    if (numberCount > 0) {
      *room++ = '.';
    }
    *room++ = '+';
  }
  return room;
}

}  // namespace qelcore::utility
