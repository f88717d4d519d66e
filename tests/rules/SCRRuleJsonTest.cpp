// Reading rules from JSON.
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

std::vector<std::string> RangeTexts(const SCRRule& rule) {
  std::vector<std::string> texts;
  for (const VersionRange& range : rule.GetVersions()) texts.push_back(range.ToString());
  return texts;
}

/// What a rule tests a version against, seen from outside: whether it hits a component of this version.
bool HitsVersion(const SCRRule& rule, const char* version) {
  const qelcore::utility::OSComponentRegistry machine(
      {testsupport::Component(rule.GetType(), rule.GetName(), version)});
  return !rule.FindMatchingOSComponents(machine).empty();
}

class SCRRuleJsonTest : public testing::Test {
 protected:
  /// Reads the text and says whether that succeeded; the log starts anew.
  bool Read(const std::string& json, SCRRule& rule) {
    mHost.mExceptionContexts.clear();
    return rule.FromJSON(qelcore::json::Parse(json));
  }

  testsupport::TestHost mHost;
};

TEST_F(SCRRuleJsonTest, TheLeastRule) {
  const SCRRule rule = ReadRule(R"({"type":"Video","name":"A device"})");
  EXPECT_EQ(rule.GetType(), OSComponentType::kVideo);
  EXPECT_EQ(rule.GetName(), "A device");
  EXPECT_FALSE(rule.GetVersion());
  EXPECT_EQ(rule.GetVersions().size(), 0u);
  EXPECT_EQ(rule.GetInfoMessage(), "");
  EXPECT_EQ(rule.GetInfoURL(), "");
  EXPECT_EQ(rule.GetDependencies().size(), 0u);
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::INFO);
  EXPECT_EQ(rule.GetPropertyComparisons().size(), 0u);
  EXPECT_EQ(mHost.mExceptionContexts, std::vector<std::string>());
}

