// What the optimizer does when the host starts.
#include <memory>

#include "platform/qelcore/Config.h"
#include "platform/qelcore/DebugDatabase.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"
#include "qelsystemcompatibilityreport/optimizer/DummyOptimization.h"

namespace qelsystemcompatibilityreport {

using enum AppOptimizationStatus;

namespace config = qelcore::config;

namespace {

/// The optimizer needs nothing but its place in the order: modules that depend on it can register from then
/// on.
const config::InitializerRegistrar gOptimizer(
    "qelsystemcompatibilityreport::AppOptimizationRegistrar", [] { return true; },
    {"qelsystemcompatibilityreport::SystemCompatilityReportRegistrar"});

/// One for each way in which an optimization can go, each with a time of its own, so that they come to their
/// ends one after the other. Those that end badly are not recommended, so that only who selects them sees it.
bool RegisterDummies() {
  const auto& setting = kRegisterDummyAppOptimizations;
  // On unless somebody turns it off. That is intended.
  if (qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue) != "true") return true;
  using Settings = DummyOptimization::Settings;
  const Settings settings[] = {
      {.mName = "Demonstration: at once",
       .mCurrent = "3",
       .mOptimal = "7",
       .mDefault = "5",
       .mStepMilliseconds = 100},
      {.mName = "Demonstration: after a while",
       .mCurrent = "slow",
       .mOptimal = "fast",
       .mDefault = "normal",
       .mStepMilliseconds = 1000},
      {.mName = "Demonstration: not applicable",
       .mDefault = "none",
       .mStepMilliseconds = 300,
       .mIsApplicable = false},
      {.mName = "Demonstration: fails",
       .mDefault = "none",
       .mStepMilliseconds = 500,
       .mAcceptResult = OptimizationFailed,
       .mIsApplicable = false},
      {.mName = "Demonstration: stops",
       .mDefault = "none",
       .mStepMilliseconds = 700,
       .mAcceptResult = OptimizationStop,
       .mIsApplicable = false},
  };
  for (const Settings& each : settings) RegisterAppOptimization(std::make_shared<DummyOptimization>(each));
  return true;
}

const config::InitializerRegistrar gDummies("qelsystemcompatibilityreport::DummyOptimizations",
                                            RegisterDummies, {});

}  // namespace

}  // namespace qelsystemcompatibilityreport
