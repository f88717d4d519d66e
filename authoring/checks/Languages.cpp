// Lists of several languages, which have to agree in everything but their texts.
#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "authoring/checks/Checks.h"
#include "authoring/model/Words.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr const char* kTextKeys[] = {"info_message", "info_url", "comment", "examples"};
constexpr std::string_view kReferenceLanguage = "en_US";

/// "data/list.de_DE.json" is the list "data/list." in the language "de_DE".
struct LanguageFile {
  std::string_view mList;
  std::string_view mLanguage;
};

LanguageFile Split(std::string_view path) {
  constexpr std::string_view kExtension = ".json";
  if (!path.ends_with(kExtension)) return {};
  path.remove_suffix(kExtension.size());
  const std::size_t point = path.rfind('.');
  if (point == std::string_view::npos) return {};
  const std::string_view language = path.substr(point + 1);
  const std::size_t letters = std::min(language.find('_'), language.size());
  constexpr std::string_view kCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
  const bool isLanguage =
      letters >= 2 && letters <= 3 && language.find_first_not_of(kCharacters) == std::string_view::npos;
  return isLanguage ? LanguageFile{path.substr(0, point + 1), language} : LanguageFile{};
}

json::Dictionary WithoutTexts(const std::any& rule) {
  json::Dictionary object = json::AsDictionary(rule);
  for (const char* const key : kTextKeys) object.erase(key);
  return object;
}

bool HasText(const JsonNode& rule, std::string_view key) {
  const std::string* const text = rule.FindText(key);
  return text != nullptr && !text->empty();
}

/// The keys in which two rules differ, or in whether they have a text of their own; empty when they agree.
std::string Difference(const Document& left, const Document& right, std::size_t index) {
  const json::Dictionary first = WithoutTexts(left.RuleValue(index));
  const json::Dictionary second = WithoutTexts(right.RuleValue(index));
  std::set<std::string_view> keys;
  if (SCRRule(std::any(first)) != SCRRule(std::any(second))) {
    for (const auto* const object : {&first, &second}) {
      for (const auto& [key, value] : *object) keys.insert(key);
    }
    std::erase_if(keys, [&](std::string_view key) {
      const auto one = first.find(key);
      const auto other = second.find(key);
      return one != first.end() && other != second.end() &&
             json::Serialise(*one->second) == json::Serialise(*other->second);
    });
  }
  for (const char* const key : {"info_message", "info_url"}) {
    if (HasText(*left.Rules()[index].mNode, key) != HasText(*right.Rules()[index].mNode, key))
      keys.insert(key);
  }
  std::string list;
  for (const std::string_view key : keys) list += (list.empty() ? "" : ", ") + Quoted(key);
  return list;
}

void Compare(const Document& reference, Document& document) {
  const std::size_t count = document.Rules().size();
  const std::size_t expected = reference.Rules().size();
  for (std::size_t index = 0; index < std::min(count, expected); ++index) {
    const std::string keys = Difference(reference, document, index);
    if (keys.empty()) continue;
    document.AddToRule(
        index, Code::kLanguagesDiffer, document.Rules()[index].mNode->mOffset,
        "the rule differs from rule " + std::to_string(index) + " of " + reference.Path() + " in " + keys,
        "All languages have the same rules in the same order; only the texts differ.");
    // Behind a rule that was put in or taken out, all would differ.
    if (count != expected) break;
  }
  if (count == expected) return;
  document.Add(Code::kLanguagesDiffer, document.Root()->mOffset,
               "the list has " + std::to_string(count) + " rules, and " + reference.Path() + " has " +
                   std::to_string(expected),
               "All languages have the same rules in the same order; only the texts differ.");
}

bool IsComparable(const Document& document) {
  return document.Root() != nullptr && document.HasReadableRules();
}

}  // namespace

void CheckLanguages(const std::vector<std::unique_ptr<Document>>& documents) {
  std::set<std::string_view> seen;
  for (const auto& document : documents) {
    const std::string_view list = Split(document->Path()).mList;
    if (list.empty() || !IsComparable(*document) || !seen.insert(list).second) continue;
    std::vector<Document*> set;
    for (const auto& other : documents) {
      if (Split(other->Path()).mList == list && IsComparable(*other)) set.push_back(other.get());
    }
    // A list is compared with the English one, which others are translated from, else with the first.
    const auto english = std::find_if(set.begin(), set.end(), [](const Document* candidate) {
      return Split(candidate->Path()).mLanguage == kReferenceLanguage;
    });
    const Document* const reference = english == set.end() ? set.front() : *english;
    for (Document* const other : set) {
      if (other != reference) Compare(*reference, *other);
    }
  }
}

}  // namespace authoring
