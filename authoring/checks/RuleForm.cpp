// The form of the rules, as the library's reader sees it.
#include <algorithm>
#include <cstdint>

#include "authoring/checks/Checks.h"
#include "authoring/checks/Keys.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/Words.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

namespace {

using qelcore::utility::ComponentTypeFromString;

/// Reads one element and what it depends on, in the reader's order.
class RuleReader {
 public:
  RuleReader(Document& document, std::size_t index) : mDocument(document), mIndex(index) {}

  RuleElement Read(const JsonNode& node, bool isDependency) {
    RuleElement rule;
    rule.mNode = &node;
    mConsequence = isDependency ? "Such a dependency never holds, so the rule hits nothing. "
                                : "No rule of the list is kept, and no default text. ";
    const std::string consequence = mConsequence;
    if (!node.Is(JsonKind::kObject)) {
      Add(Code::kNotARule, node, std::string("a rule is ") + Describe(node.mKind) + ", not an object",
          consequence + "Write an object with \"name\" and \"type\", or take it out.");
      return rule;
    }
    CheckKeys(mDocument, mIndex, node, isDependency ? RuleKeys() : KeysOfElements());
    rule.mIsReadable = true;
    ReadComponent(rule);
    if (rule.mKind != OSComponentType::kInvalid) {
      if (rule.IsProperty()) {
        ReadComparisons(rule);
      } else {
        ReadVersions(rule);
      }
    }
    Require(rule, "info_message", JsonKind::kText);
    Require(rule, "info_url", JsonKind::kText);
    ReadLevel(rule, isDependency);
    if (isDependency) IgnoreTexts(rule);
    if (const JsonNode* const dependencies = Require(rule, "dependencies", JsonKind::kArray)) {
      for (const JsonNode& element : dependencies->mElements)
        rule.mDependencies.push_back(Read(element, true));
      mConsequence = consequence;
    }
    return rule;
  }

 private:
  static std::span<const std::string_view> KeysOfElements() {
    static const std::vector<std::string_view> keys = [] {
      std::vector<std::string_view> all(RuleKeys().begin(), RuleKeys().end());
      all.emplace_back("examples");
      return all;
    }();
    return keys;
  }

  void Add(Code code, const JsonNode& node, std::string what, std::string mend) {
    mDocument.AddToRule(mIndex, code, node.mOffset, std::move(what), std::move(mend));
  }

  void Fail(RuleElement& rule, Code code, const JsonNode& node, std::string what, const std::string& mend) {
    rule.mIsReadable = false;
    Add(code, node, std::move(what), mConsequence + mend);
  }

  /// The value under a key; null when there is none or, which is a finding, it is of another type.
  const JsonNode* Require(RuleElement& rule, std::string_view key, JsonKind kind) {
    const JsonNode* const value = rule.mNode->Find(key);
    if (value == nullptr) return nullptr;
    if (value->Is(kind)) return value;
    std::string mend = "Write " + std::string(Describe(kind)) + '.';
    if (kind == JsonKind::kText && value->Is(JsonKind::kInteger)) mend = "Put it into quotation marks.";
    Fail(rule, Code::kWrongTypeInRule, *value,
         Quoted(key) + " is " + Describe(value->mKind) + ", not " + Describe(kind), mend);
    return nullptr;
  }

  void ReadComponent(RuleElement& rule) {
    const JsonNode& node = *rule.mNode;
    if (const JsonNode* const name = Require(rule, "name", JsonKind::kText)) {
      rule.mName = name->mText;
    } else if (node.Find("name") == nullptr) {
      Fail(rule, Code::kNotARule, node, "the rule has no \"name\"", "Write what it is about.");
    }
    if (const JsonNode* const type = Require(rule, "type", JsonKind::kText)) {
      rule.mKind = ComponentTypeFromString(type->mText);
      if (rule.mKind == OSComponentType::kInvalid) {
        Fail(rule, Code::kUnknownKind, *type, "the kind " + Quoted(type->mText) + " is unknown",
             DidYouMean(KindNames(), type->mText));
      }
    } else if (node.Find("type") == nullptr) {
      Fail(rule, Code::kNotARule, node, "the rule has no \"type\"",
           "Write one of " + ListOf(KindNames()) + '.');
    }
    Require(rule, "version", JsonKind::kText);
    Require(rule, "value", JsonKind::kText);
    Require(rule, "osc_version", JsonKind::kInteger);
    const JsonNode* const version = Require(rule, "osblc_version", JsonKind::kInteger);
    if (version != nullptr && static_cast<std::uint32_t>(version->mInteger) == 0) {
      Fail(rule, Code::kRuleVersionRefused, *version, "\"osblc_version\" is 0 in its lower 32 bits",
           "Write 1, or leave it out.");
    }
  }

  /// Tells of keys that rules of this kind do not read.
  void Ignore(const RuleElement& rule, std::span<const std::string_view> keys, const std::string& why,
              const std::string& mend) {
    for (const std::string_view key : keys) {
      const JsonMember* const member = rule.mNode->FindMember(key);
      if (member == nullptr) continue;
      // The component's own version is in the hash of which the identifier is made, whatever matching reads.
      const char* const effect =
          key == "version" ? " changes the identifier and nothing else: " : " has no effect: ";
      mDocument.AddToRule(mIndex, Code::kIgnoredKey, member->mKeyOffset, Quoted(key) + effect + why, mend);
    }
  }

