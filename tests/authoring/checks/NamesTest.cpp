#include "tests/authoring/Lists.h"

namespace {

using testsupport::Codes;

std::string Rule(const std::string& kind, const std::string& name) {
  return R"({"name": ")" + name + R"(", "type": ")" + kind + "\"}";
}

TEST(NamesTest, TellsNamesFromExpressions) {
  const struct {
    const char* mKind;
    const char* mName;  ///< as JSON
    std::vector<std::string> mCodes;
  } rows[] = {
      {"Video", "", {"BL403"}},
      {"File", "", {"BL403"}},
      {"Property", "", {"BL505", "BL403"}},
      // Plain names
      {"Video", "Test Vendor", {}},
      {"OS", "Windows", {}},
      {"Video", "Mesa", {}},
      {"Video", "Intel(R) HD Graphics", {"BL404"}},
      {"Video", "NVIDIA Corporation GA102 [GeForce RTX 3080]", {"BL404"}},
      {"Network", "Realtek Co., Ltd. RTL8125", {"BL404"}},
      {"Audio", "USB Audio (2-in", {"BL408"}},
      {"Audio", "+5V Out", {"BL408"}},
      // Parts of names
      {"Network", "Miniport", {"BL406"}},
      {"Video", "NVIDIA", {"BL406"}},
      {"Video", "NVIDIA*", {"BL406"}},
      {"Video", "*NVIDIA*", {"BL406"}},
      {"Video", "^NVIDIA", {"BL406"}},
      {"Video", "GeForce$", {"BL406"}},
      {"Video", "\\\\bRadeon\\\\b", {"BL406"}},
      {"Video", "^NVIDIA .*", {}},
      {"Video", "NVIDIA .*", {}},
      {"Video", ".*Radeon", {}},
      {"Video", ".*Radeon$", {}},
      {"Video", "^.*\\\\bRadeon\\\\b.*$", {}},
      {"Video", "^(GeForce|Quadro)$", {}},
      {"Video", "^Price in \\\\$", {"BL406"}},
      {"Video", "^.*NVIDIA.*$|AMD", {"BL406"}},
      {"Video", "^NVIDIA.*$|^AMD.*$", {}},
      {"Video", "NVIDIA GeForce", {"BL406"}},
      {"Video", "GeForce RTX 3060", {"BL406"}},
      {"Video", "NVIDIA GeForce RTX 3060", {}},
      {"Video", "Radeon RX 580 Series", {}},
      {"Audio", "Realtek Audio", {}},
      // Systems
      {"OS", "Windows 10", {"BL410"}},
      {"OS", "^Windows 10$", {"BL410"}},
      {"OS", "^Windows 1[01].*$", {"BL410"}},
      {"OS", "windows", {"BL410"}},
      {"OS", "^windows$", {"BL410"}},
      {"OS", "MacOS", {"BL410"}},
      {"OS", "ubuntu", {"BL410"}},
      {"OS", "^(Windows|Linux)$", {}},
      {"OS", "^(?!Windows$).*$", {}},
      {"OS", "^Win.*$", {}},
      {"OS", "Fedora Linux", {}},
      {"OS", "Some Other Linux", {}},
      {"Video", "Windows Virtual Display", {}},
      // One backslash where two were meant
      {"Video", "^.*\\bNVIDIA\\b.*$", {"BL409"}},
      {"OS", "Win\\tdows", {"BL409"}},
      {"File", "C:\\temp\\new\\bin.dll", {"BL409"}},
      {"File", "C:\\\\temp\\\\new\\\\bin.dll", {}},
      {"Video", "^NVIDIA[ \\t]+.*$", {}},
      {"Video", "A B\\u0001", {"BL409"}},
      // Expressions that are names
      {"Video", "^Intel(R) HD Graphics$", {"BL405"}},
      {"Video", "^Intel\\\\(R\\\\) HD Graphics$", {}},
      {"Video", "^Core[(R)]2$", {}},
      {"Video", "^Core(TM)2 and (R).*$", {"BL405"}},
      // What the engine refuses
      {"Video", "^(NVIDIA.*$", {"BL401"}},
      {"Video", "^[a-$", {"BL401"}},
      {"Video", "^a{2,1}$", {"BL401"}},
      {"Video", "^(a)\\\\1$", {"BL402"}},
      {"Video", "^(?=(?=(?=a))).*$", {"BL402"}},
      {"Video", "^(?:ab){2000}$", {"BL402"}},
      {"Video", "a{9999}", {"BL402"}},
      // Bytes
      {"Video", "^[äö].*$", {"BL407"}},
      {"Video", "^(ä|ö).*$", {}},
      {"Video", "^ä[a-z].*$", {}},
      // Paths and property names are no expressions.
      {"File", "/opt/(", {}},
      {"File", "/opt/a.b", {}},
      {"Property", "^memory", {"BL505"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Codes(testsupport::LintRules(Rule(row.mKind, row.mName))), row.mCodes)
        << row.mKind << ' ' << row.mName;
  }
}

TEST(NamesTest, SuggestsWhatToWrite) {
  const struct {
    const char* mName;
    const char* mMend;
  } rows[] = {
      {"Miniport",
       R"(Write "^.*\\bMiniport\\b.*$" for every name that holds the word, or "^Miniport$" when it is the whole name.)"},
      {"^NVIDIA", R"(Write "^NVIDIA.*$".)"},
      {"GeForce$", R"(Write "^.*GeForce$".)"},
      {"\\\\bRadeon\\\\b", R"(Write "^.*\\bRadeon\\b.*$".)"},
      {"^.*NVIDIA.*$|AMD", R"(Write "^.*NVIDIA.*$|^.*AMD.*$".)"},
      {"^NVIDIA|^(AMD|ATI)", R"(Write "^NVIDIA.*$|^(AMD|ATI).*$".)"},
      {"^.*\\bNVIDIA\\b.*$",
       R"(Did you mean "^.*\\bNVIDIA\\b.*$"? JSON wants a backslash that stands for itself twice.)"},
      {"A B\\u0001", "Take it out."},
      {"*Radeon TM*", R"(Write "^.*Radeon TM.*$".)"},
      {"^Intel(R) Core(TM)2$", R"(Write "^Intel\\(R\\) Core\\(TM\\)2$".)"},
      {"Intel(R) HD",
       R"(Nothing need change. "^Intel\\(R\\) HD$" says the same without the second meaning.)"},
  };
  for (const auto& row : rows) {
    const auto findings = testsupport::LintRules(Rule("Video", row.mName));
    ASSERT_EQ(findings.size(), 1U) << row.mName;
    EXPECT_EQ(findings[0].mMend, row.mMend);
    EXPECT_EQ(findings[0].mPlace.mColumn, 10U);
  }
}

/// The suggestion is the end of the matter.
TEST(NamesTest, WhatIsSuggestedIsClean) {
  for (const char* const name : {"Miniport", "^NVIDIA", "GeForce$", "\\\\bRadeon\\\\b", "*Radeon TM*",
                                 "^Intel(R) HD$", "Intel(R) HD", "USB Audio (2-in", "Miniport"}) {
    const auto findings = testsupport::LintRules(Rule("Video", name));
    ASSERT_EQ(findings.size(), 1U) << name;
    const std::string& mend = findings[0].mMend;
    const std::size_t begin = mend.find('"') + 1;
    const std::string suggested = mend.substr(begin, mend.find('"', begin) - begin);
    EXPECT_EQ(Codes(testsupport::LintRules(Rule("Video", suggested))), std::vector<std::string>())
        << suggested;
  }
}

TEST(NamesTest, LooksAtTheExpressionsOfProperties) {
  const struct {
    const char* mOperand;
    std::vector<std::string> mCodes;
  } rows[] = {
      {"^WDDM 1\\\\..*$", {}},     {"^WDDM 1", {"BL406"}},       {"*", {"BL401"}},   {"(a)\\\\1", {"BL402"}},
      {"^WDDM\\t1.*$", {"BL409"}}, {"^Core(TM)2.*$", {"BL405"}}, {"[ä]", {"BL407"}}, {"nouveau", {}},
  };
  for (const auto& row : rows) {
    const std::string rule =
        R"({"name": "a.b", "type": "Property", "regex": ")" + std::string(row.mOperand) + "\"}";
    EXPECT_EQ(Codes(testsupport::LintRules(rule)), row.mCodes) << row.mOperand;
  }
}

/// Expressions that together cost more than those of a match may are refused there, and so they are here; and
/// this comes to an end.
TEST(NamesTest, AListOfCostlyExpressionsIsToldOf) {
  std::string rules;
  for (int index = 0; index < 400; ++index) {
    rules += std::string(index == 0 ? "" : ",\n") +
             Rule("Video", "^(?=.*(?=.*a{900}" + std::to_string(index) + ").*b).*$");
  }
  const auto findings = testsupport::LintRules(rules);
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(Codes(findings).back(), "BL402");
}

}  // namespace
