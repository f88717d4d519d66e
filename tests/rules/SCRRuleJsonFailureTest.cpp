// Rules that cannot be read, or only in part.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;

constexpr const char* kContext = "qelsystemcompatibilityreport::SCRRule::FromJSON";

class SCRRuleJsonFailureTest : public testing::Test {
 protected:
  /// Reads the text and says whether that succeeded; the log starts anew.
  bool Read(const std::string& json, SCRRule& rule) {
    mHost.mExceptionContexts.clear();
    return rule.FromJSON(qelcore::json::Parse(json));
  }

  testsupport::TestHost mHost;
};

/// Each key with values of wrong JSON types. The component's own keys fail without a log; the rule's keys are
/// logged.
TEST_F(SCRRuleJsonFailureTest, ValuesOfTheWrongType) {
  const struct {
    const char* mJson;
    bool mIsRead;
    std::size_t mTimesLogged;
  } rows[] = {
      // Not an object, or not a component.
      {R"([])", false, 0},
      {R"("text")", false, 0},
      {R"(7)", false, 0},
      {R"(null)", false, 0},
      {R"({})", false, 0},
      {R"({"type":"OS"})", false, 0},
      {R"({"name":"x"})", false, 0},
      {R"({"type":"OS","name":7})", false, 0},
      {R"({"type":"OS","name":null})", false, 0},
      {R"({"type":7,"name":"x"})", false, 0},
      {R"({"type":"OS","name":"x","version":7})", false, 0},
      {R"({"type":"OS","name":"x","osc_version":"1"})", false, 0},
      // The format version.
      {R"({"type":"Video","name":"x","osblc_version":1})", true, 0},
      {R"({"type":"Video","name":"x","osblc_version":2})", true, 0},
      {R"({"type":"Video","name":"x","osblc_version":-1})", true, 0},
      {R"({"type":"Video","name":"x","osblc_version":4294967295})", true, 0},
      {R"({"type":"Video","name":"x","osblc_version":4294967297})", true, 0},
      {R"({"type":"Video","name":"x","osblc_version":18446744073709551615})", true, 0},
      {R"({"type":"Video","name":"x","osblc_version":0})", false, 0},
      {R"({"type":"Video","name":"x","osblc_version":-0})", false, 0},
      {R"({"type":"Video","name":"x","osblc_version":4294967296})", false, 0},
      {R"({"type":"Video","name":"x","osblc_version":-4294967296})", false, 0},
      {R"({"type":"Video","name":"x","osblc_version":18446744069414584320})", false, 0},
      {R"({"type":"Video","name":"x","osblc_version":"1"})", false, 1},
      {R"({"type":"Video","name":"x","osblc_version":"0"})", false, 1},
      {R"({"type":"Video","name":"x","osblc_version":1.0})", false, 1},
      {R"({"type":"Video","name":"x","osblc_version":true})", false, 1},
      {R"({"type":"Video","name":"x","osblc_version":null})", false, 1},
      {R"({"type":"Video","name":"x","osblc_version":[1]})", false, 1},
      // Versions.
      {R"({"type":"Video","name":"x","versions":"1"})", false, 1},
      {R"({"type":"Video","name":"x","versions":{}})", false, 1},
      {R"({"type":"Video","name":"x","versions":null})", false, 1},
      {R"({"type":"Video","name":"x","versions":[1]})", false, 1},
      {R"({"type":"Video","name":"x","versions":["1",null]})", false, 1},
      {R"({"type":"Video","name":"x","max_version":1})", false, 1},
      {R"({"type":"Video","name":"x","versions":[],"max_version":1})", false, 1},
      {R"({"type":"Video","name":"x","versions":["1"],"max_version":1})", true, 0},  // not looked at
      {R"({"type":"Video","name":"x","version_mask":1})", false, 1},
      {R"({"type":"Video","name":"x","version_mask":null})", false, 1},
      {R"({"type":"Video","name":"x","version_mod":1})", false, 1},
      {R"({"type":"Video","name":"x","version_mod":["1"]})", false, 1},
      // Comparisons are looked at in property rules only, version fields in all others.
      {R"({"type":"Video","name":"x","eq":1,"ieq":1,"regex":1})", true, 0},
      {R"({"type":"Property","name":"x","versions":1,"max_version":1,"version_mask":1,"version_mod":1})",
       true, 0},
      {R"({"type":"Property","name":"x","eq":1})", false, 1},
      {R"({"type":"Property","name":"x","ne":true})", false, 1},
      {R"({"type":"Property","name":"x","lt":null})", false, 1},
      {R"({"type":"Property","name":"x","lte":1})", false, 1},
      {R"({"type":"Property","name":"x","gt":1})", false, 1},
      {R"({"type":"Property","name":"x","gte":1})", false, 1},
      {R"({"type":"Property","name":"x","ieq":1})", false, 1},
      {R"({"type":"Property","name":"x","ine":1})", false, 1},
      {R"({"type":"Property","name":"x","ilt":1})", false, 1},
      {R"({"type":"Property","name":"x","ilte":1})", false, 1},
      {R"({"type":"Property","name":"x","igt":1})", false, 1},
      {R"({"type":"Property","name":"x","igte":1.5})", false, 1},
      {R"({"type":"Property","name":"x","regex":["a"]})", false, 1},
      // Texts, dependencies, level.
      {R"({"type":"Video","name":"x","info_message":1})", false, 1},
      {R"({"type":"Video","name":"x","info_message":null})", false, 1},
      {R"({"type":"Video","name":"x","info_url":{}})", false, 1},
      {R"({"type":"Video","name":"x","dependencies":{}})", false, 1},
      {R"({"type":"Video","name":"x","dependencies":"x"})", false, 1},
      {R"({"type":"Video","name":"x","dependencies":null})", false, 1},
      {R"({"type":"Video","name":"x","error_level":2})", false, 1},
      {R"({"type":"Video","name":"x","error_level":null})", false, 1},
  };
  for (const auto& row : rows) {
    SCRRule rule;
    EXPECT_EQ(Read(row.mJson, rule), row.mIsRead) << row.mJson;
    EXPECT_EQ(mHost.mExceptionContexts, std::vector<std::string>(row.mTimesLogged, kContext)) << row.mJson;
  }
  SCRRule rule;
  EXPECT_FALSE(rule.FromJSON(std::any()));
  EXPECT_FALSE(rule.FromJSON(std::any(7.5F)));
}

