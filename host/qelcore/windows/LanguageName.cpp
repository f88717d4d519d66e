#include "host/qelcore/windows/LanguageName.h"

#include <algorithm>

namespace qelcore::host {

namespace {

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Two letters, or the three digits of a part of the world. Scripts have four letters, variants more.
bool IsRegion(std::string_view part) {
  return (part.size() == 2 && std::all_of(part.begin(), part.end(), IsLetter)) ||
         (part.size() == 3 && std::all_of(part.begin(), part.end(), IsDigit));
}

}  // namespace

std::string LanguageFromName(std::string_view name) {
  const std::size_t end = name.find_first_of("-_");
  std::string language(name.substr(0, end));
  for (std::size_t place = end; place != std::string_view::npos;) {
    const std::size_t next = name.find_first_of("-_", place + 1);
    const std::string_view part =
        name.substr(place + 1, next == std::string_view::npos ? next : next - place - 1);
    if (IsRegion(part)) {
      return language + '_' + std::string(part);
    }
    place = next;
  }
  return language;
}

}  // namespace qelcore::host
