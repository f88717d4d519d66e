// Writing rules as JSON.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using qelsystemcompatibilityreport::VersionRange;
using testsupport::ReadRule;

std::string Written(const SCRRule& rule) {
  return qelcore::json::Serialise(rule.ToJSON());
}

TEST(SCRRuleJsonWritingTest, TheTextByteForByte) {
  const struct {
    const char* mRead;
    const char* mWritten;
  } rows[] = {
      {R"({"type":"Video","name":"A device"})",
       R"({"error_level":"INFO","name":"A device","osblc_version":1,"osc_version":1,"type":"Video",)"
       R"("versions":[]})"},
      {R"({"type":"File","name":"/opt/x","error_level":"fatal"})",
       R"({"error_level":"INFO","name":"/opt/x","osblc_version":1,"osc_version":1,"type":"File",)"
       R"("versions":[]})"},
      // "version" and "max_version" become a range; "osblc_version" is always 1.
      {R"({"type":"OS","name":"Windows","version":"10.0.17763.1","osblc_version":9,"osc_version":9})",
       R"({"error_level":"INFO","name":"Windows","osblc_version":1,"osc_version":1,"type":"OS",)"
       R"("versions":["10.0.17763.1"]})"},
      {R"({"type":"OS","name":"Windows","version":"6","max_version":"10.0.+"})",
       R"({"error_level":"INFO","name":"Windows","osblc_version":1,"osc_version":1,"type":"OS",)"
       R"("versions":["6.0.0.0-10.0.+"]})"},
      {R"({"type":"OS","name":"Windows","max_version":"10"})",
       R"({"error_level":"INFO","name":"Windows","osblc_version":1,"osc_version":1,"type":"OS",)"
       R"("versions":["-10.0.0.0"]})"},
      // Everything.
      {R"({"type":"Video","name":"^A.*$","versions":["0.0.4.0 - 0.0.4.+","5",""],"version_mask":"0.0.+",
           "version_mod":"0.0.10.+","info_message":"A \"message\"","info_url":"https://example.com/a",
           "error_level":"ERROR","comment":"why","dependencies":[{"type":"OS","name":"Windows",
           "version":"10"},{"type":"Property","name":"p","ieq":"1"}]})",
       R"({"dependencies":[{"error_level":"INFO","name":"Windows","osblc_version":1,"osc_version":1,)"
       R"("type":"OS","versions":["10.0.0.0"]},{"error_level":"INFO","ieq":"1","name":"p",)"
       R"("osblc_version":1,"osc_version":1,"type":"Property"}],"error_level":"ERROR",)"
       R"("info_message":"A \"message\"","info_url":"https://example.com/a","name":"^A.*$",)"
       R"("osblc_version":1,"osc_version":1,"type":"Video","version_mask":"0.0.+",)"
       R"("version_mod":"0.0.10.+","versions":["0.0.4.0-0.0.4.+","5.0.0.0",""]})"},
      // A mask of four zeros is set.
      {R"({"type":"Audio","name":"x","version_mask":"0.0.0.0","version_mod":"beta","error_level":"FATAL"})",
       R"({"error_level":"FATAL","name":"x","osblc_version":1,"osc_version":1,"type":"Audio",)"
       R"("version_mask":"0.0.0.0","versions":[]})"},
      // Property rules have no version keys; all their operators are written.
      {R"({"type":"Property","name":"x","value":"v","version":"5","versions":["1"],"version_mask":"1",
           "version_mod":"1","max_version":"7"})",
       R"({"error_level":"INFO","name":"x","osblc_version":1,"osc_version":1,"type":"Property"})"},
      {R"({"type":"Property","name":"x","eq":"0","ne":"1","lt":"2","lte":"3","gt":"4","gte":"5","ieq":"6",
           "ine":"7","ilt":"8","ilte":"9","igt":"10","igte":"11","regex":"12","error_level":"WARN",
           "info_message":"m"})",
       R"({"eq":"0","error_level":"WARN","gt":"4","gte":"5","ieq":"6","igt":"10","igte":"11","ilt":"8",)"
       R"("ilte":"9","ine":"7","info_message":"m","lt":"2","lte":"3","name":"x","ne":"1",)"
       R"("osblc_version":1,"osc_version":1,"regex":"12","type":"Property"})"},
  };
  for (const auto& row : rows) EXPECT_EQ(Written(ReadRule(row.mRead)), row.mWritten) << row.mRead;
}

