// What code hosts, scripts and people get to read.
#include "authoring/output/Outputs.h"

#include <gtest/gtest.h>

#include "platform/qelcore/Json.h"

namespace {

using authoring::Code;
using authoring::Finding;
using authoring::Findings;

Finding Make(Code code, const std::string& file) {
  return {code, file, {3, 7}, 2, "Windows", "something is wrong", "Mend it."};
}

TEST(OutputsTest, TextHasPlaceCodeRuleAndMend) {
  EXPECT_EQ(authoring::DescribeAsText(Make(Code::kReversedRange, "a.json")),
            (std::vector<std::string>{"a.json:3:7: error BL303: rule 2 \"Windows\": something is wrong",
                                      "    Mend it."}));
  EXPECT_EQ(authoring::DescribeAsText({Code::kNotJson, "a.json", {}, {}, {}, "it is empty", {}}),
            std::vector<std::string>{"a.json: error BL101: it is empty"});
}

TEST(OutputsTest, TheSummaryCountsBySeverity) {
  Findings findings;
  EXPECT_EQ(authoring::Summarise(findings), "no findings");
  findings = {Make(Code::kNoRules, "a"), Make(Code::kNotJson, "a"), Make(Code::kNotJson, "a")};
  EXPECT_EQ(authoring::Summarise(findings), "2 errors, 1 note");
  EXPECT_TRUE(authoring::HasErrors(findings));
  EXPECT_FALSE(authoring::HasErrors({Make(Code::kUnknownKey, "a"), Make(Code::kNoRules, "a")}));
}

TEST(OutputsTest, SarifRefersToFiles) {
  const struct {
    const char* mPath;
    const char* mReference;
  } rows[] = {
      {"list.json", "list.json"},
      {"data/my list.json", "data/my%20list.json"},
      {"/data/50%#?.json", "file:///data/50%25%23%3F.json"},
      {"C:\\data\\list.json", "file:///C:/data/list.json"},
      {"\xC3\xA4.json", "%C3%A4.json"},
  };
  for (const auto& row : rows) {
    const std::string log = authoring::WriteSarif({Make(Code::kReversedRange, row.mPath)}, "1.0");
    EXPECT_NE(log.find("\"artifactLocation\":{\"uri\":\"" + std::string(row.mReference) + "\"}"),
              std::string::npos)
        << log;
  }
}

TEST(OutputsTest, SarifWithoutFindingsIsWhole) {
  const std::any value = qelcore::json::Parse(authoring::WriteSarif({}, "1.0"));
  const auto& run = qelcore::json::AsDictionary(
      qelcore::json::FindArray(qelcore::json::AsDictionary(value), "runs")->at(0));
  EXPECT_TRUE(qelcore::json::FindArray(run, "results")->empty());
}

}  // namespace
