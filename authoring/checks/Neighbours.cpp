// Rules beside rules: shared identifiers, and rules that others cover.
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "authoring/checks/Checks.h"
#include "authoring/model/Comparisons.h"
#include "authoring/model/InformedRule.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/VersionSpan.h"
#include "authoring/model/Words.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRRule;

namespace {

/// More pairs of alike rules than any list that is written by hand has; comparing them all may take hours.
constexpr std::size_t kMostPairs = 5'000'000;

std::string Naming(std::size_t index) {
  return "rule " + std::to_string(index);
}

/// The rule as an issue carries it, with the default texts.
SCRRule Inform(const Document& document, std::size_t index) {
  return InformedRule(document.RuleValue(index), document.DefaultsOf(document.Rules()[index].mKind));
}

/// In what two rules of one identifier differ.
std::string DifferenceOf(const SCRRule& left, const SCRRule& right) {
  const std::any leftValue = left.ToJSON();
  const std::any rightValue = right.ToJSON();
  const json::Dictionary& one = json::AsDictionary(leftValue);
  const json::Dictionary& other = json::AsDictionary(rightValue);
  std::set<std::string_view> keys;
  for (const auto* const object : {&one, &other}) {
    for (const auto& [key, value] : *object) keys.insert(key);
  }
  std::vector<std::string_view> different;
  for (const std::string_view key : keys) {
    const auto first = one.find(key);
    const auto second = other.find(key);
    const bool areEqual = first != one.end() && second != other.end() &&
                          json::Serialise(*first->second) == json::Serialise(*second->second);
    if (!areEqual) different.push_back(key);
  }
  return "they differ in " + ListOf(different) + ", but in nothing that the identifier tells apart";
}

void CheckIdentifiers(Document& document) {
  std::unordered_map<std::string, std::size_t> known;
  for (std::size_t index = 0; index < document.Rules().size(); ++index) {
    const SCRRule rule = Inform(document, index);
    const auto [place, isNew] = known.emplace(rule.GetID(), index);
    // Rules that are equal are covered, which is told elsewhere.
    if (isNew) continue;
    const SCRRule first = Inform(document, place->second);
    if (rule == first) continue;
    document.AddToRule(
        index, Code::kSharedIdentifier, document.Rules()[index].mNode->mOffset,
        "the rule has the identifier of " + Naming(place->second) + ": " + DifferenceOf(first, rule),
        "Give one of them another message, so that their issues can be told apart from run to run.");
  }
}

/// A dependency without what does not matter in one, so that equal conditions are equal texts.
std::string Condition(const SCRRule& dependency);

std::set<std::string> Conditions(const SCRRule& rule) {
  std::set<std::string> conditions;
  for (const SCRRule& dependency : rule.GetDependencies()) conditions.insert(Condition(dependency));
  return conditions;
}

std::string Condition(const SCRRule& dependency) {
  const std::any value = dependency.ToJSON();
  json::Dictionary object = json::AsDictionary(value);
  for (const char* const key : {"info_message", "info_url", "error_level", "dependencies"}) object.erase(key);
  std::string text = json::Serialise(object);
  for (const std::string& condition : Conditions(dependency)) text += condition;
  return text;
}

/// What a rule hits, as far as two rules of one group can be compared.
struct Reach {
  std::size_t mIndex = 0;
  std::int32_t mLevel = 0;
  std::string mMessage;
  std::string mLink;
  std::vector<VersionSpan> mSpans;
  ComparedValues mValues;
  std::set<std::string> mConditions;
};

bool Covers(const Reach& outer, const Reach& inner) {
  return outer.mLevel >= inner.mLevel && Covers(outer.mSpans, inner.mSpans) &&
         outer.mValues.Cover(inner.mValues) &&
         std::includes(inner.mConditions.begin(), inner.mConditions.end(), outer.mConditions.begin(),
                       outer.mConditions.end());
}

Reach ReachOf(const Document& document, std::size_t index) {
  const RuleElement& element = document.Rules()[index];
  const SCRRule rule = Inform(document, index);
  std::vector<VersionSpan> spans;
  if (element.mRanges.empty()) spans.push_back(SpanOf(VersionRange(std::string())));
  for (const RangeElement& range : element.mRanges) spans.push_back(SpanOf(range.mRange));
  return {index,
          static_cast<std::int32_t>(rule.GetErrorLevel()),
          rule.GetInfoMessage(),
          rule.GetInfoURL(),
          Merge(std::move(spans)),
          element.IsProperty() ? ComparedValues(*element.mNode) : ComparedValues(JsonNode()),
          Conditions(rule)};
}

/// Rules of one group differ in level, ranges, comparisons and conditions only.
std::map<std::string, std::vector<std::size_t>> GroupRules(const Document& document) {
  std::map<std::string, std::vector<std::size_t>> groups;
  for (std::size_t index = 0; index < document.Rules().size(); ++index) {
    const RuleElement& rule = document.Rules()[index];
    groups[std::to_string(static_cast<std::int32_t>(rule.mKind)) + ' ' + rule.mMask.ToString() + ' ' +
           rule.mModulus.ToString() + ' ' + rule.mName]
        .push_back(index);
  }
  return groups;
}

void TellCovered(Document& document, const Reach& inner, const Reach& outer) {
  const std::string what =
      Naming(outer.mIndex) + " of the same or a higher level hits everything that the rule hits";
  const std::size_t place = document.Rules()[inner.mIndex].mNode->mOffset;
  if (inner.mMessage != outer.mMessage) {
    document.AddToRule(inner.mIndex, Code::kCoveredRuleWithMessage, place, what + ", with another message",
                       "Users see two issues for one component. If one says it all, take the other out.");
    return;
  }
  if (inner.mLink != outer.mLink) {
    document.AddToRule(
        inner.mIndex, Code::kCoveredRule, place, what + ", with the same message and another link",
        "Users would see the same message twice: take one of the rules out, or give the rule a "
        "message that fits its link.");
    return;
  }
  document.AddToRule(inner.mIndex, Code::kCoveredRule, place, what + ", with the same message",
                     "Take the rule out: users would see the same issue twice.");
}

/// Finds for each rule of a group one that covers it, with the same message if there is such a one. Of two
/// that cover each other the first stays. False when there are too many pairs.
bool CheckGroup(Document& document, const std::vector<std::size_t>& group, std::size_t& pairs) {
  std::vector<Reach> reaches;
  reaches.reserve(group.size());
  for (const std::size_t index : group) reaches.push_back(ReachOf(document, index));
  for (const Reach& inner : reaches) {
    if (inner.mSpans.empty()) continue;
    const Reach* covering = nullptr;
    for (const Reach& outer : reaches) {
      if (&outer == &inner) continue;
      if (++pairs > kMostPairs) return false;
      if (covering != nullptr && outer.mMessage != inner.mMessage) continue;
      if (!Covers(outer, inner) || (outer.mIndex > inner.mIndex && Covers(inner, outer))) continue;
      covering = &outer;
      if (outer.mMessage == inner.mMessage) break;
    }
    if (covering != nullptr) TellCovered(document, inner, *covering);
  }
  return true;
}

}  // namespace

void CheckNeighbours(Document& document) {
  if (!document.HasReadableRules()) return;
  CheckIdentifiers(document);
  std::size_t pairs = 0;
  for (const auto& [key, group] : GroupRules(document)) {
    if (group.size() < 2 || CheckGroup(document, group, pairs)) continue;
    document.Add(Code::kTooManyRulesToCompare, 0,
                 "more than " + std::to_string(kMostPairs) +
                     " pairs of rules have the same name; not all were compared",
                 "");
    return;
  }
}

}  // namespace authoring