TEST(SCRRuleJsonWritingTest, APropertyRuleMadeOfTextComparisonsAlone) {
  const SCRRule rule(OSComponentType::kProperty, "x",
                     SCRRule::PropertyComparisons{{SCRPropertyOperator::kRegularExpression, ".*"}}, "", "u",
                     {}, SCRRuleErrorLevel::FATAL);
  EXPECT_EQ(Written(rule), R"({"error_level":"FATAL","info_url":"u","name":"x","osblc_version":1,)"
                           R"("osc_version":1,"regex":".*","type":"Property"})");
}

TEST(SCRRuleJsonWritingTest, WhatIsWrittenIsReadBackEqual) {
  for (const char* const text : {
           R"({"type":"Video","name":"A device"})",
           R"({"type":"Video","name":"A device","versions":["1","2 - 3.+","-4","","+"]})",
           R"({"type":"Audio","name":"","versions":["0.0.0.0"],"version_mask":"0.0.0.0","version_mod":"+"})",
           R"({"type":"Network","name":"é\u0000\"\\\n","info_message":"日本語","info_url":"u"})",
           R"({"type":"Video","name":"x","max_version":"7","error_level":"WARN"})",
           R"({"type":"Property","name":"x","eq":"","regex":"(","ilt":"abc","error_level":"ERROR"})",
           R"({"type":"File","name":"$HOME/x","dependencies":[{"type":"OS","name":"a","dependencies":
              [{"type":"OS","name":"b","version_mask":"1","error_level":"FATAL"}]}]})",
       }) {
    const SCRRule rule = ReadRule(text);
    SCRRule again;
    EXPECT_TRUE(again.FromJSON(rule.ToJSON())) << text;
    EXPECT_EQ(again, rule) << text;
    EXPECT_EQ(again.GetID(), rule.GetID()) << text;
    EXPECT_EQ(Written(again), Written(rule)) << text;
    EXPECT_EQ(ReadRule(Written(rule)), rule) << text;
  }
}

TEST(SCRRuleJsonWritingTest, VersionAndMaximumComeBackAsARange) {
  const SCRRule rule = ReadRule(R"({"type":"Video","name":"x","version":"5","max_version":"7"})");
  SCRRule again;
  EXPECT_TRUE(again.FromJSON(rule.ToJSON()));
  EXPECT_EQ(again.GetVersions(), rule.GetVersions());
  EXPECT_EQ(again, ReadRule(R"({"type":"Video","name":"x","versions":["5-7"]})"));
}

TEST(SCRRuleJsonWritingTest, ManyRangesAreWrittenInTheirOrder) {
  const testsupport::TestHost host;
  for (const std::uint32_t count : {511u, 512u, 513u, 5000u}) {
    std::vector<VersionRange> ranges;
    std::string expected = "[";
    for (std::uint32_t number = 0; number < count; ++number) {
      ranges.emplace_back(OSComponentVersion(count - number, 0, 0, number));
      expected += (number == 0 ? "\"" : ",\"") + std::to_string(count - number) + ".0.0." +
                  std::to_string(number) + "\"";
    }
    expected += "]";
    const SCRRule rule(OSComponentType::kVideo, "x", ranges, OSComponentVersion(), OSComponentVersion(), "",
                       "", {}, SCRRuleErrorLevel::INFO);
    EXPECT_EQ(Written(rule), R"({"error_level":"INFO","name":"x","osblc_version":1,"osc_version":1,)"
                             R"("type":"Video","versions":)" +
                                 expected + "}");
    EXPECT_EQ(ReadRule(Written(rule)), rule) << count;
  }
  EXPECT_EQ(host.mExceptionContexts, std::vector<std::string>());
}

TEST(SCRRuleJsonWritingTest, AnEmptyRuleIsWrittenAndNotReadBack) {
  SCRRule again;
  EXPECT_FALSE(again.FromJSON(SCRRule().ToJSON()));
}

}  // namespace
