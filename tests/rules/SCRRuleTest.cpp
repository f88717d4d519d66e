#include "qelsystemcompatibilityreport/SCRRule.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Hash.h"
#include "qelsystemcompatibilityreport/rules/PropertyOperator.h"
#include "tests/support/Rules.h"

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using qelsystemcompatibilityreport::VersionRange;
using testsupport::ReadRule;

OSComponentVersion Version(const char* text) {
  return OSComponentVersion(text);
}

SCRRule NamedRule(const std::string& name) {
  return {OSComponentType::kOS,
          name,
          std::vector<VersionRange>(),
          OSComponentVersion(),
          OSComponentVersion(),
          "",
          "",
          {},
          SCRRuleErrorLevel::INFO};
}

TEST(SCRRuleTest, AnEmptyRule) {
  const SCRRule rule;
  EXPECT_EQ(rule.GetType(), OSComponentType::kInvalid);
  EXPECT_EQ(rule.GetName(), "");
  EXPECT_FALSE(rule.GetVersion());
  EXPECT_EQ(rule.GetPropertyValue(), "");
  EXPECT_EQ(rule.GetVersions().size(), 0u);
  EXPECT_EQ(rule.GetDependencies().size(), 0u);
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::INFO);
  EXPECT_EQ(rule.GetInfoMessage(), "");
  EXPECT_EQ(rule.GetInfoURL(), "");
  EXPECT_EQ(rule.GetPropertyComparisons().size(), 0u);
}

TEST(SCRRuleTest, MadeOfTwoVersionsItHasOneRange) {
  const SCRRule rule(OSComponentType::kVideo, "A device", Version("1.2"), Version("3"), Version("0.+"),
                     Version("10.+"), "A message", "https://example.com/a", {NamedRule("Windows")},
                     SCRRuleErrorLevel::FATAL);
  EXPECT_EQ(rule.GetType(), OSComponentType::kVideo);
  EXPECT_EQ(rule.GetName(), "A device");
  EXPECT_FALSE(rule.GetVersion());
  EXPECT_EQ(rule.GetPropertyValue(), "");
  ASSERT_EQ(rule.GetVersions().size(), 1u);
  EXPECT_EQ(rule.GetVersions().front().ToString(), "1.2.0.0-3.0.0.0");
  EXPECT_EQ(rule.GetInfoMessage(), "A message");
  EXPECT_EQ(rule.GetInfoURL(), "https://example.com/a");
  ASSERT_EQ(rule.GetDependencies().size(), 1u);
  EXPECT_EQ(rule.GetDependencies().front().GetName(), "Windows");
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::FATAL);
  EXPECT_EQ(rule.GetPropertyComparisons().size(), 0u);
  EXPECT_EQ(rule, ReadRule(R"({"type":"Video","name":"A device","versions":["1.2-3"],"version_mask":"0.+",
                               "version_mod":"10.+","info_message":"A message",
                               "info_url":"https://example.com/a","error_level":"FATAL",
                               "dependencies":[{"type":"OS","name":"Windows"}]})"));
}

TEST(SCRRuleTest, MadeOfTwoEmptyVersionsItHasTheRangeOfEveryVersion) {
  const OSComponentVersion none;
  const SCRRule rule(OSComponentType::kVideo, "A device", none, none, none, none, "", "", {},
                     SCRRuleErrorLevel::INFO);
  ASSERT_EQ(rule.GetVersions().size(), 1u);
  EXPECT_EQ(rule.GetVersions().front().ToString(), "");
  EXPECT_TRUE(rule.GetVersions().front().IsVersionInRange(Version("7.8.9.10")));
}

TEST(SCRRuleTest, MadeOfRangesItHasThemInTheirOrder) {
  const OSComponentVersion none;
  const std::vector<VersionRange> ranges{VersionRange(Version("5")), VersionRange(Version("1"), Version("2")),
                                         VersionRange(Version("5"))};
  const SCRRule rule(OSComponentType::kAudio, "A device", ranges, none, none, "", "", {},
                     SCRRuleErrorLevel::WARN);
  EXPECT_FALSE(rule.GetVersion());
  EXPECT_EQ(rule.GetVersions(), ranges);
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::WARN);

  const SCRRule any(OSComponentType::kAudio, "A device", std::vector<VersionRange>(), none, none, "", "", {},
                    SCRRuleErrorLevel::WARN);
  EXPECT_EQ(any.GetVersions().size(), 0u);
}

