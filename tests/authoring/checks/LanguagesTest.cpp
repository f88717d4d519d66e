#include "tests/authoring/Lists.h"

namespace {

using authoring::Findings;
using authoring::Lint;
using testsupport::ListOfRules;

constexpr const char* kRule =
    R"({"name": "Windows", "type": "OS", "versions": ["6.1-6.+"], "info_message": "One.", "info_url": "https://example.com/"})";
constexpr const char* kOther = R"({"name": "Linux", "type": "OS"})";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

std::string Two(const std::string& first, const std::string& second) {
  return ListOfRules(first + ",\n" + second);
}

TEST(LanguagesTest, OnlyTextsMayDiffer) {
  const struct {
    std::string mRule;
    std::vector<std::string> mFindings;
    const char* mKeys;
  } rows[] = {
      {kRule, {}, ""},
      {Replaced(kRule, "One.", "Eins."), {}, ""},
      {Replaced(kRule, "example.com", "example.de"), {}, ""},
      {Replaced(kRule, "\"name\"", "\"comment\": \"x\", \"name\""), {}, ""},
      {Replaced(kRule, "6.1-6.+", "6.1.0.0 - 6.+"), {}, ""},
      {Replaced(kRule, "6.1-6.+", "6.2-6.+"), {"BL901 2:1"}, "\"versions\""},
      {Replaced(kRule, "Windows", "Ubuntu"), {"BL901 2:1"}, "\"name\""},
      {Replaced(kRule, "\"type\": \"OS\"", "\"type\": \"OS\", \"error_level\": \"WARN\""),
       {"BL901 2:1"},
       "\"error_level\""},
      {Replaced(kRule, R"(, "info_message": "One.", "info_url": "https://example.com/")", ""),
       {"BL901 2:1"},
       "\"info_message\", \"info_url\""},
  };
  for (const auto& row : rows) {
    const Findings findings =
        Lint({{"d/list.de_DE.json", Two(row.mRule, kOther)}, {"d/list.en_US.json", Two(kRule, kOther)}});
    EXPECT_EQ(testsupport::CodesAndPlaces(findings), row.mFindings) << row.mRule;
    if (findings.empty()) continue;
    EXPECT_EQ(findings[0].mFile, "d/list.de_DE.json");
    EXPECT_EQ(findings[0].mWhat,
              "the rule differs from rule 0 of d/list.en_US.json in " + std::string(row.mKeys));
  }
}

std::string Rules(const std::vector<std::string>& names) {
  std::string rules;
  for (const std::string& name : names) {
    rules += (rules.empty() ? "" : ",\n") + std::string(R"({"name": ")") + name + R"(", "type": "Video"})";
  }
  return ListOfRules(rules);
}

/// What is missing or one too many is told by name, and what follows it is not.
TEST(LanguagesTest, TellsWhichRulesAreMissing) {
  const struct {
    std::vector<std::string> mExpected;
    std::vector<std::string> mNames;
    std::vector<std::string> mFindings;
    const char* mWhat;  ///< of the first one
  } rows[] = {
      {{"A A", "B B", "C C"}, {"A A", "B B", "C C"}, {}, ""},
      {{"A A", "B B", "C C"},
       {"A A", "C C"},
       {"BL901 3:1"},
       "rule 1 \"B B\" of list.en_US.json is missing before this one"},
      {{"A A", "B B", "C C"},
       {"A A", "B B"},
       {"BL901 1:1"},
       "rule 2 \"C C\" of list.en_US.json is missing at the end"},
      {{"A A", "C C"}, {"A A", "B B", "C C"}, {"BL901 3:1"}, "the rule is not in list.en_US.json"},
      {{"A A", "B B", "C C", "D D"},
       {"A A", "X X", "D D"},
       {"BL901 3:1", "BL901 4:1"},
       "the rule differs from rule 1 of list.en_US.json in \"name\""},
      {{"A A", "B B", "C C", "D D", "E E"},
       {"B B", "D D", "E E", "F F"},
       {"BL901 2:1", "BL901 3:1", "BL901 5:1"},
       "rule 0 \"A A\" of list.en_US.json is missing before this one"},
      {{"A A", "B B"},
       {"B B", "A A"},
       {"BL901 2:1", "BL901 3:1"},
       "the rule differs from rule 0 of list.en_US.json in \"name\""},
  };
  for (const auto& row : rows) {
    const Findings findings =
        Lint({{"list.en_US.json", Rules(row.mExpected)}, {"list.ja_JP.json", Rules(row.mNames)}});
    EXPECT_EQ(testsupport::CodesAndPlaces(findings), row.mFindings);
    if (!findings.empty() && *row.mWhat != 0) {
      EXPECT_EQ(findings[0].mWhat, row.mWhat);
    }
  }
}

TEST(LanguagesTest, RulesOfOneNameAreToldApart) {
  const auto rule = [](const char* version) {
    return std::string(R"({"name": "A B", "type": "Video", "versions": [")") + version + "\"]}";
  };
  const std::string both = rule("1.0") + ",\n" + rule("2.0") + ",\n" + rule("3.0");
  const Findings findings =
      Lint({{"list.en_US.json", ListOfRules(both)}, {"list.ja_JP.json", Two(rule("1.0"), rule("3.0"))}});
  ASSERT_EQ(testsupport::CodesAndPlaces(findings), std::vector<std::string>{"BL901 3:1"});
  EXPECT_EQ(findings[0].mWhat, "rule 1 \"A B\" of list.en_US.json is missing before this one");
}

TEST(LanguagesTest, ASecondWarningStandsInEveryLanguage) {
  const std::string without = ListOfRules(kRule);
  const std::string with = Replaced(without, "\"blocklist\"", "\"second_warning\": \"W\", \"blocklist\"");
  EXPECT_TRUE(Lint({{"list.en_US.json", with}, {"list.de_DE.json", with}}).empty());
  Findings findings = Lint({{"list.en_US.json", with}, {"list.de_DE.json", without}});
  ASSERT_EQ(testsupport::Codes(findings), std::vector<std::string>{"BL901"});
  EXPECT_EQ(findings[0].mWhat, "the list has no \"second_warning\", and list.en_US.json has one");
  findings = Lint({{"list.en_US.json", without}, {"list.de_DE.json", with}});
  ASSERT_EQ(testsupport::Codes(findings), std::vector<std::string>{"BL901"});
  EXPECT_EQ(findings[0].mWhat, "the list has a \"second_warning\", and list.en_US.json has none");
}

/// Other lists, other directories, other names are no languages of one list.
TEST(LanguagesTest, OnlyListsOfOneSetAreCompared) {
  for (const char* const path :
       {"list.json", "other.de_DE.json", "d/list.de_DE.json", "list.de_DE.txt", "list.old-copy.json"}) {
    EXPECT_TRUE(Lint({{"list.en_US.json", ListOfRules(kRule)}, {path, ListOfRules(kOther)}}).empty()) << path;
  }
}

TEST(LanguagesTest, AListThatCannotBeReadIsNotCompared) {
  const Findings findings = Lint({{"list.en_US.json", ListOfRules(kRule)},
                                  {"list.de_DE.json", ListOfRules("5")},
                                  {"list.fr_FR.json", "["}});
  EXPECT_EQ(testsupport::Codes(findings), (std::vector<std::string>{"BL201", "BL101"}));
}

}  // namespace
