#include <algorithm>

#include "tests/authoring/Lists.h"

namespace {

using testsupport::CodesAndPlaces;
using testsupport::LintRules;

std::string Video(const std::string& members) {
  return R"({"name": "Test Vendor", "type": "Video")" + (members.empty() ? members : ", " + members) + "}";
}

std::string Memory(const std::string& members) {
  return R"({"name": "memory.mb", "type": "Property", )" + members + "}";
}

TEST(NeighboursTest, FindsRulesThatOthersCover) {
  const struct {
    std::string mFirst;
    std::string mSecond;
    std::vector<std::string> mFindings;
  } rows[] = {
      {Video(""), Video(R"("versions": ["1.0"])"), {"BL801 3:1"}},
      {Video(R"("versions": ["1.0"])"), Video(""), {"BL801 2:1"}},
      {Video(R"("versions": ["1.0-2.0"])"), Video(R"("versions": ["1.5-3.0"])"), {}},
      {Video(R"("versions": ["1.0-1.+", "2.0-3.0"])"), Video(R"("versions": ["1.5-2.5"])"), {"BL801 3:1"}},
      {Video(R"("versions": ["1.0-3.0"])"), Video(R"("versions": ["1.5", "2.5"])"), {"BL801 3:1"}},
      {Video(R"("versions": ["1.0-3.0"])"), Video(R"("versions": ["1.5", "3.5"])"), {}},
      // Of equal ones the first stays.
      {Video(R"("versions": ["1.0"])"), Video(R"("versions": ["1.0"])"), {"BL801 3:1"}},
      // A graver rule for some versions is no doublet, the other way round it is.
      {Video(R"("error_level": "INFO")"), Video(R"("versions": ["1.0"], "error_level": "FATAL")"), {}},
      {Video(R"("error_level": "FATAL")"),
       Video(R"("versions": ["1.0"], "error_level": "INFO")"),
       {"BL801 3:1"}},
      // Another message says more.
      {Video(""),
       Video(R"("versions": ["1.0"], "info_message": "M", "info_url": "https://example.com/")"),
       {"BL804 3:1"}},
      // Mask and modulus must be equal.
      {Video(R"("versions": ["0.0.1.0-0.0.3.0"], "version_mask": "0.0.+")"),
       Video(R"("versions": ["0.0.2.0"], "version_mask": "0.0.+")"),
       {"BL801 3:1"}},
      {Video(R"("versions": ["0.0.1.0-0.0.3.0"], "version_mask": "0.0.+")"),
       Video(R"("versions": ["0.0.2.0"])"),
       {}},
      // Conditions: the same or more of them.
      {Video(""), Video(R"("dependencies": [{"name": "Windows", "type": "OS"}])"), {"BL801 3:1"}},
      {Video(R"("dependencies": [{"name": "Windows", "type": "OS"}])"), Video(R"("versions": ["1.0"])"), {}},
      {Video(R"("dependencies": [{"name": "Windows", "type": "OS"}])"),
       Video(
           R"("versions": ["1.0"], "dependencies": [{"type": "OS", "name": "Windows", "comment": "the same"}])"),
       {"BL801 3:1"}},
      // Properties
      {Memory(R"("ilt": "4000")"), Memory(R"("igt": "0", "ilt": "2000")"), {"BL801 3:1"}},
      {Memory(R"("ilt": "4000", "ine": "5")"), Memory(R"("ilt": "2000")"), {"BL703 3:1"}},
      {Memory(R"("eq": "a")"), Memory(R"("eq": "a")"), {"BL801 3:1"}},
      // Other names
      {Video(""), R"({"name": "Test Vendor", "type": "Audio"})", {}},
      {Video(""), R"({"name": "Test Vendor 2", "type": "Video"})", {}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> findings = CodesAndPlaces(LintRules(row.mFirst + ",\n" + row.mSecond));
    if (row.mFindings.empty() || !row.mFindings[0].starts_with("BL703")) std::erase(findings, "BL703 3:1");
    EXPECT_EQ(findings, row.mFindings) << row.mFirst << '\n' << row.mSecond;
  }
}

TEST(NeighboursTest, FindsRulesThatShareAnIdentifier) {
  const struct {
    std::string mFirst;
    std::string mSecond;
    bool mIsShared;
  } rows[] = {
      {Video(R"("versions": ["0.0.1.0"], "version_mask": "0.0.+")"), Video(R"("versions": ["0.0.1.0"])"),
       true},
      {Video(R"("versions": ["0.0.1.0"], "version_mod": "0.0.9.+")"), Video(R"("versions": ["0.0.1.0"])"),
       true},
      {Memory(R"("ieq": "1")"), Memory(R"("ieq": "2")"), true},
      {Memory(R"("ieq": "1")"), Memory(R"("ieq": "2", "error_level": "WARN")"), false},
      // The default text is a part of it.
      {Memory(R"("ieq": "1", "info_message": "About it.", "info_url": "https://example.com/")"),
       Memory(R"("ieq": "2")"), true},
      {Memory(R"("ieq": "1", "info_message": "Other.", "info_url": "https://example.com/")"),
       Memory(R"("ieq": "2")"), false},
      {Memory(R"("ieq": "1", "info_url": "https://example.com/")"), Memory(R"("ieq": "2")"), true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CodesAndPlaces(LintRules(row.mFirst + ",\n" + row.mSecond)),
              row.mIsShared ? std::vector<std::string>{"BL703 3:1"} : std::vector<std::string>())
        << row.mFirst << '\n'
        << row.mSecond;
  }
}

TEST(NeighboursTest, TellsInWhatRulesOfOneIdentifierDiffer) {
  const struct {
    std::string mFirst;
    std::string mSecond;
    const char* mKeys;
  } rows[] = {
      {Memory(R"("ieq": "1", "comment": "x")"), Memory(R"("ieq": "2", "error_level": "INFO")"), "\"ieq\""},
      {Video(R"("versions": ["0.0.1.0"], "version_mask": "0.0.+")"), Video(R"("versions": ["0.0.1.0"])"),
       "\"version_mask\""},
      // The texts of ranges are put one behind the other.
      {Video(R"("versions": ["1.0", "-5.0"])"), Video(R"("versions": ["1.0-5.0"])"), "\"versions\""},
  };
  for (const auto& row : rows) {
    const auto findings = LintRules(row.mFirst + ",\n" + row.mSecond);
    const auto shared = std::find_if(findings.begin(), findings.end(), [](const authoring::Finding& finding) {
      return finding.mCode == authoring::Code::kSharedIdentifier;
    });
    ASSERT_NE(shared, findings.end()) << row.mFirst;
    EXPECT_EQ(shared->mWhat, "the rule has the identifier of rule 0: they differ in " +
                                 std::string(row.mKeys) + ", but in nothing that the identifier tells apart");
  }
}

TEST(NeighboursTest, ASameMessageMayHaveAnotherLink) {
  const auto findings =
      LintRules(Video(R"("info_message": "M", "info_url": "https://example.com/a")") + ",\n" +
                Video(R"("info_message": "M", "info_url": "https://example.com/b")"));
  ASSERT_EQ(testsupport::Codes(findings), std::vector<std::string>{"BL801"});
  EXPECT_TRUE(findings[0].mWhat.ends_with("with the same message and another link")) << findings[0].mWhat;
}

/// Nobody writes so many alike; they end in a note, not in an hour.
TEST(NeighboursTest, ComesToAnEndWithManyRulesOfOneName) {
  std::string rules;
  for (int index = 0; index < 4000; ++index) {
    rules += (index == 0 ? "" : ",\n") + Video("\"versions\": [\"" + std::to_string(index) + ".1\"]");
  }
  EXPECT_EQ(testsupport::Codes(LintRules(rules)), std::vector<std::string>{"BL803"});
}

}  // namespace
