#include "qelsystemcompatibilityreport/optimizer/DummyOptimization.h"

#include <utility>

namespace qelsystemcompatibilityreport {

using enum AppOptimizationStatus;

DummyOptimization::DummyOptimization(Settings settings) : mSettings(std::move(settings)) {}

std::string DummyOptimization::GetName() {
  return mSettings.mName;
}

AppOptimizationStatus DummyOptimization::Determine(std::string& current, std::string& optimal) {
  if (IsStepPending()) return OptimizationPending;
  if (!mSettings.mIsApplicable) return OptimizationNotNeeded;
  current = mSettings.mCurrent;
  optimal = mSettings.mOptimal;
  return OptimizationDone;
}

AppOptimizationStatus DummyOptimization::Cancel() {
  return IsStepPending() ? OptimizationPending : OptimizationDone;
}

AppOptimizationStatus DummyOptimization::Accept() {
  if (IsStepPending()) return OptimizationPending;
  if (mSettings.mAcceptResult == OptimizationDone) mSettings.mCurrent = mSettings.mOptimal;
  return mSettings.mAcceptResult;
}

AppOptimizationStatus DummyOptimization::Default() {
  if (IsStepPending()) return OptimizationPending;
  mSettings.mCurrent = mSettings.mDefault;
  return OptimizationDone;
}

std::string DummyOptimization::GetFailureText() {
  return "Why did it fail? No idea.";
}

bool DummyOptimization::IsStepPending() {
  if (!mStep) mStep.emplace();
  if (mStep->GetElapsedMilliseconds() < mSettings.mStepMilliseconds) return true;
  mStep.reset();
  return false;
}

}  // namespace qelsystemcompatibilityreport