TEST_F(SCRRuleJsonTest, EveryKind) {
  const struct {
    const char* mText;
    OSComponentType mKind;
  } rows[] = {
      {"OS", OSComponentType::kOS},       {"Video", OSComponentType::kVideo},
      {"Audio", OSComponentType::kAudio}, {"Network", OSComponentType::kNetwork},
      {"File", OSComponentType::kFile},   {"Property", OSComponentType::kProperty},
  };
  for (const auto& row : rows) {
    SCRRule rule;
    EXPECT_TRUE(Read(std::string(R"({"type":")") + row.mText + R"(","name":"x"})", rule)) << row.mText;
    EXPECT_EQ(rule.GetType(), row.mKind) << row.mText;
  }
  for (const char* const text : {"", "video", "VIDEO", "Printer", "kVideo", "Invalid", "1"}) {
    SCRRule rule;
    EXPECT_FALSE(Read(std::string(R"({"type":")") + text + R"(","name":"x"})", rule)) << text;
    EXPECT_EQ(rule.GetType(), OSComponentType::kInvalid) << text;
  }
}

TEST_F(SCRRuleJsonTest, VersionsGiveTheRanges) {
  const struct {
    const char* mFields;
    std::vector<std::string> mRanges;
  } rows[] = {
      {R"("version":"")", {}},
      {R"("version":"5")", {"5.0.0.0"}},
      {R"("version":"5.1.2.3")", {"5.1.2.3"}},
      {R"("version":"0.0.0.0")", {"0.0.0.0"}},
      {R"("version":"beta")", {}},
      {R"("version":"5-6")", {}},  // one version, no range
      {R"("version":"5","max_version":"6.+")", {"5.0.0.0-6.+"}},
      {R"("version":"5","max_version":"")", {"5.0.0.0"}},
      {R"("max_version":"6")", {"-6.0.0.0"}},
      {R"("version":"","max_version":"6")", {"-6.0.0.0"}},
      {R"("version":"5","max_version":"beta")", {"5.0.0.0"}},
      {R"("max_version":"beta")", {""}},  // a range with two empty ends
      {R"("versions":[])", {}},
      {R"("versions":["5"])", {"5.0.0.0"}},
      {R"("versions":["5 - 6","","-7","8-","beta"])", {"5.0.0.0-6.0.0.0", "", "-7.0.0.0", "8.0.0.0", ""}},
      {R"("versions":["5","5","3"])", {"5.0.0.0", "5.0.0.0", "3.0.0.0"}},
      // A list that is not empty stands alone.
      {R"("versions":["5"],"version":"7","max_version":"9")", {"5.0.0.0"}},
      {R"("versions":[""],"version":"7","max_version":"9")", {""}},
      // An empty one does not count.
      {R"("versions":[],"version":"7","max_version":"9")", {"7.0.0.0-9.0.0.0"}},
      {R"("versions":[],"version":"7")", {"7.0.0.0"}},
  };
  for (const auto& row : rows) {
    const SCRRule rule = ReadRule(std::string(R"({"type":"Video","name":"x",)") + row.mFields + "}");
    EXPECT_EQ(RangeTexts(rule), row.mRanges) << row.mFields;
  }
  EXPECT_EQ(mHost.mExceptionContexts, std::vector<std::string>());
}

TEST_F(SCRRuleJsonTest, MaskAndModulus) {
  const struct {
    const char* mFields;
    const char* mHit;
    const char* mMissed;
  } rows[] = {
      {R"("versions":["0.0.4.0"],"version_mask":"0.0.+")", "9.9.4.0", "9.9.4.1"},
      {R"("versions":["0.0.4.0"],"version_mask":"")", "0.0.4.0", "9.9.4.0"},
      {R"("versions":["0.0.4.0"],"version_mask":"beta")", "0.0.4.0", "9.9.4.0"},
      {R"("versions":["3"],"version_mod":"10.+")", "13", "14"},
      {R"("versions":["3"],"version_mod":"")", "3", "13"},
      {R"("versions":["0.0.0.0"],"version_mask":"0.0.0.0")", "7.7.7.7", nullptr},
      {R"("versions":["0.0.0.0"],"version_mod":"0.0.0.0")", "7.7.7.7", nullptr},
  };
  for (const auto& row : rows) {
    const SCRRule rule = ReadRule(std::string(R"({"type":"Video","name":"x",)") + row.mFields + "}");
    EXPECT_TRUE(HitsVersion(rule, row.mHit)) << row.mFields;
    EXPECT_FALSE(row.mMissed != nullptr && HitsVersion(rule, row.mMissed)) << row.mFields;
  }
}

TEST_F(SCRRuleJsonTest, Comparisons) {
  const SCRRule property = ReadRule(R"({"type":"Property","name":"x","igte":"11","regex":"12","eq":"",
                                        "lte":"3","unknown":"7","EQ":"8"})");
  EXPECT_EQ(property.GetPropertyComparisons(),
            (SCRRule::PropertyComparisons{{SCRPropertyOperator::kEqual, ""},
                                          {SCRPropertyOperator::kLessOrEqual, "3"},
                                          {SCRPropertyOperator::kIntegerGreaterOrEqual, "11"},
                                          {SCRPropertyOperator::kRegularExpression, "12"}}));
  const SCRRule video = ReadRule(R"({"type":"Video","name":"x","eq":"1","ieq":"2","regex":"3"})");
  EXPECT_EQ(video.GetPropertyComparisons().size(), 0u);

  const SCRRule versioned = ReadRule(R"({"type":"Property","name":"x","version":"5","max_version":"6",
                                         "versions":["1"],"version_mask":"1","version_mod":"1"})");
  EXPECT_EQ(versioned.GetVersions().size(), 0u);
}

