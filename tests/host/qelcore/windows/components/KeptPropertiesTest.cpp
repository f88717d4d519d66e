// What a run on a Windows machine takes from the kept properties.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/host/qelcore/components/ComponentLines.h"
#include "tests/host/qelcore/windows/components/RecordedMachine.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::host::components::PropertyKeeping;
using testing::Contains;
using testing::HasSubstr;

constexpr std::int64_t kNow = 1'700'000'000;

class KeptProperties : public testing::Test {
 protected:
  KeptProperties() { qelcore::utility::OSComponent::EnableSupportProperties(true); }

  std::vector<std::string> Run(bool explicitRun, std::uint64_t freeGibibytes) {
    mMachine.mFacts.mFreeBytes = freeGibibytes << 30;
    const qelcore::filesupport::Dir directory(mTemporary.Path().u16string());
    return testsupport::Lines(mMachine.Read(PropertyKeeping{directory, explicitRun, kNow}));
  }

  testsupport::RecordedMachine mMachine{"laptop-french"};
  testsupport::TemporaryDirectory mTemporary;
};

TEST_F(KeptProperties, ALaunchTakesThem) {
  const auto first = Run(false, 100);
  EXPECT_THAT(first, Contains("Property | disk.free_gb | 100"));
  EXPECT_EQ(Run(false, 50), first);
  EXPECT_THAT(mTemporary.Read("SystemProperties.json"), HasSubstr(R"("kernel_release":"10.0.26200.0")"));
}

TEST_F(KeptProperties, AnExplicitRunReadsAfresh) {
  static_cast<void>(Run(false, 100));
  EXPECT_THAT(Run(true, 50), Contains("Property | disk.free_gb | 50"));
}

TEST_F(KeptProperties, AnUpdateOfTheSystemIsNoticed) {
  static_cast<void>(Run(false, 100));
  mMachine.mFacts.mVersion.mVersionZ = 1;
  EXPECT_THAT(Run(false, 50), Contains("Property | disk.free_gb | 50"));
}

TEST_F(KeptProperties, AnotherEditionIsNoticed) {
  static_cast<void>(Run(false, 100));
  mMachine.mFacts.mProductName = "Windows 10 Enterprise";
  EXPECT_THAT(Run(false, 50), Contains("Property | disk.free_gb | 50"));
}

}  // namespace
