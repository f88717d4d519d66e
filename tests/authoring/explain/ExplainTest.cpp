// What is told of a match, and what is not.
#include "authoring/explain/Explain.h"

#include <gtest/gtest.h>

#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using authoring::Explain;
using authoring::Explained;
using authoring::ExplainQuestion;
using authoring::Nearness;
using authoring::ToldExplanation;
using qelsystemcompatibilityreport::MatchVerdict;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::Component;
using testsupport::Components;
using testsupport::Property;
using testsupport::ReadRule;

using Texts = std::vector<std::string>;
using Rules = std::vector<SCRRule>;

class ExplainTest : public testing::Test {
 protected:
  ExplainTest() { OSComponent::EnableSupportProperties(true); }
  ~ExplainTest() override { OSComponent::EnableSupportProperties(false); }

  static Rules Read(const Texts& texts) {
    Rules rules;
    for (const std::string& text : texts) rules.push_back(ReadRule(text));
    return rules;
  }

  /// "0 a, 0 b, 2 c": rules and components.
  static std::string Pairs(const std::vector<ToldExplanation>& explanations) {
    std::string text;
    for (const ToldExplanation& told : explanations) {
      text += (text.empty() ? "" : ", ") + std::to_string(told.mRule.mIndex) + " " +
              told.mSteps.mComponent->GetName();
    }
    return text;
  }

  testsupport::TestHost mHost;
};

TEST_F(ExplainTest, HitsInOrderAndNearMissesTheNearestFirst) {
  const Components machine{Component(OSComponentType::kVideo, "NVIDIA GeForce RTX 3060", "31.0.15.4601"),
                           Component(OSComponentType::kOS, "Windows", "10.0.22631.3007"),
                           Property("memory.mb", "8192")};
  const Rules rules = Read({
      R"({"type":"OS","name":"Windows"})",
      R"({"type":"Video","name":"^NVIDIA .*$","versions":["31.0.15.3623-31.0.15.4000"]})",
      R"({"type":"Video","name":"^NVIDIA .*$","versions":["31.0.15.4602-31.0.15.5000"]})",
      R"({"type":"Video","name":"GeForce RTX 3060"})",
      R"({"type":"Property","name":"memory.mb","ilt":"8000"})",
      R"({"type":"Video","name":"^NVIDIA .*$","dependencies":[{"type":"OS","name":"Windows","versions":["-10.0.19045.+"]}]})",
      R"({"type":"Video","name":"^NVIDIA .*$","dependencies":[{"type":"Audio","name":"x"}]})",
      R"({"type":"Video","name":"AMD Radeon"})",
      R"({"type":"Video","name":"AMD Radeon","version":"1"})",
      // Two reasons are one too many.
      R"({"type":"Video","name":"^NVIDIA .*$","version":"1","dependencies":[{"type":"Audio","name":"x"}]})",
  });
  const Explained explained = Explain(rules, OSComponentRegistry(machine), {});
  EXPECT_EQ(Pairs(explained.mHits), "0 Windows");
  EXPECT_EQ(Pairs(explained.mMisses),
            "2 NVIDIA GeForce RTX 3060, 1 NVIDIA GeForce RTX 3060, 4 memory.mb, 5 NVIDIA GeForce RTX 3060, "
            "3 NVIDIA GeForce RTX 3060, 6 NVIDIA GeForce RTX 3060");
  EXPECT_EQ(explained.mRuleCount, 10U);
  EXPECT_EQ(explained.mHitCount, 1U);
  EXPECT_EQ(explained.mNearCount, 6U);
  EXPECT_EQ(explained.MissCount(), 9U);
  EXPECT_EQ(explained.mVerdicts, (std::array<std::size_t, 6>{1, 0, 4, 2, 1, 2}));
}

