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

TEST(LanguagesTest, ListsHaveTheSameNumberOfRules) {
  const Findings findings =
      Lint({{"list.en_US.json", Two(kRule, kOther)}, {"list.ja_JP.json", ListOfRules(kOther)}});
  EXPECT_EQ(testsupport::CodesAndPlaces(findings), (std::vector<std::string>{"BL901 1:1", "BL901 2:1"}));
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
