// The registry of optimizations, and what an optimization is to the host.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "tests/optimizer/ScriptedOptimization.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::ScriptedOptimization;

class OptimizationRegistryTest : public testing::Test {
 protected:
  std::shared_ptr<ScriptedOptimization> Make(const char* name) {
    return std::make_shared<ScriptedOptimization>(name, mCalls);
  }

  std::vector<std::string> mCalls;
};

TEST_F(OptimizationRegistryTest, NothingIsRegisteredAtFirst) {
  std::vector<OptimizationState> states(3);
  InitOptimizationStates(states);
  EXPECT_THAT(states, IsEmpty());
}

TEST_F(OptimizationRegistryTest, StatesAreFreshAndInTheOrderOfRegistration) {
  const auto first = Make("same");
  const auto second = Make("same");
  EXPECT_TRUE(RegisterAppOptimization(first));
  EXPECT_TRUE(RegisterAppOptimization(second));
  std::vector<OptimizationState> states(5);
  InitOptimizationStates(states);
  ASSERT_THAT(states, SizeIs(2));
  EXPECT_EQ(states[0].mOptimization, first);
  EXPECT_EQ(states[1].mOptimization, second);
  for (const OptimizationState& state : states) {
    EXPECT_EQ(static_cast<int>(state.mStatus), -1);
    EXPECT_EQ(state.mCurrent, "");
    EXPECT_EQ(state.mOptimal, "");
    EXPECT_FALSE(state.mSelected);
  }
  EXPECT_THAT(mCalls, IsEmpty());
}

TEST_F(OptimizationRegistryTest, AnObjectIsRegisteredOnce) {
  const auto optimization = Make("a");
  EXPECT_TRUE(RegisterAppOptimization(optimization));
  EXPECT_FALSE(RegisterAppOptimization(optimization));
  EXPECT_FALSE(RegisterAppOptimization(optimization->GetSelf()));
  std::vector<OptimizationState> states;
  InitOptimizationStates(states);
  EXPECT_THAT(states, SizeIs(1));
}

TEST_F(OptimizationRegistryTest, AnEmptyReferenceIsNotRegistered) {
  EXPECT_FALSE(RegisterAppOptimization(nullptr));
  std::vector<OptimizationState> states;
  InitOptimizationStates(states);
  EXPECT_THAT(states, IsEmpty());
}

TEST_F(OptimizationRegistryTest, TheRegistryIsClearedAtTheProcessesEnd) {
  auto optimization = Make("a");
  const std::weak_ptr<ScriptedOptimization> observer = optimization;
  EXPECT_TRUE(RegisterAppOptimization(std::move(optimization)));
  EXPECT_FALSE(observer.expired());
  qelcore::host::EndProcess();
  EXPECT_TRUE(observer.expired());
}

TEST_F(OptimizationRegistryTest, OnlyTheFirstRegistrationArrangesTheClearing) {
  auto first = Make("a");
  auto second = Make("b");
  const std::weak_ptr<ScriptedOptimization> firstObserver = first;
  const std::weak_ptr<ScriptedOptimization> secondObserver = second;
  EXPECT_TRUE(RegisterAppOptimization(std::move(first)));
  // Actions run in the reverse order of their registration, so this one comes between those of the two.
  bool areThere = false;
  qelcore::config::AddTerminationForSingleton(
      [&] { areThere = !firstObserver.expired() && !secondObserver.expired(); }, "a module");
  EXPECT_TRUE(RegisterAppOptimization(std::move(second)));
  qelcore::host::EndProcess();
  EXPECT_TRUE(areThere);
  EXPECT_TRUE(firstObserver.expired());
  EXPECT_TRUE(secondObserver.expired());
}

TEST_F(OptimizationRegistryTest, AnOptimizationAnswersToItsInterfaces) {
  const auto optimization = Make("a");
  EXPECT_EQ(optimization->QueryInterface(IAppOptimization::InterfaceId()),
            static_cast<IAppOptimization*>(optimization.get()));
  EXPECT_EQ(optimization->QueryInterface(qelcore::classref::UnknownBase::InterfaceId()),
            static_cast<qelcore::classref::UnknownBase*>(optimization.get()));
  EXPECT_EQ(optimization->QueryInterface(qelcore::Guid()), nullptr);
  EXPECT_EQ(IAppOptimization::InterfaceId().AsUTF8String(), "9b1e0c52-6d3a-4f08-a571-3ec42097d816");
  EXPECT_EQ(optimization->GetSelf(), optimization);
}

TEST(AppOptimizer, IsOfferedOnlyWhenTheHostSaysSo) {
  EXPECT_FALSE(AppOptimizerEnabled());
  EnableAppOptimizer(true);
  EXPECT_TRUE(AppOptimizerEnabled());
  EnableAppOptimizer(false);
  EXPECT_FALSE(AppOptimizerEnabled());
}

TEST(AppOptimizer, TheInitializerComesAfterTheReports) {
  bool hasRun = false;
  const qelcore::config::InitializerRegistrar dependent(
      "a module with optimizations", [&] { return hasRun = true; },
      {"qelsystemcompatibilityreport::AppOptimizationRegistrar",
       "qelsystemcompatibilityreport::DummyOptimizations"});
  EXPECT_TRUE(qelcore::host::BeginProcess());
  EXPECT_TRUE(hasRun);
}

}  // namespace
