// Lists of several languages, which have to agree in everything but their texts.
#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

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
std::string Difference(const Document& left, std::size_t leftIndex, const Document& right,
                       std::size_t rightIndex) {
  const json::Dictionary first = WithoutTexts(left.RuleValue(leftIndex));
  const json::Dictionary second = WithoutTexts(right.RuleValue(rightIndex));
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
    if (HasText(*left.Rules()[leftIndex].mNode, key) != HasText(*right.Rules()[rightIndex].mNode, key))
      keys.insert(key);
  }
  std::string list;
  for (const std::string_view key : keys) list += (list.empty() ? "" : ", ") + Quoted(key);
  return list;
}

/// Tells how the rules of one list differ from those of the list that is the measure.
class RuleComparison {
 public:
  RuleComparison(const Document& reference, Document& document)
      : mReference(reference),
        mDocument(document),
        mExpected(Fingerprints(reference)),
        mActual(Fingerprints(document)) {}

  void Run() {
    const std::size_t most = std::min(mActual.size(), mExpected.size());
    std::size_t before = 0;
    while (before < most && mExpected[before] == mActual[before]) ++before;
    std::size_t behind = 0;
    while (before + behind < most &&
           mExpected[mExpected.size() - 1 - behind] == mActual[mActual.size() - 1 - behind])
      ++behind;
    // Equal rules may differ in whether they have texts of their own.
    for (std::size_t index = 0; index < before; ++index) TellDifference(index, index);
    CompareBetween(before, mExpected.size() - behind, mActual.size() - behind);
    for (; behind > 0; --behind) TellDifference(mExpected.size() - behind, mActual.size() - behind);
  }

 private:
  /// What the rules say, without their texts, as texts.
  static std::vector<std::string> Fingerprints(const Document& document) {
    std::vector<std::string> fingerprints;
    for (std::size_t index = 0; index < document.Rules().size(); ++index) {
      const SCRRule rule(std::any(WithoutTexts(document.RuleValue(index))));
      fingerprints.push_back(json::Serialise(rule.ToJSON()));
    }
    return fingerprints;
  }

  /// Compares what stands from `begin` to the two ends: as pairs when there are as many on both sides.
  void CompareBetween(std::size_t begin, std::size_t expectedEnd, std::size_t end) {
    std::size_t expected = begin;
    std::size_t index = begin;
    const bool arePairs = expectedEnd == end;
    while (expected < expectedEnd && index < end) {
      if (arePairs || mExpected[expected] == mActual[index]) {
        TellDifference(expected++, index++);
        continue;
      }
      const std::size_t nextExpected =
          Find(expected, expectedEnd, [&](std::size_t place) { return mExpected[place] == mActual[index]; });
      const std::size_t next =
          Find(index, end, [&](std::size_t place) { return mExpected[expected] == mActual[place]; });
      if (nextExpected < expectedEnd && (next == end || nextExpected - expected <= next - index)) {
        while (expected < nextExpected) TellMissing(expected++, index);
      } else if (next < end) {
        while (index < next) TellAdditional(index++);
      } else {
        PairByName(expected, expectedEnd, index);
      }
    }
    while (expected < expectedEnd) TellMissing(expected++, index);
    while (index < end) TellAdditional(index++);
  }

  /// Two rules without an equal: the rule of the list is compared with the next one of its name.
  void PairByName(std::size_t& expected, std::size_t expectedEnd, std::size_t& index) {
    const RuleElement& rule = mDocument.Rules()[index];
    const std::size_t next = Find(expected, expectedEnd, [&](std::size_t place) {
      const RuleElement& other = mReference.Rules()[place];
      return other.mKind == rule.mKind && other.mName == rule.mName;
    });
    if (next < expectedEnd) {
      while (expected < next) TellMissing(expected++, index);
    }
    TellDifference(expected++, index++);
  }

  /// The first place that suits; `end` when there is none nearby.
  template <typename Suits>
  static std::size_t Find(std::size_t begin, std::size_t end, Suits&& suits) {
    // A rule that is so far off was not merely moved by a few that are missing.
    constexpr std::size_t kFarthest = 1000;
    const std::size_t last = std::min(end, begin + kFarthest);
    for (std::size_t place = begin; place < last; ++place) {
      if (suits(place)) return place;
    }
    return end;
  }

  void TellDifference(std::size_t expected, std::size_t index) {
    const std::string keys = Difference(mReference, expected, mDocument, index);
    if (keys.empty()) return;
    mDocument.AddToRule(
        index, Code::kLanguagesDiffer, mDocument.Rules()[index].mNode->mOffset,
        "the rule differs from rule " + std::to_string(expected) + " of " + mReference.Path() + " in " + keys,
        kMend);
  }

  void TellMissing(std::size_t expected, std::size_t index) {
    const JsonNode* const place = index < mActual.size() ? mDocument.Rules()[index].mNode : mDocument.Root();
    mDocument.Add(Code::kLanguagesDiffer, place == nullptr ? 0 : place->mOffset,
                  "rule " + std::to_string(expected) + ' ' + Quoted(mReference.Rules()[expected].mName) +
                      " of " + mReference.Path() + " is missing " +
                      (index < mActual.size() ? "before this one" : "at the end"),
                  kMend);
  }

  void TellAdditional(std::size_t index) {
    mDocument.AddToRule(index, Code::kLanguagesDiffer, mDocument.Rules()[index].mNode->mOffset,
                        "the rule is not in " + mReference.Path(), kMend);
  }

  static constexpr const char* kMend =
      "All languages have the same rules in the same order; only the texts differ.";

  const Document& mReference;
  Document& mDocument;
  std::vector<std::string> mExpected;
  std::vector<std::string> mActual;
};

/// The second warning is a text for users, and they are warned in every language or in none.
void CompareSecondWarning(const Document& reference, Document& document) {
  const bool isExpected = HasText(*reference.Root(), "second_warning");
  if (isExpected == HasText(*document.Root(), "second_warning")) return;
  const JsonMember* const member = document.Root()->FindMember("second_warning");
  document.Add(Code::kLanguagesDiffer, member == nullptr ? document.Root()->mOffset : member->mKeyOffset,
               std::string("the list has ") + (isExpected ? "no" : "a") + " \"second_warning\", and " +
                   reference.Path() + " has " + (isExpected ? "one" : "none"),
               isExpected ? "Translate it." : "Write it in every language.");
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
      if (other == reference) continue;
      CompareSecondWarning(*reference, *other);
      RuleComparison(*reference, *other).Run();
    }
  }
}

}  // namespace authoring