  /// Tells of texts and levels of a dependency, which no issue carries. They are in its hash all the same.
  void IgnoreTexts(const RuleElement& rule) {
    for (const char* const key : {"error_level", "info_message", "info_url"}) {
      const JsonMember* const member = rule.mNode->FindMember(key);
      if (member == nullptr || !member->mValue.Is(JsonKind::kText)) continue;
      // Such a level is told of already.
      if (key == std::string_view("error_level") && !Contains(LevelNames(), member->mValue.mText)) continue;
      mDocument.AddToRule(
          mIndex, Code::kIgnoredKey, member->mKeyOffset,
          Quoted(key) +
              " changes the identifier and nothing else: an issue has the texts and the level "
              "of its rule, not of a dependency",
          "Write it beside the rule's own name, or take it out.");
    }
  }

  void ReadComparisons(RuleElement& rule) {
    for (const auto keys : {TextComparisonKeys(), IntegerComparisonKeys()}) {
      for (const std::string_view key : keys) Require(rule, key, JsonKind::kText);
    }
    Ignore(rule, VersionKeys(), "a property has a value and no version",
           "Compare the value, such as with \"igte\" and \"ilt\".");
  }

  void ReadVersions(RuleElement& rule) {
    const JsonNode& node = *rule.mNode;
    bool hasRanges = false;
    if (const JsonNode* const versions = Require(rule, "versions", JsonKind::kArray)) {
      hasRanges = !versions->mElements.empty();
      for (const JsonNode& element : versions->mElements) {
        if (element.Is(JsonKind::kText)) {
          rule.mRanges.push_back({VersionRange(element.mText), &element});
        } else {
          Fail(rule, Code::kWrongTypeInRule, element,
               std::string("a range of \"versions\" is ") + Describe(element.mKind) + ", not a text",
               "Put it into quotation marks.");
        }
      }
    }
    if (hasRanges) {
      constexpr std::string_view kOlderKeys[] = {"version", "max_version"};
      Ignore(rule, kOlderKeys, "\"versions\" has a range, which counts alone",
             "Add it to \"versions\", or take it out.");
    } else {
      ReadOlderRange(rule, node);
    }
    if (const JsonNode* const mask = Require(rule, "version_mask", JsonKind::kText)) {
      rule.mMask = OSComponentVersion(mask->mText);
    }
    if (const JsonNode* const modulus = Require(rule, "version_mod", JsonKind::kText)) {
      rule.mModulus = OSComponentVersion(modulus->mText);
    }
    for (const auto keys : {TextComparisonKeys(), IntegerComparisonKeys()}) {
      Ignore(rule, keys, "only a property has a value to compare",
             "Write a version range, or make it a rule or dependency of type \"Property\".");
    }
  }

  void ReadOlderRange(RuleElement& rule, const JsonNode& node) {
    const std::string* const version = node.FindText("version");
    const OSComponentVersion minimum(version == nullptr ? std::string() : *version);
    const JsonNode* const maximum = Require(rule, "max_version", JsonKind::kText);
    if (maximum != nullptr && !maximum->mText.empty()) {
      rule.mRanges.push_back({VersionRange(minimum, OSComponentVersion(maximum->mText)),
                              version == nullptr ? maximum : node.Find("version")});
    } else if (minimum) {
      rule.mRanges.push_back({VersionRange(minimum), node.Find("version")});
    }
  }

  void ReadLevel(RuleElement& rule, bool isDependency) {
    const JsonNode* const level = Require(rule, "error_level", JsonKind::kText);
    if (level == nullptr || Contains(LevelNames(), level->mText)) return;
    const std::string effect = isDependency ? " (where the level of a dependency has no effect)" : "";
    Add(Code::kUnknownLevel, *level,
        "the level " + Quoted(level->mText) + " is none, and so means INFO" + effect,
        DidYouMean(LevelNames(), level->mText));
  }

  Document& mDocument;
  std::size_t mIndex;
  std::string mConsequence;
};

void Walk(std::size_t index, const RuleElement& rule,
          const std::function<void(std::size_t index, const RuleElement& rule)>& check) {
  if (rule.mIsReadable) check(index, rule);
  for (const RuleElement& dependency : rule.mDependencies) Walk(index, dependency, check);
}

}  // namespace

void ReadRules(Document& document) {
  if (document.Root() == nullptr) return;
  const JsonNode* const elements = document.Root()->Find("blocklist");
  if (elements == nullptr || !elements->Is(JsonKind::kArray)) return;
  std::vector<RuleElement> rules;
  rules.reserve(elements->mElements.size());
  for (const JsonNode& element : elements->mElements) {
    rules.push_back(RuleReader(document, rules.size()).Read(element, false));
  }
  document.SetRules(std::move(rules));
}

void ForEachRule(const Document& document,
                 const std::function<void(std::size_t index, const RuleElement& rule)>& check) {
  for (std::size_t index = 0; index < document.Rules().size(); ++index)
    Walk(index, document.Rules()[index], check);
}

}  // namespace authoring
