#include "tests/authoring/Lists.h"

namespace {

using testsupport::Codes;
using testsupport::LintRules;

TEST(PropertiesTest, FindsComparisonsThatDoNotSayWhatTheyMean) {
  const struct {
    const char* mComparisons;
    std::vector<std::string> mCodes;
  } rows[] = {
      {R"("igt": "0", "ilt": "4000")", {}},
      {R"("eq": "x11")", {}},
      {"\"comment\": 1", {"BL505"}},
      // Both kinds
      {R"("regex": "^[0-9].*$", "ilt": "4000")", {"BL501"}},
      {R"("ne": "", "igt": "1", "ilt": "2")", {"BL501", "BL501"}},
      // Numbers as texts
      {R"("lt": "4000")", {"BL502"}},
      {R"("gte": "10.5")", {"BL502"}},
      {R"("gte": "2000-01-01", "lt": "2011-01-01")", {}},
      {R"("lt": "v9")", {}},
      {R"("eq": "4000")", {}},
      // Operands
      {R"("ilt": "+5", "igt": "-5")", {}},
      {R"("ilt": "16 GB")", {"BL503"}},
      {R"("ilt": "many")", {"BL503"}},
      {R"("ilt": "")", {"BL503"}},
      {R"("ilt": " 5")", {"BL503"}},
      {R"("ilt": "0x10")", {"BL503"}},
      {R"("ilt": "+-5")", {"BL503"}},
      {R"("ilt": "9223372036854775807")", {}},
      {R"("ilt": "9223372036854775808")", {"BL503"}},
      // Contradictions
      {R"("igt": "5", "ilt": "6")", {"BL504"}},
      {R"("igt": "5", "ilt": "7")", {}},
      {R"("igte": "5", "ilte": "5")", {}},
      {R"("igte": "6", "ilte": "5")", {"BL504"}},
      {R"("ieq": "5", "ine": "5")", {"BL504"}},
      {R"("ieq": "5", "igt": "5")", {"BL504"}},
      {R"("igt": "9223372036854775807")", {"BL504"}},
      {R"("ilt": "-9223372036854775808")", {"BL504"}},
      {R"("gt": "b", "lt": "a")", {"BL504"}},
      {R"("gt": "a", "lt": "b")", {}},
      {R"("gte": "a", "lte": "a")", {}},
      {R"("gt": "a", "lte": "a")", {"BL504"}},
      {R"("eq": "a", "ne": "a")", {"BL504"}},
      {R"("eq": "3", "regex": "^5$")", {"BL504"}},
      {R"("eq": "3", "regex": "^[0-9]$")", {}},
      {R"("gte": "a", "lte": "a", "regex": "^b.*$")", {"BL504"}},
      {R"("eq": "3", "regex": "(")", {"BL401"}},
      {R"("eq": "b", "lt": "a")", {"BL504"}},
      {R"("lt": "")", {"BL504"}},
  };
  for (const auto& row : rows) {
    const std::string rule = R"({"name": "a.b", "type": "Property", )" + std::string(row.mComparisons) + "}";
    EXPECT_EQ(Codes(LintRules(rule)), row.mCodes) << row.mComparisons;
  }
}

TEST(PropertiesTest, ADependencyMayAskForAPropertyAlone) {
  EXPECT_EQ(
      Codes(LintRules(
          R"({"name": "Linux", "type": "OS", "dependencies": [{"name": "gpu.count", "type": "Property"}]})")),
      std::vector<std::string>());
}

TEST(PropertiesTest, TellsHowAnOperandIsRead) {
  const auto findings = LintRules(R"({"name": "a.b", "type": "Property", "ilt": "16 GB"})");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].mWhat,
            "the operand \"16 GB\" of \"ilt\" is no integer of 64 bits, and is read as 16");
}

}  // namespace
