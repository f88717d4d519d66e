// The steps of a match, as an observer hears of them.
#include "qelsystemcompatibilityreport/MatchExplanation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelsystemcompatibilityreport::ComparisonStep;
using qelsystemcompatibilityreport::ExplainMatch;
using qelsystemcompatibilityreport::FileStep;
using qelsystemcompatibilityreport::MatchForce;
using qelsystemcompatibilityreport::MatchObserver;
using qelsystemcompatibilityreport::MatchVerdict;
using qelsystemcompatibilityreport::NameStep;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::RangeStep;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::VersionStep;
using testsupport::Component;
using testsupport::Components;
using testsupport::Property;
using testsupport::ReadRule;

using Texts = std::vector<std::string>;

/// A line for each step, those of dependencies further in.
class Steps : public MatchObserver {
 public:
  Texts mLines;
  std::vector<std::size_t> mUnwanted;  ///< the rules that are to be matched without a word

  bool BeginRule(std::size_t index, const SCRRule& rule) override {
    for (const std::size_t unwanted : mUnwanted) {
      if (unwanted == index) return false;
    }
    Add("rule " + std::to_string(index) + " " + rule.GetName());
    return true;
  }
  void EndRule(std::size_t hitCount) override { Add("hits " + std::to_string(hitCount)); }
  void OnFile(const FileStep& step) override {
    const char* const outcomes[] = {"no path", "unknown placeholder", "nothing there", "file", "directory"};
    Add(std::string(outcomes[static_cast<int>(step.mOutcome)]) + " " + step.mExpandedPath);
  }
  void BeginCandidate(const std::shared_ptr<OSComponent>& component) override {
    Add("candidate " + component->GetName());
  }
  void OnForced(MatchForce force) override {
    Add(force == MatchForce::kByType ? "forced by type" : "forced by name");
  }
  void OnVersion(const VersionStep& step) override {
    Add("version " + step.mVersion.ToString() + " & " + step.mMask.ToString() + " = " +
        step.mMasked.ToString() + " % " + step.mModulus.ToString() + " = " + step.mCompared.ToString() +
        ", " + std::to_string(step.mRangeCount));
  }
  void OnRange(const RangeStep& step) override {
    Add("range " + std::to_string(step.mIndex) + " " + step.mRange.ToString() +
        (step.mHolds ? " holds " : " misses ") + step.mCompared.ToString());
  }
  void OnName(const NameStep& step) override {
    const char* const outcomes[] = {"equal",   "matches",       "differs",           "malformed",
                                    "refused", "rule has none", "component has none"};
    Add("name " + std::string(outcomes[static_cast<int>(step.mOutcome)]) + (step.mIsAside ? " aside" : ""));
    if (!step.mReason.empty()) mReason = step.mReason;
  }
  void OnComparison(const ComparisonStep& step) override {
    const char* const outcomes[] = {"holds", "fails", "malformed", "refused", "not looked at"};
    const auto text = [](const std::string& operand, const std::optional<std::int64_t>& integer) {
      return integer ? std::to_string(*integer) : "\"" + operand + "\"";
    };
    Add(std::to_string(static_cast<int>(step.mOperator)) + ": " + text(step.mValue, step.mIntegerValue) +
        " " + text(step.mOperand, step.mIntegerOperand) + " " + outcomes[static_cast<int>(step.mOutcome)]);
    if (!step.mReason.empty()) mReason = step.mReason;
  }
  void BeginDependency(std::size_t index, const SCRRule& dependency) override {
    Add("dependency " + std::to_string(index) + " " + dependency.GetName());
    mDepth += 2;
  }
  void EndDependency(bool foundSomething, bool isRemembered) override {
    mDepth -= 2;
    Add(std::string(foundSomething ? "found" : "nothing") + (isRemembered ? " as before" : ""));
  }
  void OnDependenciesAside(std::optional<std::size_t> failed) override {
    Add(failed ? "aside dependency " + std::to_string(*failed) + " nothing" : "aside dependencies found");
  }
  void EndCandidate(MatchVerdict verdict) override {
    const char* const verdicts[] = {"hit", "properties off", "version", "name", "value", "dependency"};
    Add("-> " + std::string(verdicts[static_cast<int>(verdict)]));
  }