TEST(SCRRuleTest, MadeOfComparisonsItHasThemAll) {
  SCRRule::PropertyComparisons all;
  for (int number = 0; number <= 12; ++number) {
    all[static_cast<SCRPropertyOperator>(number)] = std::to_string(number);
  }
  const SCRRule rule(OSComponentType::kProperty, "memory.mb", all, "A message", "https://example.com/a",
                     {NamedRule("Windows")}, SCRRuleErrorLevel::ERROR);
  EXPECT_EQ(rule.GetType(), OSComponentType::kProperty);
  EXPECT_EQ(rule.GetPropertyComparisons(), all);
  EXPECT_EQ(rule.GetVersions().size(), 0u);
  EXPECT_EQ(rule.GetInfoMessage(), "A message");
  EXPECT_EQ(rule.GetInfoURL(), "https://example.com/a");
  EXPECT_EQ(rule.GetDependencies().size(), 1u);
  EXPECT_EQ(rule.GetErrorLevel(), SCRRuleErrorLevel::ERROR);
  // Text and integer comparisons go to the places where reading puts them.
  EXPECT_EQ(rule, ReadRule(R"({"type":"Property","name":"memory.mb","eq":"0","ne":"1","lt":"2","lte":"3",
      "gt":"4","gte":"5","ieq":"6","ine":"7","ilt":"8","ilte":"9","igt":"10","igte":"11","regex":"12",
      "info_message":"A message","info_url":"https://example.com/a","error_level":"ERROR",
      "dependencies":[{"type":"OS","name":"Windows"}]})"));
}

TEST(SCRRuleTest, MadeOfJSONItIsWhatFromJSONReads) {
  const std::string text = R"({"type":"Audio","name":"A device","version":"1.2","error_level":"WARN"})";
  EXPECT_EQ(SCRRule(text), ReadRule(text));
  EXPECT_EQ(SCRRule(qelcore::json::Parse(text)), ReadRule(text));

  const testsupport::TestHost host;
  for (const char* const bad : {"", "[]", "{}", "no JSON", R"({"type":"Audio"})", R"({"name":"A device"})"}) {
    EXPECT_EQ(SCRRule(std::string(bad)).GetType(), OSComponentType::kInvalid) << bad;
    EXPECT_EQ(SCRRule(qelcore::json::Parse(bad)).GetType(), OSComponentType::kInvalid) << bad;
  }
  EXPECT_EQ(host.mExceptionContexts, std::vector<std::string>());

  // A failure half-way leaves what was read until then.
  const SCRRule halfRead(std::string(R"({"type":"Audio","name":"A device","versions":["1","2"],
                                         "info_message":7})"));
  EXPECT_EQ(halfRead.GetType(), OSComponentType::kAudio);
  EXPECT_EQ(halfRead.GetName(), "A device");
  EXPECT_EQ(halfRead.GetVersions().size(), 2u);
}

TEST(SCRRuleTest, CopiesAreDeep) {
  const std::string text = R"({"type":"Video","name":"A device","versions":["1-2"],"version_mask":"0.+",
      "version_mod":"10.+","info_message":"A message","info_url":"https://example.com/a","error_level":"WARN",
      "dependencies":[{"type":"OS","name":"Windows","dependencies":[{"type":"Audio","name":"Inner"}]}]})";
  SCRRule original = ReadRule(text);
  const SCRRule copy(original);
  SCRRule assigned;
  assigned = original;
  EXPECT_EQ(copy, original);
  EXPECT_EQ(assigned, original);
  EXPECT_NE(&copy.GetDependencies(), &original.GetDependencies());

  EXPECT_TRUE(original.FromJSON(qelcore::json::Parse(R"({"type":"OS","name":"Other"})")));
  EXPECT_EQ(copy, ReadRule(text));
  EXPECT_EQ(assigned, ReadRule(text));
  ASSERT_EQ(copy.GetDependencies().size(), 1u);
  ASSERT_EQ(copy.GetDependencies().front().GetDependencies().size(), 1u);
  EXPECT_EQ(copy.GetDependencies().front().GetDependencies().front().GetName(), "Inner");

  const SCRRule& itself = assigned;
  assigned = itself;
  EXPECT_EQ(assigned, ReadRule(text));
}

