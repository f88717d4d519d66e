// Whatever is in a file, lint comes to an end and says what the reader does.
#include "authoring/Lint.h"

#include <algorithm>
#include <filesystem>
#include <random>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/authoring/Lists.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestHost.h"

namespace {

using authoring::Code;
using authoring::Finding;
using qelsystemcompatibilityreport::SCRBlocklist;

const std::filesystem::path kCorpus = std::filesystem::path(QELSCR_SOURCE_DIR) / "tests/fuzz/corpus";

std::vector<std::string> TextsOf(const char* folder) {
  std::vector<std::string> texts;
  for (const auto& entry : std::filesystem::directory_iterator(kCorpus / folder)) {
    texts.push_back(testsupport::ReadWholeFile(entry.path()));
  }
  return texts;
}

/// Whether a finding says that the list would not verify: nothing or no rule is read, or a default is
/// missing.
bool SaysRefused(const Finding& finding) {
  switch (finding.mCode) {
    case Code::kNotJson:
    case Code::kNotAnObject:
    case Code::kVersionRefused:
    case Code::kDefaultMissing:
      return true;
    case Code::kWrongType:
      // The last thing that is read.
      return finding.mWhat.find("\"second_warning\"") == std::string::npos;
    case Code::kNotARule:
    case Code::kUnknownKind:
    case Code::kWrongTypeInRule:
    case Code::kRuleVersionRefused:
      return !finding.mMend.starts_with("Such a dependency never holds");
    default:
      return false;
  }
}

void ExpectAgreement(const std::string& text) {
  const authoring::Findings findings = testsupport::LintText(text);
  EXPECT_EQ(SCRBlocklist(text).Verify(), std::none_of(findings.begin(), findings.end(), SaysRefused))
      << text.substr(0, 2000) << '\n'
      << testing::PrintToString(testsupport::CodesAndPlaces(findings));
}

TEST(LintTest, AgreesWithTheReaderOnEveryCorpus) {
  const testsupport::TestHost host;
  for (const char* const folder :
       {"blocklist", "json", "rule", "snapshot", "state", "localisation", "expression"}) {
    for (const std::string& text : TextsOf(folder)) ExpectAgreement(text);
  }
  for (const std::string& text : TextsOf("rule")) ExpectAgreement(testsupport::ListOfRules(text));
}

TEST(LintTest, AgreesWithTheReaderOnDamagedLists) {
  const testsupport::TestHost host;
  std::vector<std::string> texts = TextsOf("blocklist");
  for (const std::string& rule : TextsOf("rule")) texts.push_back(testsupport::ListOfRules(rule));
  const std::string signs = "\"\\{}[],:0129.e-+tfn \n\xC3\x80";
  std::mt19937 random(1);
  const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random()) % bound; };
  for (int round = 0; round < 2000; ++round) {
    std::string text = texts[below(texts.size())];
    if (text.empty() || text.size() > 4000) continue;
    for (std::size_t change = 0; change <= below(3); ++change) {
      const std::size_t place = below(text.size());
      if (below(3) == 0) {
        // A value of another type, as a tired author writes it.
        const std::size_t end = text.find_first_of(",}]", place);
        const std::size_t begin = text.find_last_of(":[,", end == std::string::npos ? place : end);
        if (begin != std::string::npos && end != std::string::npos && begin < end) {
          static constexpr const char* kValues[] = {"0",   "null", "\"\"",   "[]",      "{}",
                                                    "1.0", "true", "\"OS\"", "\"5.0-\""};
          text.replace(begin + 1, end - begin - 1, kValues[below(std::size(kValues))]);
        }
      } else {
        text[place] = signs[below(signs.size())];
      }
    }
    ExpectAgreement(text);
  }
}

TEST(LintTest, ReadsDeepNests) {
  std::string rule = R"({"name": "Windows", "type": "OS"})";
  for (int level = 0; level < 120; ++level) {
    rule = R"({"name": "Windows", "type": "OS", "dependencies": [)" + rule + "]}";
  }
  EXPECT_EQ(testsupport::Codes(testsupport::LintRules(rule)), std::vector<std::string>());
}

TEST(LintTest, LargeListsTakeNoTimeToSpeakOf) {
  std::string rules;
  for (int index = 0; index < 20000; ++index) {
    rules += (index == 0 ? "" : ",\n") + std::string(R"({"name": "^Example Device )") +
             std::to_string(index) +
             R"(\\b.*$", "type": "Video", "versions": ["1.0-2.0", "3.0"], "error_level": "WARN"})";
  }
  EXPECT_EQ(testsupport::Codes(testsupport::LintRules(rules)), std::vector<std::string>());
}

/// A list of which everything is wrong is told of as far as anybody reads.
TEST(LintTest, FindingsAreBounded) {
  std::string rules = "5";
  for (int index = 0; index < 50000; ++index) rules += ",5";
  const authoring::Findings findings = testsupport::LintRules(rules);
  EXPECT_EQ(findings.size(), 10001U);
  EXPECT_EQ(testsupport::Codes(findings).back(), "BL109");
  EXPECT_EQ(findings.back().mWhat, "40001 more findings are not told");
}

/// A list without line breaks, as a program writes it.
TEST(LintTest, LongLinesTakeNoTimeToSpeakOf) {
  std::string rules =
      R"({"name": "Windows", "type": "OS", "comment": ")" + std::string(16'000'000, 'x') + "\"}";
  for (int index = 0; index < 9000; ++index) rules += ",5";
  const authoring::Findings findings = testsupport::LintRules(rules);
  ASSERT_EQ(findings.size(), 9000U);
  EXPECT_EQ(testsupport::CodesAndPlaces(findings).back(), "BL201 2:16018048");
}

TEST(LintTest, FilesComeInTheirOrder) {
  const authoring::Findings findings = authoring::Lint({{"b.json", "5"}, {"a.json", "{"}});
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0].mFile, "b.json");
  EXPECT_EQ(findings[1].mFile, "a.json");
}

}  // namespace