  std::string mReason;  ///< the last that was told

 private:
  void Add(const std::string& line) { mLines.push_back(std::string(mDepth, ' ') + line); }

  std::size_t mDepth = 0;
};

class MatchExplanationTest : public testing::Test {
 protected:
  MatchExplanationTest() { OSComponent::EnableSupportProperties(true); }
  ~MatchExplanationTest() override {
    OSComponent::EnableSupportProperties(false);
    SCRRule::ForceMatchByTypeForTesting(false);
    SCRRule::ForceMatchByNameForTesting(false);
    SCRRule::ForgetFileComponents();
  }

  /// What is told of a rule on a machine, without its first and its last line.
  Texts Explain(const std::string& rule, const Components& machine) {
    Steps steps;
    ExplainMatch(ReadRule(rule), OSComponentRegistry(machine), steps);
    mReason = steps.mReason;
    EXPECT_GE(steps.mLines.size(), 2U);
    if (steps.mLines.size() < 2) return {};
    return {steps.mLines.begin() + 1, steps.mLines.end() - 1};
  }

  testsupport::TestHost mHost;
  std::string mReason;
};

TEST_F(MatchExplanationTest, MaskAndModulusAndEachRangeUpToTheFirstThatHolds) {
  const Components machine{Component(OSComponentType::kVideo, "NVIDIA Quadro P4200", "24.21.14.1195")};
  EXPECT_EQ(
      Explain(R"({"type":"Video","name":"NVIDIA Quadro P4200","version_mask":"0.0.+","version_mod":"0.0.10.+",
                        "versions":["0.0.3.0-0.0.3.+","0.0.4.0-0.0.4.+","0.0.5.0"]})",
              machine),
      (Texts{"candidate NVIDIA Quadro P4200",
             "version 24.21.14.1195 & 0.0.+ = 0.0.14.1195 % 0.0.10.+ = 0.0.4.1195, 3",
             "range 0 0.0.3.0-0.0.3.+ misses 0.0.4.1195", "range 1 0.0.4.0-0.0.4.+ holds 0.0.4.1195",
             "name equal", "-> hit"}));
}

TEST_F(MatchExplanationTest, WithoutMaskAndRanges) {
  EXPECT_EQ(Explain(R"({"type":"Video","name":"a"})", {Component(OSComponentType::kVideo, "a", "")}),
            (Texts{"candidate a", "version  &  =  %  = , 0", "name equal", "-> hit"}));
}

TEST_F(MatchExplanationTest, NamesOfEveryOutcome) {
  const struct {
    const char* mRule;
    const char* mComponent;
    Texts mSteps;
  } rows[] = {
      {"a.c", "a.c", {"name equal", "-> hit"}},       {"a.c", "abc", {"name matches", "-> hit"}},
      {"b", "abc", {"name differs", "-> name"}},      {"(", "abc", {"name malformed", "-> name"}},
      {"(", "(", {"name equal", "-> hit"}},           {"(a)\\\\1", "aa", {"name refused", "-> name"}},
      {"", "abc", {"name rule has none", "-> name"}}, {"a", "", {"name component has none", "-> name"}},
      {"", "", {"name rule has none", "-> name"}},
  };
  for (const auto& row : rows) {
    Texts steps = Explain(std::string(R"({"type":"OS","name":")") + row.mRule + "\"}",
                          {Component(OSComponentType::kOS, row.mComponent, "1")});
    ASSERT_GE(steps.size(), 2U);
    EXPECT_EQ(Texts(steps.begin() + 2, steps.end()), row.mSteps) << row.mRule << " on " << row.mComponent;
  }
}

