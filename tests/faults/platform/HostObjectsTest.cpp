// Every call of an object that the host hands over throws in turn: its windows and their controls, its usage
// statistics, its answers. Nothing gets out, the log says where it was, and the same call works afterwards.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/UsageStatistics.h"
#include "tests/faults/platform/PlatformFaults.h"
#include "tests/faults/platform/Scenarios.h"
#include "tests/support/HostCalls.h"

namespace {

using qelcore::config::UsageLogger;
using qelcore::config::UsageLoggerGroup;
using testsupport::OnHostCall;
using testsupport::Scenario;
using testsupport::World;

constexpr const char* kHostFault = "the host cannot do it";

class Group final : public UsageLoggerGroup {
 public:
  void AddText(std::string_view, std::string_view) override { OnHostCall("UsageLoggerGroup::AddText"); }
  void Add(std::string_view, bool) override { OnHostCall("UsageLoggerGroup::Add"); }
};

class Logger final : public UsageLogger {
 public:
  std::shared_ptr<UsageLoggerGroup> CreateGroup(std::string_view, std::string_view) override {
    OnHostCall("UsageLogger::CreateGroup");
    return std::make_shared<Group>();
  }
  void LogEvent(std::string_view, std::string_view, std::string_view, std::string_view) override {
    OnHostCall("UsageLogger::LogEvent");
  }
};

std::shared_ptr<UsageLogger> GetLogger() {
  return std::make_shared<Logger>();
}

class HostObjects : public testing::TestWithParam<Scenario> {
 protected:
  HostObjects() {
    testsupport::PreparePlatform();
    testsupport::ReplacePlatformCall("UsageLogger::Get(", reinterpret_cast<void*>(&GetLogger));
  }
  ~HostObjects() override { testsupport::SetHostCallHook({}); }

  std::string Outcome() {
    World world;
    GetParam().mPrepare(world);
    GetParam().mCall(world);
    return GetParam().mOutcome(world);
  }

  /// The functions that are called, in their order.
  std::vector<std::string> CallsDuringIt() {
    World world;
    GetParam().mPrepare(world);
    std::vector<std::string> calls;
    testsupport::SetHostCallHook([&](std::string_view function) { calls.emplace_back(function); });
    GetParam().mCall(world);
    testsupport::SetHostCallHook({});
    return calls;
  }

  /// Makes the call of that number throw, from 0.
  void Break(std::size_t number) {
    World world;
    GetParam().mPrepare(world);
    world.mHost.mExceptionContexts.clear();
    world.mHost.mExceptionTexts.clear();
    bool hasThrown = false;
    testsupport::SetHostCallHook([&](std::string_view) {
      if (number-- != 0) return;
      hasThrown = true;
      throw std::runtime_error(kHostFault);
    });
    EXPECT_NO_THROW(GetParam().mCall(world));
    testsupport::SetHostCallHook({});
    EXPECT_TRUE(hasThrown);
    ASSERT_EQ(world.mHost.mExceptionTexts, std::vector<std::string>{kHostFault});
    EXPECT_THAT(testsupport::LoggedNames(GetParam()), testing::Contains(world.mHost.mExceptionContexts[0]));
    // No dialog is left that nobody sees, and what was left behind hinders nobody.
    EXPECT_EQ(world.mToolkit.mDialogsAlive, 0);
    EXPECT_NO_THROW(GetParam().mCall(world));
  }
};

TEST_P(HostObjects, NothingGetsOut) {
  const std::string outcome = Outcome();
  const std::vector<std::string> calls = CallsDuringIt();
  RecordProperty("Calls", std::to_string(calls.size()));
  for (std::size_t number = 0; number < calls.size(); ++number) {
    SCOPED_TRACE(calls[number] + ", call " + std::to_string(number));
    Break(number);
    EXPECT_EQ(Outcome(), outcome);
  }
}

INSTANTIATE_TEST_SUITE_P(During, HostObjects, testing::ValuesIn(testsupport::Scenarios()),
                         [](const auto& scenario) { return scenario.param.mName; });

TEST(HostObjectsTest, EveryKindIsCalled) {
  testsupport::PreparePlatform();
  testsupport::ReplacePlatformCall("UsageLogger::Get(", reinterpret_cast<void*>(&GetLogger));
  std::string all;
  for (const Scenario& scenario : testsupport::Scenarios()) {
    World world;
    scenario.mPrepare(world);
    testsupport::SetHostCallHook([&](std::string_view function) { all += std::string(function) + "\n"; });
    scenario.mCall(world);
    testsupport::SetHostCallHook({});
  }
  for (const char* const function :
       {"NodeManager::GetDefaultDrawSupplier", "NodeManager::ShowErrorMessage",
        "NodeManager::RunSaveAsDialog", "DrawSupplier::MakeDialogWindow", "DrawSupplier::MeasureButton",
        "DialogWindow::RunModal", "DialogWindow::InstallTimer", "DialogWindow::RemoveTimer",
        "DialogWindow::SetContentSize", "View::AddText", "ScrollView::MeasureContent", "Tree::SetRows",
        "Button::SetAction", "Response::GetPayloadAsUTF8String", "UsageLoggerGroup::AddText",
        "UsageLogger::LogEvent"}) {
    EXPECT_NE(all.find(std::string(function) + "\n"), std::string::npos) << function;
  }
}

}  // namespace
