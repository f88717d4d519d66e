#include "authoring/model/NameShape.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace authoring {

namespace {

constexpr std::string_view kSigns = "^$\\.*+?()[]{}|";
constexpr std::array<std::string_view, 5> kLiterals = {"(R)", "(TM)", "(C)", "(r)", "(tm)"};

bool EndsWithUnescaped(std::string_view text, char sign) {
  if (!text.ends_with(sign)) return false;
  const std::size_t other = text.find_last_not_of('\\', text.size() - 2);
  const std::size_t begin = other == std::string_view::npos ? 0 : other + 1;
  return text.size() < 2 || (text.size() - 1 - begin) % 2 == 0;
}

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// Where the literal stands outside of brackets and unescaped, from `place` on.
std::size_t FindLiteral(std::string_view expression, std::size_t place, std::string_view& literal) {
  bool isInBrackets = false;
  for (std::size_t index = 0; index < expression.size(); ++index) {
    const char character = expression[index];
    if (character == '\\') {
      ++index;
    } else if (isInBrackets) {
      isInBrackets = character != ']';
    } else if (character == '[') {
      isInBrackets = true;
    } else if (character == '(' && index >= place) {
      for (const std::string_view known : kLiterals) {
        if (!expression.substr(index).starts_with(known)) continue;
        literal = known;
        return index;
      }
    }
  }
  return std::string_view::npos;
}

/// The alternatives that no group holds.
std::vector<std::string_view> SplitAlternatives(std::string_view expression) {
  std::vector<std::string_view> alternatives;
  std::size_t begin = 0;
  int depth = 0;
  bool isInBrackets = false;
  for (std::size_t index = 0; index < expression.size(); ++index) {
    const char character = expression[index];
    if (character == '\\') {
      ++index;
    } else if (isInBrackets) {
      isInBrackets = character != ']';
    } else if (character == '[') {
      isInBrackets = true;
    } else if (character == '(') {
      ++depth;
    } else if (character == ')') {
      --depth;
    } else if (character == '|' && depth == 0) {
      alternatives.push_back(expression.substr(begin, index - begin));
      begin = index + 1;
    }
  }
  alternatives.push_back(expression.substr(begin));
  return alternatives;
}

/// As `Complete`, of an expression without alternatives.
std::string CompleteOne(std::string_view expression) {
  const auto begins = [&](std::string_view part) { return expression.starts_with(part); };
  const auto ends = [&](std::string_view part) { return expression.ends_with(part); };
  const bool hasBegin = begins("^");
  const bool hasEnd = EndsWithUnescaped(expression, '$');
  const bool isOpenBefore = begins(".*") || begins(".+") || begins("(.*");
  const bool isOpenBehind = ends(".*") || ends(".+") || ends(".*)");
  const bool isWordBefore = begins("\\b");
  const bool isWordBehind = ends("\\b");
  const bool lacksEnd =
      !hasEnd && !isOpenBehind && (hasBegin || isWordBehind || isWordBefore || isOpenBefore);
  const bool lacksBegin =
      !hasBegin && !isOpenBefore && (hasEnd || isWordBehind || isWordBefore || isOpenBehind);
  // An expression that begins with its first word and goes on openly, or ends so, is a usual way to write it.
  const bool isPlainBegin = !hasBegin && !hasEnd && isOpenBehind && !isWordBefore;
  const bool isPlainEnd = !hasBegin && !hasEnd && isOpenBefore && !isWordBehind;
  std::string whole;
  if (lacksBegin && !isPlainBegin) whole = "^.*";
  if (lacksEnd && !isPlainEnd) return whole + std::string(expression) + ".*$";
  return whole.empty() ? whole : whole + std::string(expression);
}

}  // namespace

bool LooksLikeExpression(std::string_view name) {
  if (name.starts_with('^') || name.ends_with('$')) return true;
  constexpr std::array<std::string_view, 15> kParts = {"\\", "|",  ".*", ".+", ".?", "(?", "[^", "]*",
                                                       "]+", "]?", "]{", ")*", ")+", ")?", "){"};
  return std::any_of(kParts.begin(), kParts.end(),
                     [&](std::string_view part) { return name.find(part) != std::string_view::npos; });
}

bool HasSigns(std::string_view name) {
  return name.find_first_of(kSigns) != std::string_view::npos;
}

std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    if (kSigns.find(character) != std::string_view::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

std::string FindLiteralBrackets(std::string_view expression) {
  std::string_view literal;
  static_cast<void>(FindLiteral(expression, 0, literal));
  return std::string(literal);
}

std::string EscapeLiteralBrackets(const std::string& expression) {
  std::string escaped;
  std::size_t place = 0;
  std::string_view literal;
  for (std::size_t found = FindLiteral(expression, 0, literal); found != std::string::npos;
       found = FindLiteral(expression, place, literal)) {
    escaped += expression.substr(place, found - place) + Escape(literal);
    place = found + literal.size();
  }
  return escaped + expression.substr(place);
}

std::string Complete(std::string_view expression) {
  const std::string whole = CompleteOne(expression);
  const std::vector<std::string_view> alternatives = SplitAlternatives(expression);
  if (whole.empty() || alternatives.size() < 2) return whole;
  // Anchors and ".*" at the edges belong to the outer alternatives alone.
  std::string all;
  for (const std::string_view alternative : alternatives) {
    if (!all.empty()) all += '|';
    const std::string one = CompleteOne(alternative);
    const bool isPlain = !LooksLikeExpression(alternative);
    all += !one.empty() ? one : isPlain ? "^.*" + std::string(alternative) + ".*$" : std::string(alternative);
  }
  return all;
}

std::string FromShellPattern(std::string_view name) {
  bool isShellPattern = false;
  std::string expression = "^";
  for (std::size_t index = 0; index < name.size(); ++index) {
    if (name[index] != '*') {
      expression += Escape(name.substr(index, 1));
      continue;
    }
    // Behind a letter the sign repeats the letter, which no name of a device asks for.
    const char before = index == 0 ? ' ' : name[index - 1];
    if (!IsLetter(before) && before != ' ') return {};
    isShellPattern = true;
    expression += ".*";
  }
  return isShellPattern ? expression + '$' : std::string();
}

bool IsOneWord(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsLetter);
}

bool IsNameOfSeries(std::string_view text) {
  constexpr std::array<std::string_view, 2> kWithMaker = {"GeForce", "Quadro"};
  constexpr std::array<std::string_view, 5> kSeries = {
      "NVIDIA GeForce", "NVIDIA GeForce GTX", "NVIDIA GeForce RTX", "NVIDIA Quadro", "AMD Radeon RX"};
  if (std::find(kSeries.begin(), kSeries.end(), text) != kSeries.end()) return true;
  return std::any_of(kWithMaker.begin(), kWithMaker.end(), [&](std::string_view series) {
    return text.starts_with(series) && text.substr(series.size()).starts_with(' ');
  });
}

bool HasLetterInBrackets(std::string_view expression) {
  bool isInBrackets = false;
  for (std::size_t index = 0; index < expression.size(); ++index) {
    const char character = expression[index];
    if (isInBrackets && static_cast<unsigned char>(character) >= 0x80) return true;
    if (character == '\\') {
      ++index;
    } else if (character == (isInBrackets ? ']' : '[')) {
      isInBrackets = !isInBrackets;
    }
  }
  return false;
}

}  // namespace authoring
