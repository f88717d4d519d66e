// The explained match against the silent one, on random rules and machines.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "tests/rules/RandomRules.h"
#include "tests/support/RandomCases.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::ComparisonStep;
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

/// The hits, and whether the steps add up to the verdict.
class Verdicts : public MatchObserver {
 public:
  OSComponentRegistry::Components mHits;
  std::size_t mMisses = 0;
  std::size_t mHitCount = 0;
  bool mAddsUp = true;

  void EndRule(std::size_t hitCount) override { mHitCount = hitCount; }
  void BeginCandidate(const std::shared_ptr<OSComponent>& component) override {
    mLevels.push_back({});
    mLevels.back().mComponent = component;
  }
  void OnForced(MatchForce force) override {
    Now().mIsForcedByType |= force == MatchForce::kByType;
    Now().mHasVersion |= force == MatchForce::kByName;
  }
  void OnVersion(const VersionStep& step) override { Now().mHasVersion = step.mRangeCount == 0; }
  void OnRange(const RangeStep& step) override { Now().mHasVersion |= step.mHolds; }
  void OnName(const NameStep& step) override {
    Now().mHasName = step.Matches();
    mAddsUp &=
        step.mIsAside == (Now().mComponent->GetType() != OSComponentType::kProperty && !Now().mHasVersion);
  }
  void OnComparison(const ComparisonStep& step) override {
    Now().mHasValue &= step.mOutcome == ComparisonStep::Outcome::kHolds ||
                       step.mOutcome == ComparisonStep::Outcome::kNotLookedAt;
  }
  void EndDependency(bool foundSomething, bool) override { Now().mHasDependencies &= foundSomething; }
  void EndCandidate(MatchVerdict verdict) override {
    const Level level = Now();
    mLevels.pop_back();
    mAddsUp &= verdict == level.Verdict();
    if (!mLevels.empty()) return;
    if (verdict == MatchVerdict::kHit) {
      mHits.push_back(level.mComponent);
    } else {
      ++mMisses;
    }
  }

 private:
  struct Level {
    std::shared_ptr<OSComponent> mComponent;
    bool mIsForcedByType = false;
    bool mHasVersion = false;
    bool mHasName = false;
    bool mHasValue = true;
    bool mHasDependencies = true;

    [[nodiscard]] MatchVerdict Verdict() const {
      const OSComponentType type = mComponent->GetType();
      if (mIsForcedByType) return MatchVerdict::kHit;
      if (type == OSComponentType::kProperty) {
        if (!OSComponent::SupportsProperties()) return MatchVerdict::kPropertiesOff;
        if (!mHasName) return MatchVerdict::kName;
        if (!mHasValue) return MatchVerdict::kValue;
      } else {
        if (!mHasVersion) return MatchVerdict::kVersion;
        if (!mHasName && type != OSComponentType::kFile) return MatchVerdict::kName;
      }
      return mHasDependencies ? MatchVerdict::kHit : MatchVerdict::kDependency;
    }
  };

  Level& Now() { return mLevels.back(); }

  std::vector<Level> mLevels;
};

class RandomExplanationTest : public testing::Test {
 protected:
  ~RandomExplanationTest() override {
    OSComponent::EnableSupportProperties(false);
    SCRRule::ForceMatchByTypeForTesting(false);
    SCRRule::ForceMatchByNameForTesting(false);
  }

  testsupport::TestHost mHost;
};

TEST_F(RandomExplanationTest, ExplainedOrNotTheOutcomeAndTheLogAreTheSame) {
  int cases = 0;
  int casesWithHits = 0;
  std::size_t misses = 0;
  testsupport::CheckOnRandomCases("the explained and the silent match agree", [&] {
    SCRRule rule;
    if (!rule.FromJSON(json::Parse(*testsupport::AnyRule()))) return;
    const std::any root = json::Parse(*testsupport::AnyMachine());
    const json::Dictionary& machine = json::AsDictionary(root);
    OSComponentRegistry::Components components;
    for (const std::any& component : *json::FindArray(machine, "components")) {
      components.push_back(std::make_shared<OSComponent>(component));
    }
    std::map<std::string, std::string, std::less<>> versions;
    for (const std::any& entry : *json::FindArray(machine, "files")) {
      const json::Dictionary& file = json::AsDictionary(entry);
      versions[*json::FindText(file, "path")] = *json::FindText(file, "version");
    }
    const OSComponentRegistry registry(components);
    const qelcore::host::RecordedFilesScope files(versions);
    SCRRule::ForgetFileComponents();
    OSComponent::EnableSupportProperties(*rc::gen::weightedElement<bool>({{9, true}, {1, false}}));
    SCRRule::ForceMatchByTypeForTesting(*rc::gen::weightedElement<bool>({{19, false}, {1, true}}));
    SCRRule::ForceMatchByNameForTesting(*rc::gen::weightedElement<bool>({{9, false}, {1, true}}));

    mHost.mExceptionContexts.clear();
    const auto hits = rule.FindMatchingOSComponents(registry);
    const auto logged = mHost.mExceptionContexts;
    mHost.mExceptionContexts.clear();
    Verdicts verdicts;
    qelsystemcompatibilityreport::ExplainMatch(rule, registry, verdicts);
    RC_ASSERT(verdicts.mHits == hits);
    RC_ASSERT(verdicts.mHitCount == hits.size());
    RC_ASSERT(mHost.mExceptionContexts == logged);
    RC_ASSERT(verdicts.mAddsUp);
    // And a match after an explanation is what it was.
    mHost.mExceptionContexts.clear();
    RC_ASSERT(rule.FindMatchingOSComponents(registry) == hits);
    RC_ASSERT(mHost.mExceptionContexts == logged);
    ++cases;
    casesWithHits += hits.empty() ? 0 : 1;
    misses += verdicts.mMisses;
  });
  // Generators that never hit or miss anything would prove nothing.
  EXPECT_GE(casesWithHits, cases / 20) << casesWithHits << " of " << cases;
  EXPECT_GT(misses, 0U);
  std::cout << casesWithHits << " of " << cases << " cases had hits\n";
}

}  // namespace