TEST_F(MatchExplanationTest, AnExpressionIsRefusedForAReason) {
  const Components machine{Component(OSComponentType::kOS, "abc", "1")};
  Explain(R"({"type":"OS","name":"("})", machine);
  EXPECT_EQ(mReason.rfind("the expression \"(\" is refused: ", 0), 0U) << mReason;
  Explain(R"({"type":"OS","name":"(a)\\1"})", machine);
  EXPECT_EQ(mReason, "the expression \"(a)\\1\" is refused: too complex: it refers back to a group");
  EXPECT_EQ(mHost.mExceptionContexts.size(), 2U);
}

/// A match does not come as far as the name. The explanation does, and leaves no trace.
TEST_F(MatchExplanationTest, AfterTheVersionNamesAreComparedAside) {
  const struct {
    const char* mRule;
    const char* mName;
  } rows[] = {{"a", "name equal aside"},          {"[a-c]", "name matches aside"},
              {"b", "name differs aside"},        {"(", "name malformed aside"},
              {"(a)\\\\1", "name refused aside"}, {"", "name rule has none aside"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Explain(std::string(R"({"type":"OS","versions":["2","3-4"],"name":")") + row.mRule + "\"}",
                      {Component(OSComponentType::kOS, "a", "1")}),
              (Texts{"candidate a", "version 1.0.0.0 &  = 1.0.0.0 %  = 1.0.0.0, 2",
                     "range 0 2.0.0.0 misses 1.0.0.0", "range 1 3.0.0.0-4.0.0.0 misses 1.0.0.0", row.mName,
                     "-> version"}));
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(MatchExplanationTest, ComparisonsOneByOne) {
  const struct {
    const char* mComparisons;
    Texts mSteps;
  } rows[] = {
      {"", {"-> hit"}},
      {R"(,"eq":"8")", {R"(0: "8" "8" holds)", "-> hit"}},
      // Every text comparison is made, whatever the others say.
      {R"(,"ne":"8","gte":"7","regex":"[0-9]")",
       {R"(1: "8" "8" fails)", R"(5: "8" "7" holds)", R"(12: "8" "[0-9]" holds)", "-> value"}},
      {R"(,"eq":"9","regex":"(")", {R"(0: "8" "9" fails)", R"(12: "8" "(" malformed)", "-> value"}},
      {R"(,"regex":"(8)\\1")", {R"(12: "8" "(8)\1" refused)", "-> value"}},
      // Integers up to the first that fails.
      {R"(,"ilt":"9","igte":"4 GB","ine":"8","ieq":"8")",
       {"6: 8 8 holds", "7: 8 8 fails", R"(8: "8" "9" not looked at)", R"(11: "8" "4 GB" not looked at)",
        "-> value"}},
      {R"(,"igte":" -4 GB")", {"11: 8 -4 holds", "-> hit"}},
      // Texts decide alone.
      {R"(,"eq":"8","ieq":"9")", {R"(6: "8" "9" not looked at)", R"(0: "8" "8" holds)", "-> hit"}},
  };
  for (const auto& row : rows) {
    Texts expected{"candidate memory", "name equal"};
    expected.insert(expected.end(), row.mSteps.begin(), row.mSteps.end());
    EXPECT_EQ(Explain(std::string(R"({"type":"Property","name":"memory")") + row.mComparisons + "}",
                      {Property("memory", "8")}),
              expected)
        << row.mComparisons;
  }
}

TEST_F(MatchExplanationTest, PropertiesOfOtherNamesAndWherePropertiesAreOff) {
  const Components machine{Property("Memory", "8")};
  EXPECT_EQ(Explain(R"({"type":"Property","name":".*"})", machine),
            (Texts{"candidate Memory", "name differs", "-> name"}));
  OSComponent::EnableSupportProperties(false);
  EXPECT_EQ(Explain(R"({"type":"Property","name":"Memory"})", machine),
            (Texts{"candidate Memory", "-> properties off"}));
}

TEST_F(MatchExplanationTest, Files) {
  const std::map<std::string, std::string, std::less<>> versions = {{"/opt/driver.so", "1.2"}};
  const qelcore::host::RecordedFilesScope files(versions);
  const struct {
    const char* mRule;
    Texts mSteps;
  } rows[] = {
      {R"("name":"/opt/driver.so","versions":["1-2"])",
       {"file /opt/driver.so", "candidate /opt/driver.so", "version 1.2.0.0 &  = 1.2.0.0 %  = 1.2.0.0, 1",
        "range 0 1.0.0.0-2.0.0.0 holds 1.2.0.0", "-> hit"}},
      {R"("name":"/opt/driver.so","version":"2")",
       {"file /opt/driver.so", "candidate /opt/driver.so", "version 1.2.0.0 &  = 1.2.0.0 %  = 1.2.0.0, 1",
        "range 0 2.0.0.0 misses 1.2.0.0", "-> version"}},
      {R"("name":"/opt/other.so")", {"nothing there /opt/other.so"}},
      {R"("name":"")", {"no path "}},
  };
  for (const auto& row : rows) {
    // The second time from what is remembered.
    for (int time = 0; time < 2; ++time) {
      EXPECT_EQ(Explain(std::string(R"({"type":"File",)") + row.mRule + "}", {}), row.mSteps) << row.mRule;
    }
  }
}

TEST_F(MatchExplanationTest, PlaceholdersOfPathsOnThisMachine) {
#if defined(_WIN32)
  const std::string unknown = "%QELSCR_NO_SUCH_VARIABLE%";
#else
  const std::string unknown = "$QELSCR_NO_SUCH_VARIABLE";
#endif
  EXPECT_EQ(Explain(R"({"type":"File","name":")" + unknown + R"(/x"})", {}),
            (Texts{"unknown placeholder " + unknown + "/x"}));
  const Texts steps = Explain(R"({"type":"File","name":"/"})", {});
  ASSERT_GE(steps.size(), 1U);
  EXPECT_EQ(steps[0], "directory /");
}

TEST_F(MatchExplanationTest, ForcedSwitches) {
  const Components machine{Component(OSComponentType::kOS, "a", "1"),
                           Component(OSComponentType::kOS, "b", "1")};
  SCRRule::ForceMatchByTypeForTesting(true);
  EXPECT_EQ(Explain(R"({"type":"OS","name":"","dependencies":[{"type":"Audio","name":"x"}]})", machine),
            (Texts{"candidate a", "forced by type", "-> hit", "candidate b", "forced by type", "-> hit"}));
  SCRRule::ForceMatchByTypeForTesting(false);
  SCRRule::ForceMatchByNameForTesting(true);
  EXPECT_EQ(Explain(R"({"type":"OS","name":"a","version":"9"})", machine),
            (Texts{"candidate a", "forced by name", "name equal", "-> hit", "candidate b", "forced by name",
                   "name differs", "-> name"}));
}

TEST_F(MatchExplanationTest, DependenciesHaveTreesOfTheirOwn) {
  const Components machine{Component(OSComponentType::kVideo, "a", "1"),
                           Component(OSComponentType::kVideo, "b", "1"),
                           Component(OSComponentType::kOS, "Windows", "10"), Property("memory", "8")};
  const std::string nested =
      R"({"type":"OS","name":"Windows","dependencies":[{"type":"Property","name":"memory","igt":"4"}]})";
  EXPECT_EQ(Explain(R"({"type":"Video","name":".","dependencies":[)" + nested + "]}", machine),
            (Texts{"candidate a",
                   "version 1.0.0.0 &  = 1.0.0.0 %  = 1.0.0.0, 0",
                   "name matches",
                   "dependency 0 Windows",                               //
                   "  candidate Windows",                                //
                   "  version 10.0.0.0 &  = 10.0.0.0 %  = 10.0.0.0, 0",  //
                   "  name equal",                                       //
                   "  dependency 0 memory",                              //
                   "    candidate memory",                               //
                   "    name equal",                                     //
                   "    10: 8 4 holds",                                  //
                   "    -> hit",                                         //
                   "  found",                                            //
                   "  -> hit",                                           //
                   "found",                                              //
                   "-> hit",                                             //
                   "candidate b",
                   "version 1.0.0.0 &  = 1.0.0.0 %  = 1.0.0.0, 0",  //
                   "name matches",
                   "dependency 0 Windows",
                   "found as before",
                   "-> hit"}));
}

TEST_F(MatchExplanationTest, TheFirstDependencyThatFindsNothingDecides) {
  const Components machine{Component(OSComponentType::kVideo, "a", "1"),
                           Component(OSComponentType::kOS, "Linux", "6")};
  const std::string linuxRule = R"({"type":"OS","name":"Linux"})";
  const std::string audioRule = R"({"type":"Audio","name":"x"})";
  EXPECT_EQ(
      Explain(R"({"type":"Video","name":"a","dependencies":[)" + linuxRule + "," + audioRule + "," +
                  linuxRule + "]}",
              machine),
      (Texts{"candidate a", "version 1.0.0.0 &  = 1.0.0.0 %  = 1.0.0.0, 0", "name equal",
             "dependency 0 Linux", "  candidate Linux", "  version 6.0.0.0 &  = 6.0.0.0 %  = 6.0.0.0, 0",
             "  name equal", "  -> hit", "found", "dependency 1 x", "nothing", "-> dependency"}));
}

/// They are not asked then. The explanation asks, and leaves no trace.
TEST_F(MatchExplanationTest, AfterAFailedTestDependenciesAreAskedAside) {
  const Components machine{Component(OSComponentType::kVideo, "a", "1"),
                           Component(OSComponentType::kOS, "Linux", "6"), Property("memory", "8")};
  const std::string linuxRule = R"({"type":"OS","name":"Linux"})";
  const std::string malformed = R"({"type":"OS","name":"("})";
  const std::string malformedProperty = R"({"type":"Property","name":"memory","regex":"("})";
  const struct {
    std::string mDependencies;
    const char* mStep;
  } rows[] = {
      {linuxRule, "aside dependencies found"},
      {linuxRule + "," + malformed, "aside dependency 1 nothing"},
      {malformed + "," + linuxRule, "aside dependency 0 nothing"},
      {linuxRule + "," + linuxRule + "," + malformedProperty, "aside dependency 2 nothing"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Explain(R"({"type":"Video","name":"b","dependencies":[)" + row.mDependencies + "]}", machine),
              (Texts{"candidate a", "version 1.0.0.0 &  = 1.0.0.0 %  = 1.0.0.0, 0", "name differs", row.mStep,
                     "-> name"}))
        << row.mDependencies;
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(MatchExplanationTest, OfAListTheRulesThatAreWanted) {
  const OSComponentRegistry registry({Component(OSComponentType::kOS, "a", "1")});
  const std::vector<SCRRule> rules = {ReadRule(R"({"type":"OS","name":"("})"), SCRRule(),
                                      ReadRule(R"({"type":"OS","name":"a"})")};
  Steps steps;
  steps.mUnwanted = {0};
  ExplainMatch(rules, registry, steps);
  EXPECT_EQ(steps.mLines, (Texts{"rule 2 a", "candidate a", "version 1.0.0.0 &  = 1.0.0.0 %  = 1.0.0.0, 0",
                                 "name equal", "-> hit", "hits 1"}));
  // The other one was matched all the same.
  EXPECT_EQ(mHost.mExceptionContexts,
            (Texts{"qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents"}));
}

/// Thirty of these use up what the expressions of a match may cost. What is compared aside uses nothing of
/// it.
TEST_F(MatchExplanationTest, WhatIsAskedAsideDoesNotUseUpTheBudgetOfTheMatch) {
  const OSComponentRegistry registry({Component(OSComponentType::kOS, std::string(4000, 'b'), "1")});
  const std::string costly(2000, 'a');
  const SCRRule aside = ReadRule(R"({"type":"OS","version":"2","name":")" + costly + "\"}");
  const SCRRule counted = ReadRule(R"({"type":"OS","version":"1","name":")" + costly + "\"}");
  std::vector<SCRRule> rules(100, aside);
  rules.push_back(counted);
  Steps steps;
  ExplainMatch(rules, registry, steps);
  const auto count = [&](const char* line) {
    return std::count(steps.mLines.begin(), steps.mLines.end(), line);
  };
  EXPECT_GT(count("name differs aside"), 20);
  EXPECT_GT(count("name refused aside"), 50);
  EXPECT_EQ(count("name differs"), 1);
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

}  // namespace
