// Property rules.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using testsupport::Component;
using testsupport::Components;
using testsupport::HitNames;
using testsupport::Property;
using testsupport::ReadRule;

using Texts = std::vector<std::string>;
using Comparisons = SCRRule::PropertyComparisons;

constexpr const char* kContext = "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent";

constexpr auto kEq = SCRPropertyOperator::kEqual;
constexpr auto kNe = SCRPropertyOperator::kNotEqual;
constexpr auto kLt = SCRPropertyOperator::kLess;
constexpr auto kLte = SCRPropertyOperator::kLessOrEqual;
constexpr auto kGt = SCRPropertyOperator::kGreater;
constexpr auto kGte = SCRPropertyOperator::kGreaterOrEqual;
constexpr auto kIeq = SCRPropertyOperator::kIntegerEqual;
constexpr auto kIne = SCRPropertyOperator::kIntegerNotEqual;
constexpr auto kIlt = SCRPropertyOperator::kIntegerLess;
constexpr auto kIlte = SCRPropertyOperator::kIntegerLessOrEqual;
constexpr auto kIgt = SCRPropertyOperator::kIntegerGreater;
constexpr auto kIgte = SCRPropertyOperator::kIntegerGreaterOrEqual;
constexpr auto kRegex = SCRPropertyOperator::kRegularExpression;

SCRRule Rule(const Comparisons& comparisons) {
  return {OSComponentType::kProperty, "p", comparisons, "", "", {}, SCRRuleErrorLevel::INFO};
}

bool Matches(const Comparisons& comparisons, const std::string& value) {
  return Rule(comparisons).MatchesPropertyComponent(*Property("p", value));
}

class PropertyMatchingTest : public testing::Test {
 protected:
  PropertyMatchingTest() { OSComponent::EnableSupportProperties(true); }
  ~PropertyMatchingTest() override { OSComponent::EnableSupportProperties(false); }

  testsupport::TestHost mHost;
};

/// Texts are compared as unsigned bytes; a proper prefix comes first.
TEST_F(PropertyMatchingTest, TextComparisons) {
  const struct {
    std::string mValue;
    std::string mOperand;
    int mOrder;
  } rows[] = {
      {"abc", "abc", 0},
      {"", "", 0},
      {"", "a", -1},
      {"ab", "abc", -1},
      {"abc", "ab", 1},
      {"abd", "abc", 1},
      {"B", "a", -1},
      {"a", "B", 1},
      {"10", "9", -1},
      {"1 ", "1", 1},
      {"\xC3\xA9", "z", 1},  // "é" after "z"
      {"z", "\xC3\xA9", -1},
      {"\x7F", "\x80", -1},
      {"\xFF", "\x01", 1},
      {"\xE6\x97\xA5", "\xF0\x9F\x98\x80", -1},
      {std::string("a\0b", 3), "a", 1},
      {std::string("a\0b", 3), std::string("a\0c", 3), -1},
      {"007", "7", -1},
  };
  for (const auto& row : rows) {
    const std::string what = row.mValue + " and " + row.mOperand;
    EXPECT_EQ(Matches({{kEq, row.mOperand}}, row.mValue), row.mOrder == 0) << what;
    EXPECT_EQ(Matches({{kNe, row.mOperand}}, row.mValue), row.mOrder != 0) << what;
    EXPECT_EQ(Matches({{kLt, row.mOperand}}, row.mValue), row.mOrder < 0) << what;
    EXPECT_EQ(Matches({{kLte, row.mOperand}}, row.mValue), row.mOrder <= 0) << what;
    EXPECT_EQ(Matches({{kGt, row.mOperand}}, row.mValue), row.mOrder > 0) << what;
    EXPECT_EQ(Matches({{kGte, row.mOperand}}, row.mValue), row.mOrder >= 0) << what;
  }
}