TEST(SCRRuleTest, TheListsThatAreHandedOutAreCopies) {
  const SCRRule rule = ReadRule(R"({"type":"Video","name":"A device","versions":["1"]})");
  rule.GetVersions().clear();
  EXPECT_EQ(rule.GetVersions().size(), 1u);
}

TEST(SCRRuleTest, ErrorLevelsHaveTexts) {
  const struct {
    int mLevel;
    const char* mText;
    bool mIsSerious;
  } rows[] = {
      {0, "INFO", false}, {1, "WARN", true},  {2, "ERROR", true},  {3, "FATAL", true},
      {4, "INFO", true},  {99, "INFO", true}, {-1, "INFO", false},
  };
  for (const auto& row : rows) {
    const auto level = static_cast<SCRRuleErrorLevel>(row.mLevel);
    EXPECT_EQ(SCRRule::ErrorLevelToString(level), row.mText) << row.mLevel;
    const SCRRule rule(OSComponentType::kOS, "Windows", SCRRule::PropertyComparisons(), "", "", {}, level);
    EXPECT_EQ(rule.IsSeriousError(), row.mIsSerious) << row.mLevel;
  }
  EXPECT_EQ(&SCRRule::ErrorLevelToString(SCRRuleErrorLevel::FATAL),
            &SCRRule::ErrorLevelToString(SCRRuleErrorLevel::FATAL));
}

TEST(SCRRuleTest, TextsHaveErrorLevels) {
  const struct {
    const char* mText;
    SCRRuleErrorLevel mLevel;
  } rows[] = {
      {"INFO", SCRRuleErrorLevel::INFO},    {"WARN", SCRRuleErrorLevel::WARN},
      {"ERROR", SCRRuleErrorLevel::ERROR},  {"FATAL", SCRRuleErrorLevel::FATAL},
      {"warn", SCRRuleErrorLevel::INFO},    {"Fatal", SCRRuleErrorLevel::INFO},
      {"error", SCRRuleErrorLevel::INFO},   {" ERROR", SCRRuleErrorLevel::INFO},
      {"ERROR ", SCRRuleErrorLevel::INFO},  {"ERRORS", SCRRuleErrorLevel::INFO},
      {"WARNING", SCRRuleErrorLevel::INFO}, {"", SCRRuleErrorLevel::INFO},
      {"2", SCRRuleErrorLevel::INFO},
  };
  for (const auto& row : rows) EXPECT_EQ(SCRRule::StringToErrorLevel(row.mText), row.mLevel) << row.mText;
}

TEST(SCRRuleTest, OperatorsHaveKeys) {
  using qelsystemcompatibilityreport::ComparesIntegers;
  using qelsystemcompatibilityreport::PropertyOperatorFromString;
  using qelsystemcompatibilityreport::PropertyOperatorToString;
  const std::vector<std::string> keys{"eq",  "ne",  "lt",   "lte", "gt",   "gte",  "ieq",
                                      "ine", "ilt", "ilte", "igt", "igte", "regex"};
  for (std::size_t number = 0; number < keys.size(); ++number) {
    const auto propertyOperator = static_cast<SCRPropertyOperator>(number);
    EXPECT_EQ(PropertyOperatorToString(propertyOperator), keys[number]);
    EXPECT_EQ(PropertyOperatorFromString(keys[number]), propertyOperator) << keys[number];
    EXPECT_EQ(ComparesIntegers(propertyOperator), number >= 6 && number <= 11) << keys[number];
  }
  for (const int number : {-1, 13, 1000}) {
    EXPECT_EQ(PropertyOperatorToString(static_cast<SCRPropertyOperator>(number)), "invalid_operator");
  }
  for (const char* const text : {"", "EQ", "invalid_operator", "equal", "eq "}) {
    EXPECT_EQ(PropertyOperatorFromString(text), std::nullopt) << text;
  }
}

}  // namespace
