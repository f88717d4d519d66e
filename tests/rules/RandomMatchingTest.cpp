// The real reading and matching of rules against the naive one, on random rules and machines.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/rules/RandomRules.h"
#include "tests/support/NaiveMatcher.h"
#include "tests/support/RandomCases.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::NaiveMachine;
using testsupport::NaiveRule;
using testsupport::NaiveSwitches;

using Places = std::vector<std::size_t>;

/// One machine in both forms.
struct Machine {
  explicit Machine(const std::string& text) {
    const std::any root = json::Parse(text);
    const json::Dictionary& machine = json::AsDictionary(root);
    OSComponentRegistry::Components components;
    for (const std::any& component : *json::FindArray(machine, "components")) {
      components.push_back(std::make_shared<OSComponent>(component));
      mNaive.mComponents.push_back(testsupport::ReadNaiveComponent(component));
    }
    for (const std::any& entry : *json::FindArray(machine, "files")) {
      const json::Dictionary& file = json::AsDictionary(entry);
      mNaive.mFiles[*json::FindText(file, "path")] = *json::FindText(file, "version");
    }
    mReal = OSComponentRegistry(components);
    mFiles.insert(mNaive.mFiles.begin(), mNaive.mFiles.end());
  }

  /// The places of the components; a file is the place after the last.
  [[nodiscard]] Places PlacesOf(const OSComponentRegistry::Components& hits) const {
    Places places;
    const auto& all = mReal.GetAllComponents();
    for (const auto& hit : hits) {
      places.push_back(static_cast<std::size_t>(std::find(all.begin(), all.end(), hit) - all.begin()));
    }
    return places;
  }

  OSComponentRegistry mReal{{}};
  NaiveMachine mNaive;
  std::map<std::string, std::string, std::less<>> mFiles;
};

std::vector<std::string> RangeTexts(const SCRRule& rule) {
  std::vector<std::string> texts;
  for (const auto& range : rule.GetVersions()) texts.push_back(range.ToString());
  return texts;
}

/// The text of a range that was read here, by way of the real one's parts.
std::vector<std::string> RangeTexts(const NaiveRule& rule) {
  using qelcore::utility::OSComponentVersion;
  const auto real = [](const testsupport::NaiveVersion& version) {
    const auto& parts = version.mParts;
    return version.mIsSet ? OSComponentVersion(parts[0], parts[1], parts[2], parts[3]) : OSComponentVersion();
  };
  std::vector<std::string> texts;
  for (const auto& range : rule.mRanges) {
    const qelsystemcompatibilityreport::VersionRange asReal(real(range.mMinimum), real(range.mMaximum));
    texts.push_back(asReal.ToString());
  }
  return texts;
}

void CompareContents(const SCRRule& real, const NaiveRule& naive) {
  RC_ASSERT(qelcore::utility::ComponentTypeToString(real.GetType()) == naive.mType);
  RC_ASSERT(real.GetName() == naive.mName);
  RC_ASSERT(RangeTexts(real) == RangeTexts(naive));
  RC_ASSERT(real.GetInfoMessage() == naive.mMessage);
  RC_ASSERT(real.GetInfoURL() == naive.mLink);
  RC_ASSERT(SCRRule::ErrorLevelToString(real.GetErrorLevel()) == naive.mLevel);
  RC_ASSERT(real.GetDependencies().size() == naive.mDependencies.size());
  RC_ASSERT(real.GetPropertyComparisons().size() ==
            naive.mTextComparisons.size() + naive.mIntegerComparisons.size());
}

class RandomMatchingTest : public testing::Test {
 protected:
  ~RandomMatchingTest() override { OSComponent::EnableSupportProperties(false); }

  /// Compares one rule on one machine; returns whether there were hits.
  bool Compare(const std::string& ruleText, const std::string& machineText, const NaiveSwitches& switches,
               bool supportsProperties) {
    SCRRule real;
    NaiveRule naive;
    const std::any json = json::Parse(ruleText);
    const bool isRead = real.FromJSON(json);
    RC_ASSERT(isRead == testsupport::ReadNaiveRule(json, naive));
    if (!isRead) return false;
    CompareContents(real, naive);

    Machine machine(machineText);
    machine.mNaive.mSupportsProperties = supportsProperties;
    OSComponent::EnableSupportProperties(supportsProperties);
    const qelcore::host::RecordedFilesScope files(machine.mFiles);
    SCRRule::ForgetFileComponents();
    SCRRule::ForceMatchByTypeForTesting(switches.mByType);
    SCRRule::ForceMatchByNameForTesting(switches.mByName);
    mHost.mExceptionContexts.clear();
    const Places hits = machine.PlacesOf(real.FindMatchingOSComponents(machine.mReal));
    SCRRule::ForceMatchByTypeForTesting(false);
    SCRRule::ForceMatchByNameForTesting(false);

    const testsupport::NaiveOutcome expected = testsupport::MatchNaively(naive, machine.mNaive, switches);
    RC_ASSERT(hits == expected.mHits);
    RC_ASSERT(mHost.mExceptionContexts == expected.mLogged);
    return !hits.empty();
  }

  testsupport::TestHost mHost;
};

TEST_F(RandomMatchingTest, TheRealOneAndTheNaiveOneAgree) {
  int cases = 0;
  int casesWithHits = 0;
  testsupport::CheckOnRandomCases("the real and the naive matching agree", [&] {
    const auto rule = *testsupport::AnyRule();
    const auto machine = *testsupport::AnyMachine();
    const bool supportsProperties = *rc::gen::weightedElement<bool>({{9, true}, {1, false}});
    const NaiveSwitches switches{.mByType = *rc::gen::weightedElement<bool>({{19, false}, {1, true}}),
                                 .mByName = *rc::gen::weightedElement<bool>({{9, false}, {1, true}})};
    const bool hasHits = Compare(rule, machine, switches, supportsProperties);
    ++cases;
    if (hasHits) ++casesWithHits;
  });
  // Generators that never hit anything would prove nothing.
  EXPECT_GE(casesWithHits, cases / 20) << casesWithHits << " of " << cases;
  std::cout << casesWithHits << " of " << cases << " cases had hits\n";
}

TEST_F(RandomMatchingTest, WhatIsWrittenIsReadBackEqual) {
  testsupport::CheckOnRandomCases("a written rule reads back", [&] {
    SCRRule rule;
    if (!rule.FromJSON(json::Parse(*testsupport::AnyRule()))) return;
    SCRRule again;
    RC_ASSERT(again.FromJSON(rule.ToJSON()));
    // "version" becomes a range; written once, it stays as it is.
    RC_ASSERT(json::Serialise(again.ToJSON()) == json::Serialise(rule.ToJSON()));
    SCRRule third;
    RC_ASSERT(third.FromJSON(again.ToJSON()));
    RC_ASSERT(third == again);
    RC_ASSERT(third.GetID() == again.GetID());
  });
}

}  // namespace
