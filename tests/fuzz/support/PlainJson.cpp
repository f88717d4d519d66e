#include "tests/fuzz/support/PlainJson.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace fuzz {

namespace {

constexpr int kDeepestLevel = 256;

/// Whether the bytes are UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
bool IsUTF8(std::string_view text) {
  std::size_t place = 0;
  while (place < text.size()) {
    const auto byte = static_cast<unsigned char>(text[place]);
    const std::size_t following = byte < 0x80 ? 0 : byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
    if ((byte >= 0x80 && byte < 0xC2) || byte > 0xF4 || place + following >= text.size()) return false;
    std::uint32_t character = following == 0 ? byte : byte & (0x3FU >> following);
    for (std::size_t index = 1; index <= following; ++index) {
      const auto next = static_cast<unsigned char>(text[place + index]);
      if ((next & 0xC0U) != 0x80) return false;
      character = character << 6 | (next & 0x3FU);
    }
    constexpr std::uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (character < kLeast[following] || character > 0x10FFFF) return false;
    if (character >= 0xD800 && character <= 0xDFFF) return false;
    place += following + 1;
  }
  return true;
}

class Grammar {
 public:
  explicit Grammar(std::string_view text) : mText(text) {}

  bool TakeDocument() {
    TakeBlanks();
    if (!TakeValue(0)) return false;
    TakeBlanks();
    return mPlace == mText.size();
  }

 private:
  [[nodiscard]] char Next() const { return mPlace < mText.size() ? mText[mPlace] : '\0'; }
  [[nodiscard]] bool IsDigitNext() const { return Next() >= '0' && Next() <= '9'; }

  bool Take(std::string_view expected) {
    if (!mText.substr(mPlace).starts_with(expected)) return false;
    mPlace += expected.size();
    return true;
  }

  void TakeBlanks() {
    while (mPlace < mText.size() && std::string_view(" \t\r\n").find(mText[mPlace]) != std::string_view::npos)
      ++mPlace;
  }

  bool TakeValue(int level) {
    switch (Next()) {
      case '{':
        return level < kDeepestLevel && TakeObject(level + 1);
      case '[':
        return level < kDeepestLevel && TakeArray(level + 1);
      case '"':
        return TakeText();
      case 't':
        return Take("true");
      case 'f':
        return Take("false");
      case 'n':
        return Take("null");
      default:
        return TakeNumber();
    }
  }

  bool TakeObject(int level) {
    Take("{");
    TakeBlanks();
    if (Take("}")) return true;
    for (;;) {
      TakeBlanks();
      if (!TakeText()) return false;
      TakeBlanks();
      if (!Take(":")) return false;
      TakeBlanks();
      if (!TakeValue(level)) return false;
      TakeBlanks();
      if (Take("}")) return true;
      if (!Take(",")) return false;
    }
  }

  bool TakeArray(int level) {
    Take("[");
    TakeBlanks();
    if (Take("]")) return true;
    for (;;) {
      TakeBlanks();
      if (!TakeValue(level)) return false;
      TakeBlanks();
      if (Take("]")) return true;
      if (!Take(",")) return false;
    }
  }

  bool TakeText() {
    if (!Take("\"")) return false;
    while (mPlace < mText.size()) {
      const char sign = mText[mPlace++];
      if (sign == '"') return true;
      if (static_cast<unsigned char>(sign) < 0x20) return false;
      if (sign == '\\' && !TakeEscape()) return false;
    }
    return false;
  }

  bool TakeEscape() {
    const char sign = Next();
    ++mPlace;
    if (sign != 'u')
      return sign != '\0' && std::string_view("\"\\/bfnrt").find(sign) != std::string_view::npos;
    const auto unit = TakeUnit();
    if (!unit || (*unit >= 0xDC00 && *unit <= 0xDFFF)) return false;
    if (*unit < 0xD800 || *unit > 0xDBFF) return true;
    if (!Take("\\u")) return false;
    const auto second = TakeUnit();
    return second && *second >= 0xDC00 && *second <= 0xDFFF;
  }

  std::optional<unsigned long> TakeUnit() {
    const std::string digits(mText.substr(std::min(mPlace, mText.size()), 4));
    if (digits.size() != 4 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
      return std::nullopt;
    mPlace += 4;
    return std::strtoul(digits.c_str(), nullptr, 16);
  }

  void TakeDigits() {
    while (IsDigitNext()) ++mPlace;
  }

  bool TakeNumber() {
    const std::size_t begin = mPlace;
    Take("-");
    if (!IsDigitNext()) return false;
    if (!Take("0")) TakeDigits();
    if (Take(".")) {
      if (!IsDigitNext()) return false;
      TakeDigits();
    }
    if (Take("e") || Take("E")) {
      if (!Take("+")) Take("-");
      if (!IsDigitNext()) return false;
      TakeDigits();
    }
    const std::string number(mText.substr(begin, mPlace - begin));
    return std::isfinite(std::strtod(number.c_str(), nullptr));
  }

  std::string_view mText;
  std::size_t mPlace = 0;
};

}  // namespace

bool IsPlainJson(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  return IsUTF8(text) && Grammar(text).TakeDocument();
}

}  // namespace fuzz
