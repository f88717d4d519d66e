#include "host/qelcore/windows/WideText.h"

#include "platform/qelcore/Text.h"

namespace qelcore::host {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wide characters are UTF-16 units on this system");

std::wstring ToWide(std::string_view text) {
  const std::u16string units = string::UTF8to16(text);
  return {units.begin(), units.end()};
}

std::optional<std::wstring> ToWideExactly(std::string_view text) {
  std::wstring wide = ToWide(text);
  // What was malformed does not come back as it was.
  if (text.find('\0') != std::string_view::npos || ToNarrow(wide) != text) {
    return std::nullopt;
  }
  return wide;
}

std::string ToNarrow(std::wstring_view text) {
  return string::UTF16to8(std::u16string(text.begin(), text.end()));
}

}  // namespace qelcore::host