/// White space and a sign are read, then digits up to the first other character; without digits it is 0, and
/// what does not fit into 64 bits is the nearest number that does.
TEST_F(PropertyMatchingTest, IntegerComparisons) {
  const struct {
    std::string mValue;
    std::string mOperand;
    int mOrder;
  } rows[] = {
      {"12", "10", 1},
      {"9", "10", -1},
      {"10", "10", 0},
      {"010", "10", 0},
      {"+10", "10", 0},
      {"-10", "10", -1},
      {"-10", "-9", -1},
      {" 10", "10", 0},
      {"\t\n\r\f\v 10", "10", 0},
      {"10 MB", "10", 0},
      {"10.9", "10", 0},
      {"1e3", "1", 0},
      {"0x10", "0", 0},
      {"1,000", "1", 0},
      {"", "0", 0},
      {"abc", "0", 0},
      {"-", "0", 0},
      {"+-5", "0", 0},
      {"- 5", "0", 0},
      {"--5", "0", 0},
      {"a5", "0", 0},
      {"\xC2\xA0"
       "5",
       "0", 0},  // a no-break space is none
      {"7", "", 1},
      {"7", "seven", 1},
      {"9223372036854775807", "9223372036854775806", 1},
      {"9223372036854775807", "9223372036854775808", 0},
      {"99999999999999999999999999", "9223372036854775807", 0},
      {"-9223372036854775808", "-9223372036854775809", 0},
      {"-99999999999999999999999999", "-9223372036854775807", -1},
      {"-99999999999999999999999999", "99999999999999999999999999", -1},
      {"4294967296", "0", 1},
      {std::string("1\0"
                   "2",
                   3),
       "1", 0},
  };
  for (const auto& row : rows) {
    const std::string what = row.mValue + " and " + row.mOperand;
    EXPECT_EQ(Matches({{kIeq, row.mOperand}}, row.mValue), row.mOrder == 0) << what;
    EXPECT_EQ(Matches({{kIne, row.mOperand}}, row.mValue), row.mOrder != 0) << what;
    EXPECT_EQ(Matches({{kIlt, row.mOperand}}, row.mValue), row.mOrder < 0) << what;
    EXPECT_EQ(Matches({{kIlte, row.mOperand}}, row.mValue), row.mOrder <= 0) << what;
    EXPECT_EQ(Matches({{kIgt, row.mOperand}}, row.mValue), row.mOrder > 0) << what;
    EXPECT_EQ(Matches({{kIgte, row.mOperand}}, row.mValue), row.mOrder >= 0) << what;
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(PropertyMatchingTest, RegularExpressions) {
  const struct {
    const char* mExpression;
    const char* mValue;
    bool mMatches;
  } rows[] = {
      {"true|yes", "yes", true},
      {"true", "truely", false},
      {"true", "True", false},
      {".*8086.*", "10de:2484 8086:4c8a", true},
      {"8086", "10de:2484 8086:4c8a", false},
      {"", "", true},
      {"", "x", false},
      {"[0-9]+", "123", true},
      {"^\\d+$", "12 3", false},
      {"a.c", "a\nc", false},
      {"a.c", "abc", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Matches({{kRegex, row.mExpression}}, row.mValue), row.mMatches)
        << row.mExpression << " on " << row.mValue;
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(PropertyMatchingTest, SeveralComparisons) {
  const struct {
    Comparisons mComparisons;
    const char* mValue;
    bool mMatches;
  } rows[] = {
      // None matches whatever the value is.
      {{}, "", true},
      {{}, "anything", true},
      // All must hold.
      {{{kGte, "b"}, {kLt, "d"}}, "c", true},
      {{{kGte, "b"}, {kLt, "d"}}, "d", false},
      {{{kGte, "b"}, {kLt, "d"}}, "a", false},
      {{{kNe, "b"}, {kRegex, "[a-c]"}}, "a", true},
      {{{kNe, "b"}, {kRegex, "[a-c]"}}, "b", false},
      {{{kNe, "b"}, {kRegex, "[a-c]"}}, "d", false},
      {{{kIgt, "4"}, {kIlt, "8"}, {kIne, "6"}}, "5", true},
      {{{kIgt, "4"}, {kIlt, "8"}, {kIne, "6"}}, "6", false},
      {{{kIgt, "4"}, {kIlt, "8"}, {kIne, "6"}}, "8", false},
      {{{kIgte, "10"}}, "12", true},
      {{{kIgte, "10"}}, "9", false},
      // Text comparisons decide alone, even beside integer comparisons. That is intended.
      {{{kEq, "8"}, {kIeq, "9"}}, "8", true},
      {{{kEq, "8"}, {kIeq, "9"}}, "9", false},
      {{{kNe, "8"}, {kIlt, "0"}}, "9", true},
      {{{kRegex, ".*"}, {kIeq, "9"}}, "8", true},
      {{{kRegex, "9"}, {kIeq, "8"}}, "8", false},
  };
  for (const auto& row : rows) {
    std::string what;
    for (const auto& [propertyOperator, operand] : row.mComparisons) {
      what += std::to_string(static_cast<int>(propertyOperator)) + " " + operand + ", ";
    }
    EXPECT_EQ(Matches(row.mComparisons, row.mValue), row.mMatches) << what << "on " << row.mValue;
  }
}

TEST_F(PropertyMatchingTest, AMalformedExpressionIsLoggedAndMatchesNothing) {
  for (const char* const expression : {"(", "[", "*", "a{2,1}"}) {
    mHost.mExceptionContexts.clear();
    EXPECT_FALSE(Matches({{kRegex, expression}}, "a")) << expression;
    EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext}) << expression;
    // There is no way out over equality, as there is for names.
    EXPECT_FALSE(Matches({{kRegex, expression}}, expression)) << expression;
  }
}

TEST_F(PropertyMatchingTest, EveryTextComparisonIsEvaluated) {
  // So the expression, the last of them, is logged also where an earlier comparison failed.
  EXPECT_FALSE(Matches({{kEq, "b"}, {kRegex, "("}}, "a"));
  EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext});
}