TEST_F(SCRRuleJsonFailureTest, ADependencyThatCannotBeReadIsKeptAndMatchesNothing) {
  const struct {
    const char* mDependency;
    std::size_t mTimesLogged;
  } rows[] = {
      {R"(7)", 0},
      {R"(null)", 0},
      {R"({})", 0},
      {R"({"type":"Video"})", 0},
      {R"({"type":"Printer","name":"A device"})", 0},
      {R"({"type":"Video","name":"A device","osblc_version":0})", 0},
      {R"({"type":"Video","name":"A device","osblc_version":"1"})", 1},
      {R"({"type":"Video","name":"A device","versions":7})", 1},
      {R"({"type":"Video","name":"A device","error_level":7})", 1},
  };
  for (const auto& row : rows) {
    SCRRule rule;
    const std::string json = std::string(R"({"type":"Video","name":"A device","error_level":"WARN",
        "dependencies":[)") + row.mDependency +
                             R"(,{"type":"Video","name":"A device"}]})";
    EXPECT_TRUE(Read(json, rule)) << row.mDependency;
    EXPECT_EQ(mHost.mExceptionContexts, std::vector<std::string>(row.mTimesLogged, kContext))
        << row.mDependency;
    EXPECT_EQ(rule.GetDependencies().size(), 2u) << row.mDependency;
    EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::WARN) << row.mDependency;
    const qelcore::utility::OSComponentRegistry machine(
        {testsupport::Component(OSComponentType::kVideo, "A device", "1.0")});
    EXPECT_EQ(rule.FindMatchingOSComponents(machine).size(), 0u) << row.mDependency;
  }
}

TEST_F(SCRRuleJsonFailureTest, AFailureLeavesWhatWasReadUntilThen) {
  const std::string start = R"({"type":"Video","name":"x","info_message":"m","info_url":"u","versions":["1"],
      "dependencies":[{"type":"OS","name":"d"}],)";
  SCRRule rule;
  EXPECT_FALSE(Read(start + R"("error_level":7})", rule));
  EXPECT_EQ(rule.GetType(), OSComponentType::kVideo);
  EXPECT_EQ(rule.GetVersions().size(), 1u);
  EXPECT_EQ(rule.GetInfoMessage(), "m");
  EXPECT_EQ(rule.GetInfoURL(), "u");
  EXPECT_EQ(rule.GetDependencies().size(), 1u);
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::INFO);

  EXPECT_FALSE(Read(start + R"("version_mask":7,"error_level":"WARN"})", rule));
  EXPECT_EQ(rule.GetVersions().size(), 1u);
  EXPECT_EQ(rule.GetInfoMessage(), "");
  EXPECT_EQ(rule.GetDependencies().size(), 0u);
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::INFO);

  EXPECT_FALSE(Read(start + R"("osblc_version":0})", rule));
  EXPECT_EQ(rule.GetType(), OSComponentType::kVideo);
  EXPECT_EQ(rule.GetName(), "x");
  EXPECT_EQ(rule.GetVersions().size(), 0u);
}

}  // namespace