TEST_F(ExplainTest, ARuleThatIsAskedAboutIsToldOfWhetherNearOrNot) {
  const Components machine{Component(OSComponentType::kOS, "Linux", "6.1"),
                           Component(OSComponentType::kOS, "Debian", "12"),
                           Component(OSComponentType::kVideo, "x", "1")};
  const Rules rules =
      Read({R"({"type":"OS","name":"Linux","version":"6.2"})", R"({"type":"OS","name":"Linux"})",
            R"({"type":"Audio","name":"x"})", R"({"type":"File","name":""})"});
  const Explained first = Explain(rules, OSComponentRegistry(machine), ExplainQuestion{.mRules = {0}});
  EXPECT_EQ(Pairs(first.mHits), "");
  EXPECT_EQ(Pairs(first.mMisses), "0 Linux, 0 Debian");
  EXPECT_EQ(first.mHitCount + first.MissCount(), 2U);
  EXPECT_TRUE(first.mWithoutCandidates.empty());

  const Explained others = Explain(rules, OSComponentRegistry(machine), ExplainQuestion{.mRules = {2, 3}});
  ASSERT_EQ(others.mWithoutCandidates.size(), 2U);
  EXPECT_EQ(others.mWithoutCandidates[0].mIndex, 2U);
  EXPECT_FALSE(others.mWithoutCandidates[0].mFile);
  EXPECT_EQ(others.mWithoutCandidates[1].mIndex, 3U);
  EXPECT_TRUE(others.mWithoutCandidates[1].mFile);
}

TEST_F(ExplainTest, AComponentThatIsAskedAbout) {
  const Components machine{Component(OSComponentType::kOS, "Linux", "6.1"),
                           Component(OSComponentType::kOS, "Debian", "12")};
  const Rules rules =
      Read({R"({"type":"OS","name":"Linux"})", R"({"type":"OS","name":"Debian","version":"13"})",
            R"({"type":"OS","name":"Windows"})"});
  const Explained debian =
      Explain(rules, OSComponentRegistry(machine), ExplainQuestion{.mComponents = {"Debian"}});
  EXPECT_EQ(Pairs(debian.mHits), "");
  EXPECT_EQ(Pairs(debian.mMisses), "1 Debian");
  EXPECT_EQ(debian.MissCount(), 3U);
  const Explained both =
      Explain(rules, OSComponentRegistry(machine), ExplainQuestion{.mRules = {0}, .mComponents = {"Debian"}});
  EXPECT_EQ(Pairs(both.mMisses), "0 Debian");
  EXPECT_EQ(both.MissCount(), 1U);
}

TEST_F(ExplainTest, ALargeListDoesNotMakeALongExplanation) {
  Components machine;
  for (int index = 0; index < 300; ++index) {
    machine.push_back(Component(OSComponentType::kVideo, "device " + std::to_string(index), "1"));
  }
  Rules rules;
  for (int index = 0; index < 40; ++index) {
    rules.push_back(ReadRule(R"({"type":"Video","name":"device .*"})"));
    rules.push_back(ReadRule(R"({"type":"Video","name":"device .*","version":"2"})"));
  }
  const Explained explained = Explain(rules, OSComponentRegistry(machine), {});
  EXPECT_EQ(explained.mHitCount, 40U * 300U);
  EXPECT_EQ(explained.mNearCount, 40U * 300U);
  EXPECT_EQ(explained.mHits.size(), 20U);
  EXPECT_EQ(explained.mMisses.size(), 10U);
  // No rule takes all the room.
  EXPECT_EQ(explained.mHits[2].mRule.mIndex, 0U);
  EXPECT_EQ(explained.mHits[3].mRule.mIndex, 2U);
  EXPECT_EQ(explained.mMisses[2].mRule.mIndex, 1U);
  EXPECT_EQ(explained.mMisses[3].mRule.mIndex, 3U);
  const Explained asked = Explain(rules, OSComponentRegistry(machine), ExplainQuestion{.mRules = {0, 1}});
  EXPECT_EQ(asked.mHits.size(), 50U);
  EXPECT_EQ(asked.mMisses.size(), 50U);
}

