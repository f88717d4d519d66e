#include "authoring/model/Words.h"

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

std::string AsJson(std::string_view text) {
  return qelcore::json::Serialise(std::any(std::string(text)));
}

}  // namespace authoring
