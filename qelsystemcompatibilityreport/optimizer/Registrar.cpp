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

/// One for each way in which an optimization can go. Those that end badly are not recommended, so that only
/// who selects them sees it.
bool RegisterDummies() {
  const auto& setting = kRegisterDummyAppOptimizations;
  // On unless somebody turns it off. That is intended.
  if (qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue) != "true") return true;
  using Settings = DummyOptimization::Settings;
  for (Settings settings :
       {Settings{.mName = "Demonstration: at once", .mCurrent = "3", .mOptimal = "7", .mDefault = "5"},
        Settings{.mName = "Demonstration: after a while",
        .mCurrent = "slow",
        .mOptimal = "fast",
        .mDefault = "normal",
        .mStepMilliseconds = 1000},
        Settings{.mName = "Demonstration: not applicable", .mDefault = "none", .mIsApplicable = false},
        Settings{.mName = "Demonstration: fails",
        .mDefault = "none",
        .mIsApplicable = false,
        .mAcceptResult = OptimizationFailed},
        Settings{.mName = "Demonstration: stops",
        .mDefault = "none",
        .mIsApplicable = false,
        .mAcceptResult = OptimizationStop}}) {
    RegisterAppOptimization(std::make_shared<DummyOptimization>(std::move(settings)));
  }
  return true;
}

const config::InitializerRegistrar gDummies("qelsystemcompatibilityreport::DummyOptimizations",
                                            RegisterDummies, {});

}  // namespace

}  // namespace qelsystemcompatibilityreport
