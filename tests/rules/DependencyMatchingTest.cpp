// Rules that depend on other rules.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/Rules.h"
#include "tests/support/SmallStack.h"
#include "tests/support/TestHost.h"

namespace {

using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::Component;
using testsupport::Components;
using testsupport::ComponentsOfKind;
using testsupport::HitNames;
using testsupport::Property;
using testsupport::ReadRule;

using Texts = std::vector<std::string>;

constexpr const char* kContext = "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents";
constexpr const char* kPropertyContext = "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent";

class DependencyMatchingTest : public testing::Test {
 protected:
  DependencyMatchingTest() { OSComponent::EnableSupportProperties(true); }
  ~DependencyMatchingTest() override { OSComponent::EnableSupportProperties(false); }

  /// The names that a Video rule of any name hits when it depends on these.
  Texts HitsWith(const std::string& dependencies) {
    return HitNames(R"({"type":"Video","name":".*","dependencies":[)" + dependencies + "]}", mMachine);
  }

  testsupport::TestHost mHost;
  Components mMachine{Component(OSComponentType::kOS, "Windows", "10.0.17763.1"),
                      Component(OSComponentType::kVideo, "a", "1"),
                      Component(OSComponentType::kVideo, "b", "2"),
                      Component(OSComponentType::kVideo, "c", "3"),
                      Component(OSComponentType::kNetwork, "LAN", "1"),
                      Component(OSComponentType::kNetwork, "WLAN", "1"),
                      Property("memory.mb", "8192")};
};

TEST_F(DependencyMatchingTest, EachMustFindSomething) {
  const Texts all{"a", "b", "c"};
  const std::string windows = R"({"type":"OS","name":"Windows"})";
  const std::string none = R"({"type":"OS","name":"Linux"})";
  const struct {
    std::string mDependencies;
    Texts mHits;
  } rows[] = {
      {"", all},
      {windows, all},
      {none, {}},
      {windows + "," + none, {}},
      {none + "," + windows, {}},
      {windows + "," + windows, all},
      {R"({"type":"OS","name":"Windows","version":"10","max_version":"10.+"})", all},
      {R"({"type":"OS","name":"Windows","version":"6","max_version":"9.+"})", {}},
      // A condition on the machine, not on the candidate.
      {R"({"type":"Video","name":"b"})", all},
      {R"({"type":"Video","name":"b","versions":["1"]})", {}},
      {R"({"type":"Property","name":"memory.mb","igte":"4096"})", all},
      {R"({"type":"Property","name":"memory.mb","igte":"16384"})", {}},
      {R"({"type":"File","name":"/there/is/no/such/file"})", {}},
      // A dependency's own dependencies apply to it.
      {R"({"type":"OS","name":"Windows","dependencies":[)" + windows + "]}", all},
      {R"({"type":"OS","name":"Windows","dependencies":[)" + none + "]}", {}},
      {R"({"type":"OS","name":"Windows","dependencies":[{"type":"Network","name":"LAN","dependencies":[)" +
           none + "]}]}",
       {}},
      {R"({"type":"OS","name":"Windows","dependencies":[)" + windows + "," + none + "]}", {}},
  };
  for (const auto& row : rows) EXPECT_EQ(HitsWith(row.mDependencies), row.mHits) << row.mDependencies;
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(DependencyMatchingTest, AnUnmatchedOneMakesItsRuleHitNothing) {
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"a","version":"1","dependencies":[
                        {"type":"Audio","name":"any"}]})",
                     mMachine),
            Texts());
}

