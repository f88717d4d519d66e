// The demonstrations, on a clock that the test moves.
#include "qelsystemcompatibilityreport/optimizer/DummyOptimization.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using enum AppOptimizationStatus;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kSetting = "qelsystemcompatibilityreport.RegisterDummyAppOptimizations";

class DummyOptimizationTest : public testing::Test {
 protected:
  DummyOptimizationTest() {
    qelcore::host::SetTimerClock([this] { return mMilliseconds; });
  }
  ~DummyOptimizationTest() override { qelcore::host::SetTimerClock({}); }

  static DummyOptimization::Settings Slow() {
    return {.mName = "n", .mCurrent = "1", .mOptimal = "2", .mDefault = "3", .mStepMilliseconds = 100};
  }

  testsupport::TestHost mHost;
  std::uint64_t mMilliseconds = 5;
  std::string mCurrent = "before";
  std::string mOptimal = "before";
};

TEST_F(DummyOptimizationTest, EveryStepIsPendingForAWhile) {
  DummyOptimization dummy(Slow());
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationPending);
  mMilliseconds += 99;
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationPending);
  EXPECT_EQ(mCurrent, "before");
  mMilliseconds += 1;
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationDone);
  EXPECT_EQ(mCurrent, "1");
  EXPECT_EQ(mOptimal, "2");
  EXPECT_EQ(dummy.Accept(), OptimizationPending);
  mMilliseconds += 100;
  EXPECT_EQ(dummy.Accept(), OptimizationDone);
  EXPECT_EQ(dummy.Default(), OptimizationPending);
  EXPECT_EQ(dummy.Cancel(), OptimizationPending);
  mMilliseconds += 100;
  EXPECT_EQ(dummy.Cancel(), OptimizationDone);
}

TEST_F(DummyOptimizationTest, WithoutAStepThereIsNothingToCancel) {
  DummyOptimization dummy(Slow());
  EXPECT_EQ(dummy.Cancel(), OptimizationDone);
  // Nor did that begin anything.
  mMilliseconds += 100;
  EXPECT_EQ(dummy.Accept(), OptimizationPending);
}

TEST_F(DummyOptimizationTest, AnAbandonedStepLeavesTheNextItsWholeTime) {
  DummyOptimization dummy(Slow());
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationPending);
  mMilliseconds += 1000;
  EXPECT_EQ(dummy.Default(), OptimizationPending);
  mMilliseconds += 99;
  EXPECT_EQ(dummy.Default(), OptimizationPending);
  mMilliseconds += 1;
  EXPECT_EQ(dummy.Default(), OptimizationDone);
}

TEST_F(DummyOptimizationTest, AcceptAndDefaultChangeTheCurrentValue) {
  auto settings = Slow();
  settings.mStepMilliseconds = 0;
  DummyOptimization dummy(settings);
  EXPECT_EQ(dummy.Accept(), OptimizationDone);
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationDone);
  EXPECT_EQ(mCurrent, "2");
  EXPECT_EQ(dummy.Default(), OptimizationDone);
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationDone);
  EXPECT_EQ(mCurrent, "3");
  EXPECT_EQ(mOptimal, "2");
}

TEST_F(DummyOptimizationTest, OneThatIsNotApplicableFillsNothing) {
  DummyOptimization dummy({.mName = "n", .mCurrent = "1", .mOptimal = "2", .mIsApplicable = false});
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationNotNeeded);
  EXPECT_EQ(mCurrent, "before");
  EXPECT_EQ(mOptimal, "before");
}

TEST_F(DummyOptimizationTest, OneThatFailsSaysSo) {
  DummyOptimization dummy(
      {.mName = "n", .mCurrent = "1", .mOptimal = "2", .mAcceptResult = OptimizationFailed});
  EXPECT_EQ(dummy.Accept(), OptimizationFailed);
  EXPECT_EQ(dummy.GetFailureText(), "Why did it fail? No idea.");
  EXPECT_EQ(dummy.Determine(mCurrent, mOptimal), OptimizationDone);
  EXPECT_EQ(mCurrent, "1");
}

// ---- At the start of the host

TEST_F(DummyOptimizationTest, TheyAreThereUnlessSomebodyTurnsThemOff) {
  ASSERT_TRUE(qelcore::host::BeginProcess());
  std::vector<OptimizationState> states;
  InitOptimizationStates(states);
  EXPECT_THAT(states, SizeIs(5));
}

TEST_F(DummyOptimizationTest, OnlyTrueIsOn) {
  qelcore::host::SetDebugEntryForThisRun(kSetting, "TRUE");
  ASSERT_TRUE(qelcore::host::BeginProcess());
  std::vector<OptimizationState> states;
  InitOptimizationStates(states);
  EXPECT_THAT(states, IsEmpty());
}

TEST_F(DummyOptimizationTest, EachHasATimeOfItsOwn) {
  ASSERT_TRUE(qelcore::host::BeginProcess());
  std::vector<OptimizationState> states;
  InitOptimizationStates(states);
  EXPECT_EQ(BeginDetermineOptimizations(states), OptimizationPending);
  std::size_t pending = states.size();
  for (const OptimizationState& state : states) EXPECT_EQ(state.mStatus, OptimizationPending);
  // One after the other comes to its end, and none takes long.
  for (int passed = 0; passed < 2000 && pending != 0; passed += 10) {
    mMilliseconds += 10;
    static_cast<void>(ContinueDetermineOptimizations(states));
    const auto before = pending;
    pending = static_cast<std::size_t>(
        std::count_if(states.begin(), states.end(),
                      [](const OptimizationState& state) { return state.mStatus == OptimizationPending; }));
    EXPECT_LE(before - pending, 1U);
  }
  EXPECT_EQ(pending, 0U);
}

TEST_F(DummyOptimizationTest, TogetherTheyShowEveryAnswer) {
  ASSERT_TRUE(qelcore::host::BeginProcess());
  std::vector<OptimizationState> states;
  InitOptimizationStates(states);
  EXPECT_EQ(BeginDetermineOptimizations(states), OptimizationPending);
  mMilliseconds += 10'000;
  EXPECT_EQ(ContinueDetermineOptimizations(states), OptimizationDone);
  // What is recommended goes well.
  EXPECT_EQ(BeginAcceptOptimizations(states), OptimizationPending);
  mMilliseconds += 10'000;
  EXPECT_EQ(ContinueAcceptOptimizations(states), OptimizationDone);
  // What is not shows how it goes wrong.
  std::vector<AppOptimizationStatus> ends;
  for (const OptimizationState& state : states) {
    if (state.mSelected) continue;
    std::vector<OptimizationState> one{state};
    one[0].mSelected = true;
    EXPECT_EQ(BeginAcceptOptimizations(one), OptimizationPending);
    mMilliseconds += 10'000;
    ends.push_back(ContinueAcceptOptimizations(one));
  }
  EXPECT_THAT(ends, testing::UnorderedElementsAre(OptimizationDone, OptimizationFailed, OptimizationStop));
}

}  // namespace
