#include "platform/qelcore/Guid.h"

#include <cstddef>
#include <random>

namespace qelcore {

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::size_t kTextLength = 36;

bool IsHyphenPlace(std::size_t index) {
  return index == 8 || index == 13 || index == 18 || index == 23;
}

/// The digit's value, or -1.
int HexValue(char character) {
  if (character >= '0' && character <= '9') {
    return character - '0';
  }
  if (character >= 'a' && character <= 'f') {
    return character - 'a' + 10;
  }
  if (character >= 'A' && character <= 'F') {
    return character - 'A' + 10;
  }
  return -1;
}

}  // namespace

Guid Guid::FromUTF8String(std::string_view text) {
  if (text.size() != kTextLength) {
    return {};
  }
  Guid result;
  std::size_t digitCount = 0;
  for (std::size_t index = 0; index < kTextLength; ++index) {
    if (IsHyphenPlace(index)) {
      if (text[index] != '-') {
        return {};
      }
      continue;
    }
    const int digit = HexValue(text[index]);
    if (digit < 0) {
      return {};
    }
    std::uint8_t& byte = result.mBytes[digitCount / 2];
    byte = static_cast<std::uint8_t>(byte << 4 | digit);
    ++digitCount;
  }
  return result;
}

Guid Guid::CreateUnique() {
  std::random_device random;
  Guid result;
  for (std::uint8_t& byte : result.mBytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  // The marks of a random identifier: version 4, variant 1. They also keep it from being null.
  result.mBytes[6] = static_cast<std::uint8_t>((result.mBytes[6] & 0x0F) | 0x40);
  result.mBytes[8] = static_cast<std::uint8_t>((result.mBytes[8] & 0x3F) | 0x80);
  return result;
}

std::string Guid::AsUTF8String() const {
  std::string text;
  text.reserve(kTextLength);
  for (const std::uint8_t byte : mBytes) {
    if (IsHyphenPlace(text.size())) {
      text += '-';
    }
    text += kHexDigits[byte >> 4];
    text += kHexDigits[byte & 0x0F];
  }
  return text;
}

}  // namespace qelcore