TEST_F(ExplainTest, OfManyRangesTheNearestAreKept) {
  std::string ranges;
  for (int index = 1; index <= 600; ++index) {
    ranges += (ranges.empty() ? "\"" : ",\"") + std::to_string(index * 10) + "\"";
  }
  const Rules rules = Read({R"({"type":"OS","name":"Linux","versions":[)" + ranges + "]}"});
  const auto ask = [&](const char* version) {
    return Explain(rules, OSComponentRegistry({Component(OSComponentType::kOS, "Linux", version)}),
                   ExplainQuestion{.mRules = {0}});
  };
  const Explained missed = ask("3001");
  ASSERT_EQ(missed.mMisses.size(), 1U);
  const authoring::Explanation& miss = missed.mMisses[0].mSteps;
  std::vector<std::size_t> indexes;
  for (const auto& range : miss.mRanges) indexes.push_back(range.mIndex);
  EXPECT_EQ(indexes, (std::vector<std::size_t>{297, 298, 299, 300, 301}));
  EXPECT_EQ(miss.mRangesLeftOut, 595U);
  EXPECT_EQ(miss.NearestRange()->mIndex, 299U);
  const Explained hit = ask("3000");
  ASSERT_EQ(hit.mHits.size(), 1U);
  EXPECT_EQ(hit.mHits[0].mSteps.mRanges.back().mIndex, 299U);
  EXPECT_TRUE(hit.mHits[0].mSteps.mRanges.back().mHolds);
  EXPECT_EQ(hit.mHits[0].mSteps.mRangesLeftOut, 295U);
}

TEST_F(ExplainTest, OfManyDependenciesAFewAndTheOneThatDecides) {
  std::string dependencies;
  for (int index = 0; index < 100; ++index) dependencies += R"({"type":"OS","name":"Linux"},)";
  const Rules rules = Read({R"({"type":"OS","name":"Linux","dependencies":[)" + dependencies +
                            R"({"type":"OS","name":"Windows"},{"type":"OS","name":"Linux"}]})"});
  const Explained explained =
      Explain(rules, OSComponentRegistry({Component(OSComponentType::kOS, "Linux", "6")}),
              ExplainQuestion{.mRules = {0}});
  ASSERT_EQ(explained.mMisses.size(), 1U);
  const authoring::Explanation& miss = explained.mMisses[0].mSteps;
  EXPECT_EQ(miss.mVerdict, MatchVerdict::kDependency);
  EXPECT_EQ(miss.mDependencies.size(), 11U);
  EXPECT_EQ(miss.mDependencies.back().mIndex, 100U);
  EXPECT_FALSE(miss.mDependencies.back().mFoundSomething);
  EXPECT_EQ(miss.mDependenciesLeftOut, 90U);
  EXPECT_EQ(miss.mDependenciesNotAsked, 1U);
}

std::size_t CountSteps(const authoring::Explanation& explanation) {
  std::size_t count = 1;
  for (const auto& dependency : explanation.mDependencies) {
    for (const auto& candidate : dependency.mCandidates) count += CountSteps(candidate);
  }
  return count;
}

/// Outcomes that log are asked for again and again, so the tree of the match grows with every level.
TEST_F(ExplainTest, DeepDependenciesMakeNoHugeTree) {
  Components machine;
  for (const char* const name : {"a", "b", "c", "d"}) {
    machine.push_back(Component(OSComponentType::kVideo, name, "1"));
  }
  std::string rule = R"({"type":"Video","name":"("})";
  for (int depth = 0; depth < 5; ++depth) {
    rule = R"({"type":"Video","name":".","dependencies":[)" + rule + "]}";
  }
  const Explained asked = Explain(Read({rule}), OSComponentRegistry(machine), ExplainQuestion{.mRules = {0}});
  ASSERT_EQ(asked.mMisses.size(), 4U);
  for (const ToldExplanation& told : asked.mMisses) EXPECT_LE(CountSteps(told.mSteps), 101U);
}

TEST_F(ExplainTest, ForcedSwitchesHoldForOneExplanation) {
  const Components machine{Component(OSComponentType::kOS, "Linux", "6.1")};
  const Rules rules =
      Read({R"({"type":"OS","name":"Windows"})", R"({"type":"OS","name":"Linux","version":"9"})"});
  const OSComponentRegistry registry(machine);
  EXPECT_EQ(Pairs(Explain(rules, registry, ExplainQuestion{.mForcesByType = true}).mHits),
            "0 Linux, 1 Linux");
  EXPECT_EQ(Pairs(Explain(rules, registry, ExplainQuestion{.mForcesByName = true}).mHits), "1 Linux");
  EXPECT_EQ(Pairs(Explain(rules, registry, {}).mHits), "");
}

}  // namespace
