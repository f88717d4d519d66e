// Every call of the platform throws in turn, during every function that the library exports and every
// callback that it leaves with the platform: nothing gets out, the log says where it was, and the same call
// works afterwards.
#include "tests/faults/platform/PlatformFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <set>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/AppState.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/faults/platform/Scenarios.h"

namespace {

using testsupport::Log;
using testsupport::PlatformCall;
using testsupport::Scenario;
using testsupport::World;

/// Says what was going on when the process ends of it.
const PlatformCall* gFault = nullptr;
[[noreturn]] void EndWithAWord() {
  std::fprintf(stderr, "The process ended when the platform threw in %s\n",
               gFault == nullptr ? "nothing" : gFault->mFunction.c_str());
  std::abort();
}

class PlatformFaults : public testing::TestWithParam<Scenario> {
 protected:
  PlatformFaults() {
    std::set_terminate(EndWithAWord);
    testsupport::PreparePlatform();
  }

  std::string Outcome() {
    World world;
    GetParam().mPrepare(world);
    GetParam().mCall(world);
    return GetParam().mOutcome(world);
  }

  std::vector<PlatformCall> CallsDuringIt() {
    World world;
    GetParam().mPrepare(world);
    testsupport::RecordPlatformCalls();
    GetParam().mCall(world);
    return testsupport::RecordedPlatformCalls();
  }

  void Break(const PlatformCall& call, std::uint64_t time, Log log = Log::kWorks) {
    World world;
    GetParam().mPrepare(world);
    world.mHost.mExceptionContexts.clear();
    world.mHost.mExceptionTexts.clear();
    testsupport::ThrowAt(call, time, log);
    EXPECT_NO_THROW(GetParam().mCall(world));
    EXPECT_TRUE(testsupport::StopThrowing());
    if (log == Log::kWorks) ExpectLogged(world);
    // What it left behind hinders nobody.
    EXPECT_NO_THROW(GetParam().mCall(world));
  }

  /// The fault was logged once, by a function that the scenario names.
  static void ExpectLogged(const World& world) {
    std::vector<std::string> contexts;
    for (std::size_t index = 0; index < world.mHost.mExceptionTexts.size(); ++index) {
      if (world.mHost.mExceptionTexts[index].starts_with(testsupport::kPlatformFault))
        contexts.push_back(world.mHost.mExceptionContexts[index]);
    }
    if (world.mHandedOn.starts_with(testsupport::kPlatformFault)) {
      EXPECT_EQ(contexts, std::vector<std::string>());
      return;
    }
    ASSERT_EQ(contexts.size(), 1U);
    EXPECT_THAT(testsupport::LoggedNames(GetParam()), testing::Contains(contexts[0]));
  }
};

TEST_P(PlatformFaults, NothingGetsOut) {
  const std::string outcome = Outcome();
  const std::vector<PlatformCall> calls = CallsDuringIt();
  RecordProperty("Places", std::to_string(calls.size()));
  for (const PlatformCall& call : calls) {
    gFault = &call;
    // The first time and the last one: later ones meet what the first have made.
    for (const std::uint64_t time : std::set<std::uint64_t>{1, call.mTimes}) {
      SCOPED_TRACE(call.mFunction + ", time " + std::to_string(time) + " of " + std::to_string(call.mTimes));
      Break(call, time);
      EXPECT_EQ(Outcome(), outcome);
    }
  }
}

TEST_P(PlatformFaults, NothingGetsOutWhenNothingCanBeLogged) {
  // What is done once in a process is done.
  static_cast<void>(Outcome());
  for (const PlatformCall& call : CallsDuringIt()) {
    gFault = &call;
    SCOPED_TRACE(call.mFunction);
    Break(call, 1, Log::kThrowsToo);
  }
}

// ---- The start and the end of the process, which it has once

/// Starts and ends a process in which the platform throws at that call, and returns 1 when it did, 0 when
/// there were fewer calls.
int LiveWithFault(std::uint64_t call) {
  World world;
  testsupport::ThrowAt(testsupport::kAnyCall, call, Log::kWorks);
  qelcore::host::BeginProcess();
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
  qelsystemcompatibilityreport::RunReportForStartup(u"Example", nullptr);
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kShuttingDown);
  qelcore::host::EndProcess();
  return testsupport::StopThrowing() ? 1 : 0;
}

TEST(PlatformFaultsOfALife, TheProcessGoesOn) {
  std::uint64_t call = 0;
  int status = 0;
  do {
    ++call;
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) std::_Exit(LiveWithFault(call));
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFEXITED(status)) << "call " << call;
  } while (WEXITSTATUS(status) == 1);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_GT(call, 100U);
}

INSTANTIATE_TEST_SUITE_P(During, PlatformFaults, testing::ValuesIn(testsupport::Scenarios()),
                         [](const auto& scenario) { return scenario.param.mName; });

}  // namespace