TEST_F(PropertyMatchingTest, AMalformedExpressionIsLoggedOncePerPropertyOfTheName) {
  const Components machine{Property("p", "1"), Property("q", "1"), Property("p", "2"),
                           Component(OSComponentType::kVideo, "p", "1")};
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"p","regex":"("})", machine), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(2, kContext));
}

TEST_F(PropertyMatchingTest, OnlyPropertiesOfTheVeryNameMatch) {
  const SCRRule any(OSComponentType::kProperty, "p.*", Comparisons(), "", "", {}, SCRRuleErrorLevel::INFO);
  EXPECT_TRUE(any.MatchesPropertyComponent(*Property("p.*", "1")));
  EXPECT_FALSE(any.MatchesPropertyComponent(*Property("p.x", "1")));
  EXPECT_FALSE(any.MatchesPropertyComponent(*Property("P.*", "1")));
  EXPECT_FALSE(any.MatchesPropertyComponent(*Property("", "1")));
  for (const OSComponentType kind :
       {OSComponentType::kOS, OSComponentType::kVideo, OSComponentType::kAudio, OSComponentType::kNetwork,
        OSComponentType::kFile, OSComponentType::kInvalid}) {
    EXPECT_FALSE(any.MatchesPropertyComponent(OSComponent(kind, "p.*", OSComponentVersion(), "1")));
  }
  const SCRRule malformed(OSComponentType::kProperty, "(", Comparisons(), "", "", {},
                          SCRRuleErrorLevel::INFO);
  EXPECT_TRUE(malformed.MatchesPropertyComponent(*Property("(", "1")));
  EXPECT_FALSE(malformed.MatchesPropertyComponent(*Property("p", "1")));
  // Even an empty name.
  const SCRRule nameless(OSComponentType::kProperty, "", Comparisons(), "", "", {}, SCRRuleErrorLevel::INFO);
  EXPECT_TRUE(nameless.MatchesPropertyComponent(*Property("", "1")));
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(PropertyMatchingTest, PropertiesAmongTheComponents) {
  const Components machine{Property("cpu.cores", "4"), Property("memory.mb", "8192"),
                           Property("memory.mb", "16384"), Component(OSComponentType::kOS, "memory.mb", "1")};
  const struct {
    const char* mRule;
    std::size_t mHits;
  } rows[] = {
      {R"({"type":"Property","name":"memory.mb"})", 2},
      {R"({"type":"Property","name":"memory.mb","ilt":"16384"})", 1},
      {R"({"type":"Property","name":"memory.mb","ilt":"1"})", 0},
      {R"({"type":"Property","name":"memory.*"})", 0},
      {R"({"type":"Property","name":"cpu.cores","ieq":"4","versions":["9"],"version_mask":"0.0.0.0"})", 1},
      {R"({"type":"Property","name":"cpu.cores","dependencies":[{"type":"Property","name":"memory.mb"}]})",
       1},
      {R"({"type":"Property","name":"cpu.cores","dependencies":[{"type":"Property","name":"none"}]})", 0},
  };
  for (const auto& row : rows) EXPECT_EQ(HitNames(row.mRule, machine).size(), row.mHits) << row.mRule;
}

TEST_F(PropertyMatchingTest, WithoutSupportThereAreNoHits) {
  const Components machine{Property("p", "1"), Component(OSComponentType::kVideo, "x", "1")};
  const std::string property = R"({"type":"Property","name":"p"})";
  EXPECT_EQ(HitNames(property, machine), Texts{"p"});
  OSComponent::EnableSupportProperties(false);
  EXPECT_EQ(HitNames(property, machine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"p","regex":"("})", machine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"x","dependencies":[)" + property + "]}", machine), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
  // The question about one component does not ask for support.
  EXPECT_TRUE(ReadRule(property).MatchesPropertyComponent(*Property("p", "1")));
}

}  // namespace
