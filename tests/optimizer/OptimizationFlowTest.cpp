// The passes over all optimizations.
#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <stdexcept>

#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "tests/optimizer/ScriptedOptimization.h"

namespace {

using namespace qelsystemcompatibilityreport;
using enum AppOptimizationStatus;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::ScriptedOptimization;

using States = std::vector<OptimizationState>;
using Pass = AppOptimizationStatus (*)(States&);

struct NamedPass {
  const char* mName;
  Pass mPass;
  const char* mStep;
  bool mIsForPending;  ///< whether it visits what is pending and nothing else
};

constexpr std::array kPasses{
    NamedPass{"BeginDetermine", BeginDetermineOptimizations, "determine", false},
    NamedPass{"BeginAccept", BeginAcceptOptimizations, "accept", false},
    NamedPass{"BeginDefault", BeginDefaultOptimizations, "default", false},
    NamedPass{"ContinueDetermine", ContinueDetermineOptimizations, "determine", true},
    NamedPass{"ContinueAccept", ContinueAcceptOptimizations, "accept", true},
    NamedPass{"ContinueDefault", ContinueDefaultOptimizations, "default", true},
    NamedPass{"Cancel", CancelOptimizations, "cancel", true},
};

class OptimizationFlowTest : public testing::Test {
 protected:
  /// Three optimizations "a", "b" and "c", selected and pending, so that every pass visits them.
  void MakeThree() {
    mCalls.clear();
    mStates.clear();
    mOptimizations.clear();
    for (const char* const name : {"a", "b", "c"}) {
      mOptimizations.push_back(std::make_shared<ScriptedOptimization>(name, mCalls));
      mStates.push_back(
          {.mOptimization = mOptimizations.back(), .mStatus = OptimizationPending, .mSelected = true});
    }
  }

  [[nodiscard]] std::vector<AppOptimizationStatus> Statuses() const {
    std::vector<AppOptimizationStatus> statuses;
    for (const OptimizationState& state : mStates) statuses.push_back(state.mStatus);
    return statuses;
  }