TEST_F(DependencyMatchingTest, TheyAreAskedAfreshForEveryCandidate) {
  // A malformed name is logged for both adapters, for each of three candidates.
  EXPECT_EQ(HitsWith(R"({"type":"Network","name":"("})"), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(6, kContext));
}

TEST_F(DependencyMatchingTest, TheyAreAskedAfreshAlsoWhenTheyFindSomething) {
  mMachine.push_back(Component(OSComponentType::kNetwork, "(", "1"));
  EXPECT_EQ(HitsWith(R"({"type":"Network","name":"("})"), (Texts{"a", "b", "c"}));
  EXPECT_EQ(mHost.mExceptionContexts, Texts(6, kContext));
}

TEST_F(DependencyMatchingTest, PropertiesToo) {
  EXPECT_EQ(HitsWith(R"({"type":"Property","name":"memory.mb","regex":"("})"), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(3, kPropertyContext));
}

TEST_F(DependencyMatchingTest, NestedOnesToo) {
  EXPECT_EQ(HitsWith(R"({"type":"Network","name":".*LAN","dependencies":[{"type":"OS","name":"("}]})"),
            Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(6, kContext));
}

TEST_F(DependencyMatchingTest, AfterOneThatFindsNothingTheRestIsNotAsked) {
  const std::string malformed = R"({"type":"OS","name":"("})";
  const std::string none = R"({"type":"OS","name":"Linux"})";
  const std::string windows = R"({"type":"OS","name":"Windows"})";

  EXPECT_EQ(HitsWith(none + "," + malformed), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts());

  EXPECT_EQ(HitsWith(windows + "," + malformed), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(3, kContext));

  mHost.mExceptionContexts.clear();
  EXPECT_EQ(HitsWith(malformed + "," + malformed), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(3, kContext));
}

TEST_F(DependencyMatchingTest, TheyAreNotAskedForACandidateOfAnotherNameOrVersion) {
  const std::string malformed = R"("dependencies":[{"type":"OS","name":"("}]})";
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"other",)" + malformed, mMachine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"a","versions":["2"],)" + malformed, mMachine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"memory.mb","eq":"1",)" + malformed, mMachine), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"a",)" + malformed, mMachine), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext});
}

/// A Video rule of this name that depends on itself so many times over, the innermost on `leaf`.
std::string Nested(int levels, const std::string& leaf) {
  std::string json = leaf;
  for (int level = 0; level < levels; ++level) {
    json = R"({"type":"Video","name":"card.*","dependencies":[)" + json + "]}";
  }
  return json;
}

/// Asked for each candidate anew, sixty levels over ten components would be ten to the power of sixty
/// questions, and the test would never end.
TEST_F(DependencyMatchingTest, AnAnswerDoesNotTakeAPowerOfTheLevels) {
  Components machine;
  Texts names;
  for (int number = 0; number < 10; ++number) {
    names.push_back("card " + std::to_string(number));
    machine.push_back(Component(OSComponentType::kVideo, names.back(), "1"));
  }
  EXPECT_EQ(HitNames(Nested(60, R"({"type":"Video","name":"card.*"})"), machine), names);
  EXPECT_EQ(HitNames(Nested(60, R"({"type":"Video","name":"none"})"), machine), Texts());
  EXPECT_EQ(HitNames(Nested(60, R"({"type":"Video","name":"card 3"})"), machine), names);
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
  // Not even where every answer is logged.
  EXPECT_EQ(HitNames(Nested(60, R"({"type":"Video","name":"("})"), machine), Texts());
  EXPECT_GE(mHost.mExceptionContexts.size(), 100u);
}

TEST_F(DependencyMatchingTest, AnAnswerDoesNotTakeAPowerOfTheLevelsWherePropertiesAreLogged) {
  Components machine;
  for (int number = 0; number < 10; ++number) {
    machine.push_back(Component(OSComponentType::kVideo, "card " + std::to_string(number), "1"));
  }
  machine.push_back(Property("p", "1"));
  EXPECT_EQ(HitNames(Nested(60, R"({"type":"Property","name":"p","regex":"("})"), machine), Texts());
  EXPECT_GE(mHost.mExceptionContexts.size(), 100u);
}

/// As deep as JSON may be nested, with an expression at its bound in the middle of it.
TEST_F(DependencyMatchingTest, TheDeepestNestEndsOnASmallStack) {
  constexpr int levels = 127;
  const Components machine{Component(OSComponentType::kVideo, "card", "1"),
                           Component(OSComponentType::kOS, "Windows", "1")};
  const std::string leaf = R"({"type":"OS","name":")" + std::string(4096, 'W') + "\"}";
  Texts hits{"not asked"};
  std::string identifier;
  bool isReadBack = false;
  testsupport::RunOnStackOfOneMebibyte([&] {
    hits = HitNames(Nested(levels, leaf), machine);
    const SCRRule rule = ReadRule(Nested(levels, R"({"type":"OS","name":"Windows"})"));
    identifier = SCRRule(rule).GetID();
    SCRRule again;
    isReadBack = again.FromJSON(rule.ToJSON()) && again == rule;
  });
  EXPECT_EQ(hits, Texts());
  EXPECT_EQ(identifier.size(), 41u);
  EXPECT_TRUE(isReadBack);
  EXPECT_EQ(HitNames(Nested(levels, R"({"type":"OS","name":"Win.*"})"), machine), Texts{"card"});
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

}  // namespace
