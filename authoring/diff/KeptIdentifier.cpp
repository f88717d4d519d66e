#include "authoring/diff/KeptIdentifier.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;

namespace {

constexpr std::string_view kDependencies = "dependencies";
constexpr std::string_view kMessage = "info_message";
constexpr std::string_view kURL = "info_url";
constexpr std::string_view kEmptyText = "\"\"";

/// What no identifier knows.
constexpr std::array<std::string_view, 15> kUnknownKeys = {
    "version_mask", "version_mod", "eq",  "ne",   "lt",  "lte",  "gt",   "gte",
    "ieq",          "ine",         "ilt", "ilte", "igt", "igte", "regex"};

bool IsUnknown(std::string_view key) {
  return std::find(kUnknownKeys.begin(), kUnknownKeys.end(), key) != kUnknownKeys.end();
}

json::Dictionary ToObject(const ListFields& fields) {
  json::Dictionary object;
  for (const auto& [key, value] : fields) json::Set(object, key, json::Parse(value));
  return object;
}

/// The rule without what no identifier knows, in its dependencies neither.
json::Dictionary KnownPart(const json::Dictionary& rule) {
  json::Dictionary known;
  for (const auto& [key, value] : rule) {
    if (IsUnknown(key)) continue;
    const auto* const dependencies = key == kDependencies ? std::any_cast<json::Array>(value.get()) : nullptr;
    if (dependencies == nullptr) {
      known.emplace(key, value);
      continue;
    }
    json::Array parts;
    for (const std::any& dependency : *dependencies)
      parts.emplace_back(KnownPart(json::AsDictionary(dependency)));
    json::Set(known, key, std::move(parts));
  }
  return known;
}

/// The rule without what an identifier knows, but with what its dependencies do not.
json::Dictionary UnknownPart(const json::Dictionary& rule) {
  json::Dictionary unknown;
  for (const auto& [key, value] : rule) {
    const auto* const dependencies = key == kDependencies ? std::any_cast<json::Array>(value.get()) : nullptr;
    if (dependencies != nullptr) {
      json::Array parts;
      for (const std::any& dependency : *dependencies) {
        parts.emplace_back(UnknownPart(json::AsDictionary(dependency)));
      }
      json::Set(unknown, key, std::move(parts));
    } else if (IsUnknown(key)) {
      unknown.emplace(key, value);
    }
  }
  return unknown;
}

/// As the report does it: a rule with a message of its own takes nothing over.
json::Dictionary WithDefaultTexts(json::Dictionary rule, const std::string& kind, const ListFields& texts) {
  const auto isEmpty = [&](std::string_view key) {
    const std::string* const text = json::FindText(rule, key);
    return text == nullptr || text->empty();
  };
  if (!isEmpty(kMessage)) return rule;
  for (const std::string_view key : {kMessage, kURL}) {
    const std::string_view text = ValueOf(texts, "default_info." + kind + "." + std::string(key));
    // A text that is not there is left out of a rule.
    if (isEmpty(key) && text.size() > kEmptyText.size()) json::Set(rule, key, json::Parse(text));
  }
  return rule;
}

}  // namespace

KeptIdentifier CompareKept(const ComparedRule& oldRule, const ListFields& oldTexts,
                           const ComparedRule& newRule, const ListFields& newTexts) {
  const json::Dictionary oldObject = ToObject(oldRule.mFields);
  const json::Dictionary newObject = ToObject(newRule.mFields);
  const json::Dictionary oldKnown = KnownPart(oldObject);
  const json::Dictionary newKnown = KnownPart(newObject);
  const auto areEqual = [](const json::Dictionary& left, const json::Dictionary& right) {
    return json::Serialise(left) == json::Serialise(right);
  };
  const json::Dictionary oldInformed = WithDefaultTexts(oldKnown, oldRule.mKind, oldTexts);
  const json::Dictionary newInformed = WithDefaultTexts(newKnown, newRule.mKind, newTexts);
  KeptIdentifier kept;
  kept.mHasUnknownChange = !areEqual(UnknownPart(oldObject), UnknownPart(newObject));
  kept.mHasRunTogether = !areEqual(oldInformed, newInformed);
  kept.mHasDefaultTextChange = !areEqual(oldKnown, newKnown) && !kept.mHasRunTogether;
  return kept;
}

}  // namespace authoring
