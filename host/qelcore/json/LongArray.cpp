#include "host/qelcore/json/LongArray.h"

#include <algorithm>
#include <string>

#include "host/qelcore/json/JsonText.h"

namespace qelcore::json {

namespace {

/// Goes through a text from value to value. All functions that move on say whether they could.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : mText(text) {}

  [[nodiscard]] std::size_t Place() const { return mPlace; }
  void MoveTo(std::size_t place) { mPlace = place; }

  [[nodiscard]] bool IsAt(char character) const {
    return mPlace < mText.size() && mText[mPlace] == character;
  }

  void SkipWhiteSpace() { mPlace = std::min(mText.find_first_not_of(kWhiteSpace, mPlace), mText.size()); }

  /// Takes a character that structures the text, with white space on both sides.
  bool Take(char character) {
    SkipWhiteSpace();
    if (!IsAt(character)) return false;
    ++mPlace;
    SkipWhiteSpace();
    return true;
  }

  /// Takes a string, and gives what is between its quotation marks.
  std::optional<std::string_view> TakeString() {
    const std::size_t begin = mPlace + 1;
    if (!IsAt('"') || !SkipString()) return std::nullopt;
    return mText.substr(begin, mPlace - 1 - begin);
  }

  bool SkipValue() {
    if (IsAt('"')) return SkipString();
    if (!IsAt('[') && !IsAt('{')) {
      mPlace = std::min(mText.find_first_of(",]} \t\n\r", mPlace), mText.size());
      return true;
    }
    ++mPlace;
    return SkipToClosingBracket([](std::size_t) {});
  }

  /// Goes behind the bracket that closes the present array or object, and shows the places of its commas and
  /// of that bracket.
  template <typename Show>
  bool SkipToClosingBracket(const Show& show) {
    std::size_t depth = 0;
    while (mPlace < mText.size()) {
      switch (mText[mPlace]) {
        case '"':
          if (!SkipString()) return false;
          continue;
        case '[':
        case '{':
          ++depth;
          break;
        case ']':
        case '}':
          if (depth == 0) {
            show(mPlace++);
            return true;
          }
          --depth;
          break;
        case ',':
          if (depth == 0) show(mPlace);
          break;
        default:
          break;
      }
      ++mPlace;
    }
    return false;
  }

 private:
  bool SkipString() {
    for (std::size_t quote = mText.find('"', mPlace + 1); quote != std::string_view::npos;
         quote = mText.find('"', quote + 1)) {
      std::size_t backslash = quote;
      while (mText[backslash - 1] == '\\') --backslash;
      if ((quote - backslash) % 2 != 0) continue;
      mPlace = quote + 1;
      return true;
    }
    return false;
  }

  std::string_view mText;
  std::size_t mPlace = 0;
};

/// Where an element ends and the next one begins on a line as the first one does; empty where the first does
/// not begin on a line of its own.
std::string LineBetweenElements(std::string_view text, std::size_t begin) {
  const std::size_t first = text.find_first_not_of(kWhiteSpace, begin);
  if (first == std::string_view::npos || text[first] != '{') return {};
  const std::string_view space = text.substr(begin, first - begin);
  if (space.find('\n') == std::string_view::npos) return {};
  return "}," + std::string(space) + "{";
}

}  // namespace

std::optional<std::vector<std::size_t>> CutLongArray(std::string_view text, std::string_view key,
                                                     std::size_t pieceLength, Cutting cutting) {
  std::vector<std::size_t> offsets;
  const auto cut = [&](std::size_t place) {
    if (text[place] != ',' || place - offsets.back() >= pieceLength) offsets.push_back(place);
  };
  const auto cutByLines = [&] {
    const std::string line = LineBetweenElements(text, offsets.back());
    if (line.empty()) return;
    for (;;) {
      const std::size_t place = text.find(line, offsets.back() + pieceLength);
      if (place == std::string_view::npos) return;
      offsets.push_back(place + 1);
    }
  };

  bool isFound = false;
  Scanner scanner(text);
  if (!scanner.Take('{')) return std::nullopt;
  if (scanner.IsAt('}')) return offsets;
  do {
    const std::optional<std::string_view> name = scanner.TakeString();
    if (!name || name->find('\\') != std::string_view::npos || !scanner.Take(':')) return std::nullopt;
    const bool isTheOne = *name == key;
    if (isTheOne && isFound) return std::nullopt;
    isFound |= isTheOne;
    if (isTheOne && scanner.IsAt('[')) {
      offsets.push_back(scanner.Place() + 1);
      if (cutting == Cutting::kByLines) cutByLines();
      scanner.MoveTo(offsets.size() > 1 ? offsets.back() + 1 : offsets.back());
      if (!scanner.SkipToClosingBracket(cut)) return std::nullopt;
    } else if (!scanner.SkipValue()) {
      return std::nullopt;
    }
  } while (scanner.Take(','));
  return offsets;
}

}  // namespace qelcore::json
