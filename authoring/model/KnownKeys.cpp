#include "authoring/model/KnownKeys.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <vector>

#include "authoring/model/Words.h"

namespace authoring {

namespace {

constexpr std::array<std::string_view, 6> kDocumentKeys = {
    "$schema", "blocklist_version", "default_info", "second_warning", "blocklist", "comment"};
constexpr std::array<std::string_view, 3> kDefaultKeys = {"info_message", "info_url", "comment"};
constexpr std::array<std::string_view, 27> kRuleKeys = {
    "name",         "type",         "osc_version", "osblc_version",
    "versions",     "version",      "max_version", "version_mask",
    "version_mod",  "eq",           "ne",          "lt",
    "lte",          "gt",           "gte",         "regex",
    "ieq",          "ine",          "ilt",         "ilte",
    "igt",          "igte",         "comment",     "error_level",
    "info_message", "dependencies", "info_url",
};
constexpr std::array<std::string_view, 7> kTextComparisonKeys = {"eq", "ne",  "lt",   "lte",
                                                                 "gt", "gte", "regex"};
constexpr std::array<std::string_view, 6> kIntegerComparisonKeys = {"ieq",  "ine", "ilt",
                                                                    "ilte", "igt", "igte"};
constexpr std::array<std::string_view, 5> kVersionKeys = {"versions", "version", "max_version",
                                                          "version_mask", "version_mod"};
constexpr std::array<std::string_view, 6> kKindNames = {"OS",      "Video", "Audio",
                                                        "Network", "File",  "Property"};
constexpr std::array<std::string_view, 4> kLevelNames = {"INFO", "WARN", "ERROR", "FATAL"};

/// Nobody slips so far; and a long text takes long to compare.
constexpr std::size_t kLongestWord = 40;

char ToLower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// How many characters have to be put in, taken out, replaced, or swapped with their neighbour.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> beforeLast(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> current(right.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t row = 1; row <= left.size(); ++row) {
    current[0] = row;
    for (std::size_t column = 1; column <= right.size(); ++column) {
      const bool areEqual = ToLower(left[row - 1]) == ToLower(right[column - 1]);
      current[column] =
          std::min({last[column] + 1, current[column - 1] + 1, last[column - 1] + (areEqual ? 0 : 1)});
      const bool areSwapped = row > 1 && column > 1 && ToLower(left[row - 1]) == ToLower(right[column - 2]) &&
                              ToLower(left[row - 2]) == ToLower(right[column - 1]);
      if (areSwapped) current[column] = std::min(current[column], beforeLast[column - 2] + 1);
    }
    std::swap(beforeLast, last);
    std::swap(last, current);
  }
  return last[right.size()];
}

}  // namespace

std::span<const std::string_view> DocumentKeys() {
  return kDocumentKeys;
}

std::span<const std::string_view> DefaultKeys() {
  return kDefaultKeys;
}

std::span<const std::string_view> RuleKeys() {
  return kRuleKeys;
}

std::span<const std::string_view> TextComparisonKeys() {
  return kTextComparisonKeys;
}

std::span<const std::string_view> IntegerComparisonKeys() {
  return kIntegerComparisonKeys;
}

std::span<const std::string_view> VersionKeys() {
  return kVersionKeys;
}

std::span<const std::string_view> KindNames() {
  return kKindNames;
}

std::span<const std::string_view> LevelNames() {
  return kLevelNames;
}

bool Contains(std::span<const std::string_view> words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::optional<std::string_view> NearestWord(std::span<const std::string_view> words, std::string_view word) {
  if (word.empty() || word.size() > kLongestWord) return std::nullopt;
  std::optional<std::string_view> nearest;
  // A third of the word may be wrong, so that "OS" is not taken for every word of two letters.
  std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
  for (const std::string_view known : words) {
    const std::size_t distance = Distance(word, known);
    if (distance < least && distance < known.size()) {
      least = distance;
      nearest = known;
    }
  }
  return nearest;
}

std::string DidYouMean(std::span<const std::string_view> words, std::string_view word) {
  if (const auto nearest = NearestWord(words, word)) return "Did you mean " + Quoted(*nearest) + "?";
  return "Known are " + ListOf(words) + ".";
}

std::string ListOf(std::span<const std::string_view> words) {
  std::string list;
  for (std::size_t index = 0; index < words.size(); ++index) {
    if (index > 0) list += index + 1 == words.size() ? " and " : ", ";
    list += Quoted(words[index]);
  }
  return list;
}

}  // namespace authoring
