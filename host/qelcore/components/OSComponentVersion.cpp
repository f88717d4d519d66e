#include <charconv>
#include <cstddef>
#include <optional>

#include "platform/qelcore/Components.h"

namespace qelcore::utility {

namespace {

/// Takes a decimal number of at most 32 bits from the beginning of `text`.
std::optional<std::uint32_t> TakePart(std::string_view& text) {
  std::uint64_t value = 0;
  std::size_t length = 0;
  for (; length < text.size() && text[length] >= '0' && text[length] <= '9'; ++length) {
    value = value * 10 + static_cast<std::uint64_t>(text[length] - '0');
    if (value > OSComponentVersion::kLargestPart) {
      return std::nullopt;
    }
  }
  if (length == 0) {
    return std::nullopt;
  }
  text.remove_prefix(length);
  return static_cast<std::uint32_t>(value);
}

}  // namespace

OSComponentVersion::OSComponentVersion(std::uint32_t w, std::uint32_t x, std::uint32_t y, std::uint32_t z)
    : mVersionW(w), mVersionX(x), mVersionY(y), mVersionZ(z), mIsValid(true) {}

OSComponentVersion::OSComponentVersion(std::string_view text) {
  std::array<std::uint32_t, 4> parts{};
  for (std::size_t index = 0;; ++index) {
    if (index == parts.size()) {
      return;
    }
    // Nothing after a "+" is read, so it must not be cut off at a point first.
    if (text.starts_with('+')) {
      for (; index < parts.size(); ++index) {
        parts[index] = kLargestPart;
      }
      break;
    }
    const std::optional<std::uint32_t> part = TakePart(text);
    if (!part) {
      return;
    }
    parts[index] = *part;
    if (text.empty()) {
      break;
    }
    if (text.front() != '.') {
      return;
    }
    text.remove_prefix(1);
  }
  *this = OSComponentVersion(parts[0], parts[1], parts[2], parts[3]);
}

std::string OSComponentVersion::ToString() const {
  if (!mIsValid) {
    return {};
  }
  const std::array<std::uint32_t, 4> parts{mVersionW, mVersionX, mVersionY, mVersionZ};
  std::size_t numberCount = parts.size();
  while (numberCount > 0 && parts[numberCount - 1] == kLargestPart) {
    --numberCount;
  }
  constexpr std::size_t kLongestText = sizeof "4294967295.4294967295.4294967295.4294967295" - 1;
  std::array<char, kLongestText> text{};
  char* end = text.data();
  for (std::size_t index = 0; index < numberCount; ++index) {
    if (index > 0) {
      *end++ = '.';
    }
    end = std::to_chars(end, text.data() + text.size(), parts[index]).ptr;
  }
  if (numberCount < parts.size()) {
    if (numberCount > 0) {
      *end++ = '.';
    }
    *end++ = '+';
  }
  return {text.data(), end};
}

}  // namespace qelcore::utility