  std::vector<std::string> mCalls;
  std::vector<std::shared_ptr<ScriptedOptimization>> mOptimizations;
  States mStates;
};

TEST_F(OptimizationFlowTest, EveryPassOverNothingIsDone) {
  for (const NamedPass& pass : kPasses) EXPECT_EQ(pass.mPass(mStates), OptimizationDone) << pass.mName;
}

TEST_F(OptimizationFlowTest, WhatEachAnswerMakesOfAPass) {
  const struct {
    AppOptimizationStatus mSecond;
    AppOptimizationStatus mResult;
    bool mGoesOn;
  } rows[] = {{OptimizationFailed, OptimizationFailed, false},
              {OptimizationNotNeeded, OptimizationDone, true},
              {OptimizationDone, OptimizationDone, true},
              {OptimizationPending, OptimizationPending, true},
              {OptimizationStop, OptimizationStop, false}};
  for (const NamedPass& pass : kPasses) {
    for (const auto& row : rows) {
      SCOPED_TRACE(std::string(pass.mName) + " " + std::to_string(static_cast<int>(row.mSecond)));
      MakeThree();
      mOptimizations[1]->mAnswers[pass.mStep] = {row.mSecond};
      EXPECT_EQ(pass.mPass(mStates), row.mResult);
      // What comes behind a failure or a stop keeps its status and is not asked.
      EXPECT_THAT(Statuses(), ElementsAre(OptimizationDone, row.mSecond,
                                          row.mGoesOn ? OptimizationDone : OptimizationPending));
      const std::string step = pass.mStep;
      EXPECT_EQ(mCalls, row.mGoesOn ? (std::vector<std::string>{"a: " + step, "b: " + step, "c: " + step})
                                    : (std::vector<std::string>{"a: " + step, "b: " + step}));
    }
  }
}

TEST_F(OptimizationFlowTest, OnlyWhatIsPendingIsContinuedAndCancelled) {
  for (const NamedPass& pass : kPasses) {
    SCOPED_TRACE(pass.mName);
    for (const AppOptimizationStatus status :
         {OptimizationFailed, OptimizationNotNeeded, OptimizationDone, OptimizationStop}) {
      MakeThree();
      for (OptimizationState& state : mStates) state.mStatus = status;
      mStates[2].mStatus = OptimizationPending;
      static_cast<void>(pass.mPass(mStates));
      EXPECT_EQ(mCalls.size(), pass.mIsForPending ? 1U : 3U);
      EXPECT_EQ(mCalls.back(), std::string("c: ") + pass.mStep);
    }
  }
}

TEST_F(OptimizationFlowTest, OnlyWhatIsSelectedIsAccepted) {
  MakeThree();
  mStates[0].mSelected = false;
  mStates[2].mSelected = false;
  EXPECT_EQ(BeginAcceptOptimizations(mStates), OptimizationDone);
  EXPECT_THAT(mCalls, ElementsAre("b: accept"));
  mCalls.clear();
  mStates[1].mSelected = false;
  EXPECT_EQ(BeginAcceptOptimizations(mStates), OptimizationDone);
  EXPECT_THAT(mCalls, IsEmpty());
}

TEST_F(OptimizationFlowTest, WhatIsPendingIsContinuedAndCancelledWithoutBeingSelected) {
  for (const NamedPass& pass : kPasses) {
    if (!pass.mIsForPending) continue;
    SCOPED_TRACE(pass.mName);
    MakeThree();
    for (OptimizationState& state : mStates) state.mSelected = false;
    mStates[1].mStatus = OptimizationDone;
    EXPECT_EQ(pass.mPass(mStates), OptimizationDone);
    const std::string step = pass.mStep;
    EXPECT_THAT(mCalls, ElementsAre("a: " + step, "c: " + step));
  }
}

TEST_F(OptimizationFlowTest, DetermineSelectsWhatItRecommends) {
  for (const Pass pass : {Pass{BeginDetermineOptimizations}, Pass{ContinueDetermineOptimizations}}) {
    for (const AppOptimizationStatus status : {OptimizationNotNeeded, OptimizationDone, OptimizationPending,
                                               OptimizationStop, OptimizationFailed}) {
      SCOPED_TRACE(static_cast<int>(status));
      MakeThree();
      mStates.resize(1);
      mStates[0].mSelected = false;
      mOptimizations[0]->mAnswers["determine"] = {status};
      static_cast<void>(pass(mStates));
      EXPECT_EQ(mStates[0].mSelected, status == OptimizationDone);
      EXPECT_EQ(mStates[0].mCurrent, status == OptimizationDone ? "a current" : "");
      EXPECT_EQ(mStates[0].mOptimal, status == OptimizationDone ? "a optimal" : "");
    }
  }
}

TEST_F(OptimizationFlowTest, WhatTheUserSelectedStaysSelected) {
  MakeThree();
  mOptimizations[0]->mAnswers["determine"] = {OptimizationNotNeeded};
  static_cast<void>(BeginDetermineOptimizations(mStates));
  EXPECT_TRUE(mStates[0].mSelected);
}

TEST_F(OptimizationFlowTest, AnEmptyReferenceRaisesInEveryPassThatVisitsIt) {
  for (const NamedPass& pass : kPasses) {
    SCOPED_TRACE(pass.mName);
    MakeThree();
    mStates[1].mOptimization = nullptr;
    try {
      static_cast<void>(pass.mPass(mStates));
      ADD_FAILURE() << "nothing was thrown";
    } catch (const qelcore::config::NullPointerException& exception) {
      EXPECT_THAT(exception.what(), testing::HasSubstr("IAppOptimization"));
    }
    EXPECT_EQ(mCalls.size(), 1U);
    EXPECT_EQ(mStates[2].mStatus, OptimizationPending);
  }
}

TEST_F(OptimizationFlowTest, AnEmptyReferenceThatIsNotVisitedRaisesNothing) {
  for (const NamedPass& pass : kPasses) {
    const bool isForSelected = pass.mPass == &BeginAcceptOptimizations;
    if (!isForSelected && !pass.mIsForPending) continue;
    SCOPED_TRACE(pass.mName);
    MakeThree();
    mStates[1].mOptimization = nullptr;
    if (isForSelected) {
      mStates[1].mSelected = false;
    } else {
      mStates[1].mStatus = OptimizationFailed;
    }
    EXPECT_EQ(pass.mPass(mStates), OptimizationDone);
    EXPECT_EQ(mCalls.size(), 2U);
  }
}

TEST_F(OptimizationFlowTest, AStepFromItsBeginningToItsEnd) {
  MakeThree();
  mOptimizations[0]->mAnswers["determine"] = {OptimizationPending, OptimizationPending, OptimizationDone};
  mOptimizations[1]->mAnswers["determine"] = {OptimizationNotNeeded};
  mOptimizations[2]->mAnswers["determine"] = {OptimizationPending, OptimizationDone};
  EXPECT_EQ(BeginDetermineOptimizations(mStates), OptimizationPending);
  EXPECT_EQ(ContinueDetermineOptimizations(mStates), OptimizationPending);
  EXPECT_EQ(ContinueDetermineOptimizations(mStates), OptimizationDone);
  EXPECT_THAT(mCalls, ElementsAre("a: determine", "b: determine", "c: determine", "a: determine",
                                  "c: determine", "a: determine"));
}

TEST(AppOptimizationStatus, HasFixedNumbers) {
  EXPECT_EQ(static_cast<int>(OptimizationFailed), -1);
  EXPECT_EQ(static_cast<int>(OptimizationNotNeeded), 0);
  EXPECT_EQ(static_cast<int>(OptimizationDone), 1);
  EXPECT_EQ(static_cast<int>(OptimizationPending), 2);
  EXPECT_EQ(static_cast<int>(OptimizationStop), 3);
}

}  // namespace
