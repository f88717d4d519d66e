#include "authoring/explain/NameNearness.h"

#include <algorithm>
#include <vector>

#include "authoring/model/NameShape.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

constexpr std::size_t kShortestPart = 3;
/// Longer names are compared as a whole and as parts only.
constexpr std::size_t kLongestCompared = 200;

/// The text of an expression without its signs: "^.*\bRTX 3060$" becomes "RTX 3060".
std::string WithoutSigns(std::string_view expression) {
  std::string text;
  for (std::size_t index = 0; index < expression.size(); ++index) {
    const char character = expression[index];
    if (character == '\\' && index + 1 < expression.size()) {
      const char escaped = expression[++index];
      // "\b" and "\d" stand for no character of their own, "\." does.
      const bool isLetter = (escaped >= 'a' && escaped <= 'z') || (escaped >= 'A' && escaped <= 'Z');
      if (!isLetter) text += escaped;
    } else if (std::string_view("^$*+?").find(character) != std::string_view::npos) {
      continue;
    } else if (character == '.' && index + 1 < expression.size() &&
               std::string_view("*+?").find(expression[index + 1]) != std::string_view::npos) {
      continue;
    } else {
      text += character;
    }
  }
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? std::string()
                                    : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string ToSmallLetters(std::string_view text) {
  std::string small(text);
  for (char& character : small) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return small;
}

std::optional<std::size_t> CountDifferences(std::string_view left, std::string_view right, std::size_t most) {
  if (left.size() > right.size()) std::swap(left, right);
  if (right.size() - left.size() > most) return std::nullopt;
  std::vector<std::size_t> row(left.size() + 1);
  for (std::size_t index = 0; index <= left.size(); ++index) row[index] = index;
  for (std::size_t place = 1; place <= right.size(); ++place) {
    std::size_t diagonal = row[0];
    row[0] = place;
    std::size_t least = place;
    for (std::size_t index = 1; index <= left.size(); ++index) {
      const std::size_t changed = diagonal + (left[index - 1] == right[place - 1] ? 0 : 1);
      diagonal = row[index];
      row[index] = std::min({changed, row[index] + 1, row[index - 1] + 1});
      least = std::min(least, row[index]);
    }
    if (least > most) return std::nullopt;
  }
  return row.back() <= most ? std::optional(row.back()) : std::nullopt;
}

RuleName::RuleName(const std::string& name)
    : mText(ToSmallLetters(LooksLikeExpression(name) ? WithoutSigns(name) : name)) {}

std::optional<NameNearness> RuleName::NearnessTo(std::string_view component) const {
  const std::string other = ToSmallLetters(component);
  if (mText.empty() || other.empty()) return std::nullopt;
  if (mText == other) return NameNearness{NameNearness::Kind::kCase, 0};
  if (mText.size() >= kShortestPart && other.find(mText) != std::string::npos) {
    return NameNearness{NameNearness::Kind::kWithin, other.size() - mText.size()};
  }
  if (other.size() >= kShortestPart && mText.find(other) != std::string::npos) {
    return NameNearness{NameNearness::Kind::kAround, mText.size() - other.size()};
  }
  const std::size_t longer = std::max(mText.size(), other.size());
  if (longer > kLongestCompared) return std::nullopt;
  const auto differences = CountDifferences(mText, other, longer / 4);
  if (!differences) return std::nullopt;
  return NameNearness{NameNearness::Kind::kCharacters, *differences};
}

std::string RuleName::Advice(const std::string& component) const {
  const auto nearness = NearnessTo(component);
  const std::string exact = "the name is the component's whole name, " + AsJson(component);
  if (!nearness || nearness->mKind != NameNearness::Kind::kWithin) return exact;
  // As the component writes it.
  const std::string part = component.substr(ToSmallLetters(component).find(mText), mText.size());
  return exact + ", or an expression for all of it, such as " + AsJson("^.*" + Escape(part) + ".*$");
}

}  // namespace authoring
