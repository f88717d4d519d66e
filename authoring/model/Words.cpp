#include "authoring/model/Words.h"

#include <algorithm>
#include <any>

#include "platform/qelcore/Json.h"

namespace authoring {

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 100;
  std::size_t length = text.size();
  if (length > kLongest) {
    // Not within a character of several bytes.
    length = kLongest;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  }
  return '"' + std::string(text.substr(0, length)) + (length < text.size() ? "...\"" : "\"");
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  const auto lower = [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char first, char second) { return lower(first) == lower(second); });
}

std::string AsJson(std::string_view text) {
  return qelcore::json::Serialise(std::any(std::string(text)));
}

}  // namespace authoring
