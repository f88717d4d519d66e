#include "host/qelcore/files/Paths.h"

#include <filesystem>

#include "platform/qelcore/Text.h"

namespace qelcore::host {

namespace {

/// The standard library's form of the path, without separators at its end.
std::filesystem::path ToPath(std::u16string_view path) {
  const std::string text = string::UTF16to8(path);
  std::filesystem::path result(std::u8string(text.begin(), text.end()));
  while (result.has_relative_path() && !result.has_filename()) {
    result = result.parent_path();
  }
  return result;
}

std::u16string ToText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return string::UTF8to16(std::string(text.begin(), text.end()));
}

bool IsSeparator(char16_t character) {
  return character == u'/' || character == static_cast<char16_t>(std::filesystem::path::preferred_separator);
}

}  // namespace

std::u16string LastName(std::u16string_view path) {
  return ToText(ToPath(path).filename());
}

std::u16string ParentPath(std::u16string_view path) {
  return ToText(ToPath(path).parent_path());
}

bool IsRootPath(std::u16string_view path) {
  return !ToPath(path).has_relative_path();
}

std::u16string JoinPath(std::u16string_view directory, std::u16string_view name) {
  std::u16string result(directory);
  if (!result.empty() && !IsSeparator(result.back())) {
    result += static_cast<char16_t>(std::filesystem::path::preferred_separator);
  }
  result += name;
  return result;
}

}  // namespace qelcore::host
