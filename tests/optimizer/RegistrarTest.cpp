// The optimizer's place in the order of start-up. This program has no report service, whose initializer the
// optimizer's depends on by name.
#include <gmock/gmock.h>

#include <string>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Config.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::config::InitializerRegistrar;

class OptimizerRegistrarTest : public testing::Test {
 protected:
  /// Starts the process. Returns whether a module that depends on the optimizer was initialised.
  bool Start() {
    bool hasRun = false;
    const InitializerRegistrar dependent("a module with optimizations", [&] { return hasRun = true; },
                                         {"qelsystemcompatibilityreport::AppOptimizationRegistrar"});
    mHaveAllRun = qelcore::host::BeginProcess();
    return hasRun;
  }

  testsupport::TestHost mHost;
  bool mHaveAllRun = false;
};

TEST_F(OptimizerRegistrarTest, WaitsForTheReportService) {
  EXPECT_FALSE(Start());
  EXPECT_FALSE(mHaveAllRun);
  EXPECT_THAT(mHost.mTrace,
              testing::Contains(testing::Field(
                  &testsupport::TestHost::TraceMessage::mText,
                  "The initializer \"qelsystemcompatibilityreport::AppOptimizationRegistrar\" did not run, "
                  "because \"qelsystemcompatibilityreport::SystemCompatilityReportRegistrar\", which it "
                  "depends on, is not known.")));
}

TEST_F(OptimizerRegistrarTest, DoesNotRunWhenTheReportServiceFailed) {
  const InitializerRegistrar report("qelsystemcompatibilityreport::SystemCompatilityReportRegistrar",
                                    [] { return false; }, {});
  EXPECT_FALSE(Start());
  EXPECT_FALSE(mHaveAllRun);
}

TEST_F(OptimizerRegistrarTest, RunsAfterTheReportService) {
  const InitializerRegistrar report("qelsystemcompatibilityreport::SystemCompatilityReportRegistrar",
                                    [] { return true; }, {});
  EXPECT_TRUE(Start());
  EXPECT_TRUE(mHaveAllRun);
}

}  // namespace
