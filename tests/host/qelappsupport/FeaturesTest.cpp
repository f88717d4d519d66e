#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelappsupport.h"
#include "platform/qelcore/DebugDatabase.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelappsupport::IsFeatureEnabled;
using qelcore::host::SetDebugEntryForThisRun;

class Features : public testing::Test {
 protected:
  void SetUp() override { qelcore::host::SetDirectories({.mPreferences = mDirectory.Path().string()}); }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(Features, OnlyPropertiesAreOnByDefault) {
  EXPECT_TRUE(IsFeatureEnabled("qelsystemcompatibilityreport.properties"));
  for (const char* const name :
       {"", "properties", "qelsystemcompatibilityreport", "qelsystemcompatibilityreport.Properties",
        "qelsystemcompatibilityreport.properties ", "another.feature"}) {
    EXPECT_FALSE(IsFeatureEnabled(name)) << name;
  }
  EXPECT_EQ(qelcore::DebugDatabase::Instance().GetNonDefaultDebugKeys(), std::vector<std::string>());
}

TEST_F(Features, ADebugSettingSwitchesThem) {
  SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "false");
  SetDebugEntryForThisRun("another.feature", "true");
  SetDebugEntryForThisRun("a.third", "yes");
  EXPECT_FALSE(IsFeatureEnabled("qelsystemcompatibilityreport.properties"));
  EXPECT_TRUE(IsFeatureEnabled("another.feature"));
  EXPECT_FALSE(IsFeatureEnabled("a.third"));
}

TEST_F(Features, ASavedDebugSettingSwitchesThemToo) {
  mDirectory.Write("DebugDatabase.json", R"({"another.feature":"true"})");
  EXPECT_TRUE(IsFeatureEnabled("another.feature"));
}

}  // namespace
