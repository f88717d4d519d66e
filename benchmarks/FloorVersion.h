// A version as two words, which is all that comparing needs.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace benchmarks {

struct FloorVersion {
  std::uint64_t mHigh = 0;
  std::uint64_t mLow = 0;
  bool mIsSet = false;

  [[nodiscard]] bool operator==(const FloorVersion& other) const {
    return mHigh == other.mHigh && mLow == other.mLow;
  }
  [[nodiscard]] bool operator<=(const FloorVersion& other) const {
    return mHigh != other.mHigh ? mHigh < other.mHigh : mLow <= other.mLow;
  }
  [[nodiscard]] std::uint32_t Part(int index) const {
    const std::uint64_t word = index < 2 ? mHigh : mLow;
    return static_cast<std::uint32_t>(index % 2 == 0 ? word >> 32 : word);
  }
  void SetPart(int index, std::uint32_t value) {
    std::uint64_t& word = index < 2 ? mHigh : mLow;
    word |= std::uint64_t{value} << (index % 2 == 0 ? 32 : 0);
  }
};

inline constexpr std::uint32_t kFloorLargestPart = 0xFFFFFFFFu;

[[nodiscard]] inline FloorVersion ReadFloorVersion(std::string_view text) {
  FloorVersion version;
  std::size_t place = 0;
  for (int part = 0; part < 4; ++part) {
    if (place < text.size() && text[place] == '+') {
      for (; part < 4; ++part) version.SetPart(part, kFloorLargestPart);
      version.mIsSet = true;
      return version;
    }
    std::uint64_t value = 0;
    const std::size_t begin = place;
    for (; place < text.size() && text[place] >= '0' && text[place] <= '9'; ++place) {
      value = value * 10 + static_cast<std::uint64_t>(text[place] - '0');
      if (value > kFloorLargestPart) return {};
    }
    if (place == begin) return {};
    version.SetPart(part, static_cast<std::uint32_t>(value));
    if (place == text.size()) {
      version.mIsSet = true;
      return version;
    }
    if (text[place++] != '.') return {};
  }
  return {};
}

inline void AppendFloorVersion(const FloorVersion& version, std::string& text) {
  if (!version.mIsSet) return;
  int count = 4;
  while (count > 0 && version.Part(count - 1) == kFloorLargestPart) --count;
  for (int part = 0; part < count; ++part) {
    char digits[10];
    if (part > 0) text += '.';
    text.append(digits, std::to_chars(digits, digits + sizeof digits, version.Part(part)).ptr);
  }
  if (count < 4) text += count == 0 ? "+" : ".+";
}

}  // namespace benchmarks
