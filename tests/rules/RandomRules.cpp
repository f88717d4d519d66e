#include "tests/rules/RandomRules.h"

#include <any>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "platform/qelcore/Json.h"

namespace testsupport {

namespace {

namespace json = qelcore::json;

using Texts = std::vector<std::string>;

/// Some kinds come more often, so that rules and components meet.
const Texts kRuleKinds{"Video", "Video", "Property", "Property", "File", "OS", "Network", "Audio"};
const Texts kComponentKinds{"Video", "Video", "Video", "Property", "Property", "OS", "Network"};
const Texts kNames{"Card A", "Card B", "Card (", "Intel(R) HD", "WAN Miniport", ""};
const Texts kExpressions{".*",
                         "Card .*",
                         "Card [AB]",
                         "^.*\\bMiniport\\b.*$",
                         "Intel\\(R\\) .*",
                         "Card|x",
                         "(Card A)+",
                         "card a",
                         "(?!Card).*",
                         "Card [A",
                         "Intel(R)",
                         "[[:upper:]].*",
                         "..",
                         "(",
                         "a{2,1}"};
const Texts kPaths{"/opt/tool", "/opt/other", "C:\\x.dll", "$HOME/x", ""};
const Texts kPropertyNames{"p", "p", "q", "p.*", ""};
const Texts kValues{"",
                    "0",
                    "5",
                    "10",
                    "-3",
                    " 7 MB",
                    "+5",
                    "0x5",
                    "abc",
                    "ab",
                    "ABC",
                    "\xC3\xA9",
                    "5.0",
                    "9223372036854775807",
                    "9223372036854775808",
                    "-9223372036854775809",
                    "true"};
const Texts kValueExpressions{".*", "[0-9]+", "a.*", "5|10", "true", "(", ""};
const Texts kVersions{"",        "0",     "0.0.0.0", "1",          "1.2",      "1.2.3",
                      "1.2.3.4", "2",     "3.1.4.1", "10",         "0.0.4.0",  "0.0.14.1195",
                      "1.+",     "0.0.+", "+",       "4294967295", "12.0.14.5"};
const Texts kBrokenVersions{"beta", "1..2", "1.2.3.4.5", "4294967296", ".1", "1.", "1.-2", " 1", "+.beta"};
const Texts kMasks{"0.0.+", "0.+", "+", "0.0.0.0", "1.3.7.15", "0.0.4.+", "x", ""};
const Texts kModuli{"0.0.10.+", "2.2.2.2", "10.+", "+", "0.0.0.0", "1.1.1.1", "x", ""};
const Texts kLevels{"INFO", "WARN", "ERROR", "FATAL", "Fatal", "", "worse"};

constexpr int kDeepestDependencies = 3;

/// A number from 0 to one less than `end`, each as likely as the others. A failing case is reduced towards 0.
int NumberBelow(int end) {
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, end));
}

/// True in so many cases of a hundred.
bool Chance(int percent) {
  return NumberBelow(100) >= 100 - percent;
}

std::string OneOf(const Texts& texts) {
  return *rc::gen::elementOf(texts);
}

std::string AnyVersion() {
  return Chance(10) ? OneOf(kBrokenVersions) : OneOf(kVersions);
}

std::string AnyRange() {
  switch (NumberBelow(5)) {
    case 0:
      return AnyVersion();
    case 1:
      return AnyVersion() + "-" + AnyVersion();
    case 2:
      return " " + AnyVersion() + " - " + AnyVersion() + " ";
    case 3:
      return "-" + AnyVersion();
    default:
      return AnyVersion() + "-";
  }
}

json::Array Several(int most, const std::function<std::any()>& make) {
  json::Array array;
  for (int left = NumberBelow(most + 1); left > 0; --left) array.push_back(make());
  return array;
}

std::any WrongValue() {
  switch (NumberBelow(5)) {
    case 0:
      return std::int64_t{7};
    case 1:
      return nullptr;
    case 2:
      return true;
    case 3:
      return json::Array{std::int64_t{1}};
    default:
      return json::Dictionary();
  }
}

