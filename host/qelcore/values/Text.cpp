#include "platform/qelcore/Text.h"

#include <utf8.h>

#include <iterator>
#include <locale>

namespace qelcore {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

std::u16string string::UTF8to16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  if (utf8::is_valid(text.begin(), text.end())) {
    utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(result));
  } else {
    const std::string repaired = utf8::replace_invalid(text, kReplacement);
    utf8::unchecked::utf8to16(repaired.begin(), repaired.end(), std::back_inserter(result));
  }
  return result;
}

std::string string::UTF16to8(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    char32_t character = text[index];
    if (IsHighSurrogate(text[index]) && index + 1 < text.size() && IsLowSurrogate(text[index + 1])) {
      ++index;
      character = 0x10000 + ((character - 0xD800) << 10) + (char32_t{text[index]} - 0xDC00);
    } else if (IsHighSurrogate(text[index]) || IsLowSurrogate(text[index])) {
      character = kReplacement;
    }
    utf8::unchecked::append(character, std::back_inserter(result));
  }
  return result;
}

UTF8StringStream::UTF8StringStream() {
  imbue(std::locale::classic());
}

UTF8StringStream::~UTF8StringStream() = default;

}  // namespace qelcore
