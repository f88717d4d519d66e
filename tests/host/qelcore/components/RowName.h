// Names for the rows of test tables.
#pragma once

#include <cctype>
#include <string>
#include <string_view>

namespace testsupport {

/// The text in a form that can stand in a test's name: whatever is not a letter, a digit or plain punctuation
/// becomes "_", and no more than 100 characters are left.
[[nodiscard]] inline std::string RowName(std::string_view text) {
  std::string name;
  for (const char character : text.substr(0, 100)) {
    const bool isPlain = std::isalnum(static_cast<unsigned char>(character)) != 0 ||
                         std::string_view(".-+:/=").find(character) != std::string_view::npos;
    name += isPlain ? character : '_';
  }
  return name;
}

}  // namespace testsupport
