#include "authoring/model/ControlCharacters.h"

#include <cstddef>

namespace authoring {

namespace {

constexpr std::string_view kWritten = "\b\f\n\r\t";
constexpr std::string_view kLetters = "bfnrt";

bool IsControlCharacter(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

}  // namespace

std::optional<char> FindControlCharacter(std::string_view text) {
  for (const char character : text) {
    if (IsControlCharacter(character)) return character;
  }
  return std::nullopt;
}

std::optional<char> FindControlCharacterOfExpression(std::string_view expression) {
  bool isInBrackets = false;
  for (std::size_t index = 0; index < expression.size(); ++index) {
    const char character = expression[index];
    const bool isBlank = character != '\b' && kWritten.find(character) != std::string_view::npos;
    if (IsControlCharacter(character) && !(isInBrackets && isBlank)) return character;
    if (character == '\\') {
      ++index;
    } else if (character == (isInBrackets ? ']' : '[')) {
      isInBrackets = !isInBrackets;
    }
  }
  return std::nullopt;
}

std::string NameOfControlCharacter(char character) {
  switch (character) {
    case '\b':
      return "a backspace";
    case '\f':
      return "a form feed";
    case '\n':
      return "a line feed";
    case '\r':
      return "a carriage return";
    case '\t':
      return "a tab";
    default:
      break;
  }
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto number = static_cast<unsigned char>(character);
  return std::string("the control character U+00") + kDigits[number / 16U] + kDigits[number % 16U];
}

std::string WithBackslashes(std::string_view text) {
  std::string written;
  for (const char character : text) {
    const std::size_t place = kWritten.find(character);
    if (place != std::string_view::npos) {
      written += '\\';
      written += kLetters[place];
    } else if (IsControlCharacter(character)) {
      return {};
    } else {
      written += character;
    }
  }
  return written;
}

}  // namespace authoring
