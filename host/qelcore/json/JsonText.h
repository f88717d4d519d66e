// What the readers of JSON texts have in common.
#pragma once

#include <cstddef>
#include <string_view>

namespace qelcore::json {

/// Arrays and objects inside one another.
inline constexpr int kDeepestLevel = 256;

// A value takes up to a hundred times its text in memory, so both are bounded. A blocklist of 100,000 rules
// has about 22 MB and a million values.
inline constexpr std::size_t kLongestText = 67'108'864;
inline constexpr std::size_t kMostValues = 2'097'152;

inline constexpr std::string_view kWhiteSpace = " \t\n\r";

[[nodiscard]] inline std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kWhiteSpace);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kWhiteSpace) - begin + 1);
}

[[nodiscard]] inline std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  return text;
}

}  // namespace qelcore::json
