#include <charconv>
#include <cstddef>
#include <optional>
#include <system_error>

#include "platform/qelcore/Components.h"

namespace qelcore::utility {

namespace {

/// One decimal part: digits only, at most 32 bits.
std::optional<std::uint32_t> ReadPart(std::string_view text) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) {
    return std::nullopt;
  }
  return value;
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
    const std::size_t point = text.find('.');
    const std::optional<std::uint32_t> part = ReadPart(text.substr(0, point));
    if (!part) {
      return;
    }
    parts[index] = *part;
    if (point == std::string_view::npos) {
      break;
    }
    text.remove_prefix(point + 1);
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
  std::string text;
  for (std::size_t index = 0; index < numberCount; ++index) {
    text += index == 0 ? "" : ".";
    text += std::to_string(parts[index]);
  }
  if (numberCount < parts.size()) {
    text += numberCount == 0 ? "+" : ".+";
  }
  return text;
}

}  // namespace qelcore::utility
