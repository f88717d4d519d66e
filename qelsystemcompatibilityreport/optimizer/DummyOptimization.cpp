#include "qelsystemcompatibilityreport/optimizer/DummyOptimization.h"

#include <utility>

namespace qelsystemcompatibilityreport {

using enum AppOptimizationStatus;

DummyOptimization::DummyOptimization(Settings settings) : mSettings(std::move(settings)) {}

std::string DummyOptimization::GetName() {
  return mSettings.mName;
}

AppOptimizationStatus DummyOptimization::Determine(std::string& current, std::string& optimal) {
  if (GoOn(Step::kDetermine)) return OptimizationPending;
  if (!mSettings.mIsApplicable) return OptimizationNotNeeded;
  current = mSettings.mCurrent;
  optimal = mSettings.mOptimal;
  return OptimizationDone;
}

AppOptimizationStatus DummyOptimization::Cancel() {
  return mUnderWay && GoOn(mUnderWay->mStep) ? OptimizationPending : OptimizationDone;
}

AppOptimizationStatus DummyOptimization::Accept() {
  if (GoOn(Step::kAccept)) return OptimizationPending;
  if (mSettings.mAcceptResult == OptimizationDone) mSettings.mCurrent = mSettings.mOptimal;
  return mSettings.mAcceptResult;
}

AppOptimizationStatus DummyOptimization::Default() {
  if (GoOn(Step::kDefault)) return OptimizationPending;
  mSettings.mCurrent = mSettings.mDefault;
  return OptimizationDone;
}

std::string DummyOptimization::GetFailureText() {
  return "Why did it fail? No idea.";
}

bool DummyOptimization::GoOn(Step step) {
  // A dialog that is closed abandons what is pending, and another step may follow.
  if (!mUnderWay || mUnderWay->mStep != step) mUnderWay = UnderWay{.mStep = step, .mTimer = {}};
  if (mUnderWay->mTimer.GetElapsedMilliseconds() < mSettings.mStepMilliseconds) return true;
  mUnderWay.reset();
  return false;
}

}  // namespace qelsystemcompatibilityreport
