#include "authoring/explain/ControlCharacters.h"

#include <algorithm>

namespace authoring {

namespace {

/// The letter that stands behind a backslash in JSON; 0 for characters that have none.
char LetterOf(char character) {
  switch (character) {
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 0;
  }
}

std::string CodeOf(char character) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(character);
  return {'U', '+', '0', '0', kDigits[code / 16U], kDigits[code % 16U]};
}

}  // namespace

std::string ControlCharacterHint(std::string_view subject, std::string_view text) {
  const auto found = std::find_if(text.begin(), text.end(), [](char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20U || code == 0x7FU;
  });
  if (found == text.end()) return {};
  std::string hint = "; " + std::string(subject) + " holds the control character " + CodeOf(*found);
  if (const char letter = LetterOf(*found); letter != 0) {
    hint += std::string(", which is what JSON means by \"\\") + letter + "\": write \"\\\\" + letter +
            "\" for a backslash and the letter";
  }
  return hint;
}

}  // namespace authoring