TEST_F(SCRRuleJsonTest, LevelsAreReadByteForByte) {
  const struct {
    const char* mText;
    SCRRuleErrorLevel mLevel;
  } rows[] = {
      {"INFO", SCRRuleErrorLevel::INFO},   {"WARN", SCRRuleErrorLevel::WARN},
      {"ERROR", SCRRuleErrorLevel::ERROR}, {"FATAL", SCRRuleErrorLevel::FATAL},
      {"Fatal", SCRRuleErrorLevel::INFO},  {"warn", SCRRuleErrorLevel::INFO},
      {"worse", SCRRuleErrorLevel::INFO},  {"", SCRRuleErrorLevel::INFO},
  };
  for (const auto& row : rows) {
    const SCRRule rule =
        ReadRule(std::string(R"({"type":"OS","name":"x","error_level":")") + row.mText + R"("})");
    EXPECT_EQ(rule.GetErrorLevel(), row.mLevel) << row.mText;
  }
  EXPECT_EQ(mHost.mExceptionContexts, std::vector<std::string>());
}

TEST_F(SCRRuleJsonTest, DependenciesKeepTheirOrderAndTheirOwn) {
  const SCRRule rule = ReadRule(R"({"type":"Video","name":"x","dependencies":[
      {"type":"OS","name":"a","dependencies":[{"type":"Audio","name":"c","error_level":"FATAL"}]},
      {"type":"Property","name":"b","ieq":"1"}]})");
  ASSERT_EQ(rule.GetDependencies().size(), 2u);
  EXPECT_EQ(rule.GetDependencies()[0].GetName(), "a");
  ASSERT_EQ(rule.GetDependencies()[0].GetDependencies().size(), 1u);
  EXPECT_EQ(rule.GetDependencies()[0].GetDependencies()[0].GetErrorLevel(), SCRRuleErrorLevel::FATAL);
  EXPECT_EQ(rule.GetDependencies()[1].GetPropertyComparisons().size(), 1u);
}

TEST_F(SCRRuleJsonTest, ReadingAgainStartsAnew) {
  const char* const full[] = {
      R"({"type":"Video","name":"x","version":"5","versions":["1"],"version_mask":"0.+","version_mod":"7.+",
          "info_message":"m","info_url":"u","dependencies":[{"type":"OS","name":"d"}],"error_level":"FATAL"})",
      R"({"type":"Property","name":"x","value":"v","eq":"1","ieq":"2","info_message":"m","info_url":"u",
          "dependencies":[{"type":"OS","name":"d"}],"error_level":"FATAL"})"};
  for (const char* const before : full) {
    for (const char* const after : {R"({"type":"Audio","name":"y"})", R"({"type":"Property","name":"y"})"}) {
      SCRRule rule = ReadRule(before);
      EXPECT_TRUE(Read(after, rule)) << after;
      EXPECT_EQ(rule, ReadRule(after)) << before << after;
      EXPECT_EQ(rule.GetPropertyValue(), "") << before << after;
    }
    // Also when the second reading fails at once.
    for (const char* const bad : {"7", R"({"type":"OS"})"}) {
      SCRRule rule = ReadRule(before);
      EXPECT_FALSE(Read(bad, rule)) << bad;
      EXPECT_EQ(rule, SCRRule()) << before << bad;
      EXPECT_EQ(rule.GetType(), OSComponentType::kInvalid) << before << bad;
    }
  }
}

TEST_F(SCRRuleJsonTest, TheOrderOfTheKeysDoesNotCount) {
  EXPECT_EQ(ReadRule(R"({"versions":["1"],"type":"OS","error_level":"WARN","name":"x","dependencies":[],
                         "version_mask":"1.+","osblc_version":1})"),
            ReadRule(R"({"osblc_version":1,"version_mask":"1.+","dependencies":[],"name":"x",
                         "error_level":"WARN","type":"OS","versions":["1"]})"));
  // Of two members with the same key the later one wins.
  EXPECT_EQ(ReadRule(R"({"type":"OS","name":"x","name":"y"})").GetName(), "y");
}

TEST_F(SCRRuleJsonTest, ManyRangesAreReadInTheirOrder) {
  for (const int count : {1, 512, 513, 5000}) {
    std::string json = R"({"type":"Video","name":"x","versions":[)";
    std::vector<std::string> expected;
    for (int number = count; number > 0; --number) {
      json += "\"" + std::to_string(number) + "\"" + (number > 1 ? "," : "]}");
      expected.push_back(std::to_string(number) + ".0.0.0");
    }
    EXPECT_EQ(RangeTexts(ReadRule(json)), expected) << count;
  }
}

}  // namespace
