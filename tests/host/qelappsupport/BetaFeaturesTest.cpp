#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "tests/support/TestHost.h"

namespace {

using qelappsupport::IsFeatureEnabled;
using qelappsupport::feature::BetaFeature;
using qelappsupport::feature::Stage;
using qelappsupport::host::BetaFeatureDescription;
using qelappsupport::host::GetBetaFeatures;

// Declared before `main`, as libraries do it.
const BetaFeature kStatic("test.static", Stage::kBeta, "$$$/Test/Static=Declared by a static object",
                          "TEST-1");

class BetaFeatures : public testing::Test {
 protected:
  /// What was declared since the test began.
  [[nodiscard]] std::vector<BetaFeatureDescription> Added() const {
    std::vector<BetaFeatureDescription> features = GetBetaFeatures();
    features.erase(features.begin(), features.begin() + static_cast<std::ptrdiff_t>(mCountAtStart));
    return features;
  }

  testsupport::TestHost mHost;
  std::size_t mCountAtStart = GetBetaFeatures().size();
};

TEST_F(BetaFeatures, StaticObjectsDeclareThem) {
  EXPECT_EQ(
      GetBetaFeatures(),
      (std::vector<BetaFeatureDescription>{{.mName = "test.static",
                                            .mStage = Stage::kBeta,
                                            .mDescription = "$$$/Test/Static=Declared by a static object",
                                            .mTicket = "TEST-1"}}));
}

TEST_F(BetaFeatures, TheyStandInTheOrderOfDeclaring) {
  const BetaFeature second("test.z", Stage::kBeta, "d1", "t1");
  const BetaFeature third("test.a", Stage::kBeta, "d2", "t2");
  EXPECT_EQ(Added(), (std::vector<BetaFeatureDescription>{{"test.z", Stage::kBeta, "d1", "t1"},
                                                          {"test.a", Stage::kBeta, "d2", "t2"}}));
}

TEST_F(BetaFeatures, TheFirstDeclarationOfANameCounts) {
  const BetaFeature first("test.name", Stage::kBeta, "first", "t1");
  const BetaFeature second("test.name", Stage::kBeta, "second", "t2");
  EXPECT_EQ(Added(), (std::vector<BetaFeatureDescription>{{"test.name", Stage::kBeta, "first", "t1"}}));
}

TEST_F(BetaFeatures, TheyAreOffUntilTheHostOrASettingSwitchesThemOn) {
  const BetaFeature unknown("test.unknown", Stage::kBeta, "d", "t");
  const BetaFeature known("qelsystemcompatibilityreport.properties", Stage::kBeta, "d", "t");
  EXPECT_FALSE(IsFeatureEnabled("test.unknown"));
  EXPECT_TRUE(IsFeatureEnabled("qelsystemcompatibilityreport.properties"));
  qelcore::host::SetDebugEntryForThisRun("test.unknown", "true");
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "false");
  EXPECT_TRUE(IsFeatureEnabled("test.unknown"));
  EXPECT_FALSE(IsFeatureEnabled("qelsystemcompatibilityreport.properties"));
}

TEST_F(BetaFeatures, ThreadsDeclareAtATime) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([number] {
      for (int count = 0; count < 50; ++count) {
        // Each name twice, from two threads.
        const BetaFeature feature(std::to_string(number / 2) + "." + std::to_string(count), Stage::kBeta, "",
                                  "");
        static_cast<void>(GetBetaFeatures());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(Added().size(), 100U);
}

}  // namespace
