// What a run takes from the kept properties, and what it keeps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/linux/components/ReadMachine.h"
#include "tests/host/qelcore/linux/components/MachineTree.h"
#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using testsupport::Lines;
using testsupport::MachineTree;
using testsupport::TemporaryDirectory;

constexpr std::int64_t kNow = 1'700'000'000;

class PropertyKeepingTest : public ::testing::Test {
 protected:
  PropertyKeepingTest() {
    utility::OSComponent::EnableSupportProperties(true);
    SetExceptionSink(
        [this](const std::exception_ptr&, std::string_view context) { mLogged.emplace_back(context); });
  }
  ~PropertyKeepingTest() override { SetExceptionSink({}); }

  [[nodiscard]] std::vector<std::string> Run(bool explicitRun, std::uint64_t freeGibibytes,
                                             std::int64_t now = kNow) const {
    return Run(mMachine, explicitRun, freeGibibytes, now);
  }

  [[nodiscard]] std::vector<std::string> Run(const MachineTree& machine, bool explicitRun,
                                             std::uint64_t freeGibibytes, std::int64_t now = kNow) const {
    Surroundings surroundings = machine.Surroundings();
    surroundings.mFreeBytes = freeGibibytes << 30;
    return Lines(
        ReadMachine(machine.Root(), surroundings,
                    PropertyKeeping{filesupport::Dir(mTemporary.Path().u16string()), explicitRun, now}));
  }

  [[nodiscard]] bool IsKept() const {
    return std::filesystem::exists(mTemporary.Path() / "SystemProperties.json");
  }

  MachineTree mMachine = MachineTree::Recorded("desktop-nvidia");
  TemporaryDirectory mTemporary;
  std::vector<std::string> mLogged;
};

TEST_F(PropertyKeepingTest, ALaunchTakesWhatWasKept) {
  const auto first = Run(false, 100);
  EXPECT_THAT(first, Contains("Property | disk.free_gb | 100"));
  EXPECT_EQ(Run(false, 50), first) << "order included, since the registry's hash depends on it";
  EXPECT_THAT(mLogged, IsEmpty());
}

TEST_F(PropertyKeepingTest, AnExplicitRunReadsAfreshAndKeeps) {
  static_cast<void>(Run(false, 100));
  EXPECT_THAT(Run(true, 50), Contains("Property | disk.free_gb | 50"));
  EXPECT_THAT(Run(false, 10), Contains("Property | disk.free_gb | 50"));
}

TEST_F(PropertyKeepingTest, FreshAndKeptPropertiesGiveTheSameRegistry) {
  const auto hash = [&](bool explicitRun) {
    Surroundings surroundings = mMachine.Surroundings();
    return utility::OSComponentRegistry(
               ReadMachine(
                   mMachine.Root(), surroundings,
                   PropertyKeeping{filesupport::Dir(mTemporary.Path().u16string()), explicitRun, kNow}))
        .Hash();
  };
  EXPECT_EQ(hash(true), hash(false));
}

TEST_F(PropertyKeepingTest, ADayLaterTheyAreReadAndKeptAnew) {
  static_cast<void>(Run(false, 100));
  EXPECT_THAT(Run(false, 50, kNow + 86'400), Contains("Property | disk.free_gb | 50"));
  EXPECT_THAT(Run(false, 10, kNow + 86'401), Contains("Property | disk.free_gb | 50"));
}

TEST_F(PropertyKeepingTest, AnotherKernelIsNoticed) {
  static_cast<void>(Run(false, 100));
  const auto lines = Run(MachineTree::Recorded("laptop-hybrid"), false, 50);
  EXPECT_THAT(lines, Contains("Property | disk.free_gb | 50"));
  EXPECT_THAT(lines, Contains("Property | os.distribution | Arch Linux"));
}

TEST_F(PropertyKeepingTest, WithoutSupportNothingIsReadOrKept) {
  utility::OSComponent::EnableSupportProperties(false);
  EXPECT_THAT(Run(true, 100), Not(Contains(StartsWith("Property"))));
  EXPECT_FALSE(IsKept());
  mTemporary.Write("SystemProperties.json", "broken");
  EXPECT_THAT(Run(false, 100), Not(Contains(StartsWith("Property"))));
  EXPECT_THAT(mLogged, IsEmpty());
}

TEST_F(PropertyKeepingTest, ABrokenFileIsLoggedAndReplaced) {
  mTemporary.Write("SystemProperties.json", "{\"saved_at\":");
  EXPECT_THAT(Run(false, 100), Contains("Property | disk.free_gb | 100"));
  EXPECT_THAT(mLogged, ElementsAre("qelcore::host::ReadThisMachine"));
  EXPECT_THAT(Run(false, 50), Contains("Property | disk.free_gb | 100"));
  EXPECT_EQ(mLogged.size(), 1u);
}

TEST_F(PropertyKeepingTest, AFailureToKeepIsLoggedAndNothingElse) {
  std::filesystem::create_directories(mTemporary.Path() / "SystemProperties.json" / "in the way");
  EXPECT_THAT(Run(true, 100), Contains("Property | disk.free_gb | 100"));
  EXPECT_THAT(mLogged, ElementsAre("qelcore::host::ReadThisMachine"));
}

TEST_F(PropertyKeepingTest, AFullDiskLeavesWhatWasKept) {
  static_cast<void>(Run(true, 100));
  SetFileOperationHook([](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kWrite || operation == FileOperation::kFlush)
      throw std::runtime_error("disk full");
  });
  EXPECT_THAT(Run(true, 50), Contains("Property | disk.free_gb | 50"));
  SetFileOperationHook({});
  EXPECT_THAT(mLogged, ElementsAre("qelcore::host::ReadThisMachine"));
  EXPECT_THAT(Run(false, 10), Contains("Property | disk.free_gb | 100"));
}

}  // namespace
}  // namespace qelcore::host::components