std::string NameFor(const std::string& kind) {
  if (kind == "File") return OneOf(kPaths);
  if (kind == "Property") return OneOf(kPropertyNames);
  return Chance(50) ? OneOf(kNames) : OneOf(kExpressions);
}

void AddVersions(json::Dictionary& rule) {
  if (Chance(30)) json::Set(rule, "versions", Several(3, [] { return std::any(AnyRange()); }));
  if (Chance(15)) json::Set(rule, "version", AnyVersion());
  if (Chance(20)) json::Set(rule, "max_version", AnyVersion());
  if (Chance(35)) json::Set(rule, "version_mask", OneOf(kMasks));
  if (Chance(25)) json::Set(rule, "version_mod", OneOf(kModuli));
}

void AddComparisons(json::Dictionary& rule) {
  for (const char* const key : {"eq", "ne", "lt", "lte", "gt", "gte"}) {
    if (Chance(8)) json::Set(rule, key, OneOf(kValues));
  }
  if (Chance(12)) json::Set(rule, "regex", OneOf(kValueExpressions));
  for (const char* const key : {"ieq", "ine", "ilt", "ilte", "igt", "igte"}) {
    if (Chance(15)) json::Set(rule, key, OneOf(kValues));
  }
}

void Spoil(json::Dictionary& rule) {
  const std::string key = OneOf({"name", "type", "osc_version", "osblc_version", "version", "versions",
                                 "max_version", "version_mask", "version_mod", "eq", "regex", "igte",
                                 "info_message", "info_url", "dependencies", "error_level", "comment"});
  json::Set(rule, key, WrongValue());
}

json::Dictionary RuleAtDepth(int depth) {
  json::Dictionary rule;
  const std::string kind = OneOf(kRuleKinds);
  json::Set(rule, "type", kind);
  json::Set(rule, "name", NameFor(kind));
  if (kind != "Property" || Chance(10)) AddVersions(rule);
  if (kind == "Property" || Chance(10)) AddComparisons(rule);
  if (Chance(20)) json::Set(rule, "info_message", std::string("A message"));
  if (Chance(20)) json::Set(rule, "info_url", std::string("https://example.com/a"));
  if (Chance(40)) json::Set(rule, "error_level", OneOf(kLevels));
  if (Chance(10)) json::Set(rule, "osblc_version", std::int64_t{NumberBelow(4)} - 1);
  if (depth < kDeepestDependencies && Chance(30)) {
    json::Set(rule, "dependencies", Several(3, [&] { return std::any(RuleAtDepth(depth + 1)); }));
  }
  if (Chance(3)) Spoil(rule);
  return rule;
}

json::Dictionary AnyComponent() {
  json::Dictionary component;
  const std::string kind = OneOf(kComponentKinds);
  json::Set(component, "type", kind);
  if (kind == "Property") {
    json::Set(component, "name", OneOf(kPropertyNames));
    json::Set(component, "value", OneOf(kValues));
  } else {
    json::Set(component, "name", OneOf(kNames));
    json::Set(component, "version", AnyVersion());
  }
  return component;
}

json::Dictionary AnyFile() {
  json::Dictionary file;
  json::Set(file, "path", OneOf(kPaths));
  json::Set(file, "version", AnyVersion());
  return file;
}

}  // namespace

rc::Gen<std::string> AnyRule() {
  return rc::gen::exec([] { return json::Serialise(RuleAtDepth(0)); });
}

rc::Gen<std::string> AnyMachine() {
  return rc::gen::exec([] {
    json::Dictionary machine;
    json::Set(machine, "components", Several(12, [] { return std::any(AnyComponent()); }));
    json::Set(machine, "files", Several(4, [] { return std::any(AnyFile()); }));
    return json::Serialise(machine);
  });
}

}  // namespace testsupport
