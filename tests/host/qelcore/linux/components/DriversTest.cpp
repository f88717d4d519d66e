#include "host/qelcore/linux/components/Drivers.h"

#include <gtest/gtest.h>

#include <ostream>

#include "tests/host/qelcore/components/RowName.h"
#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using testsupport::TemporaryDirectory;
using utility::OSComponentVersion;

class DriversTest : public ::testing::Test {
 protected:
  void Link(const std::string& path, const std::string& target) const {
    std::filesystem::create_directories((mDirectory.Path() / path).parent_path());
    std::filesystem::create_symlink(target, mDirectory.Path() / path);
  }

  [[nodiscard]] std::string Version() {
    return DriverVersion(mFiles, mDevice, OSComponentVersion(6, 1, 0, 18),
                         [this](const std::string& interface) {
                           mAsked += interface + ";";
                           return mAnswer;
                         })
        .ToString();
  }

  TemporaryDirectory mDirectory;
  RootedFiles mFiles{mDirectory.Path()};
  Device mDevice;
  std::string mAnswer = "5.19.6";
  std::string mAsked;
};

TEST_F(DriversTest, ReadsDriverAndModuleFromLinks) {
  Link("device/driver", "../bus/pci/drivers/sof-audio-pci");
  Link("bus/pci/drivers/sof-audio-pci/module", "../../../../module/snd_sof_pci");
  ReadDriver(mFiles, "device", mDevice);
  EXPECT_EQ(mDevice.mDriver, "sof-audio-pci");
  EXPECT_EQ(mDevice.mModule, "snd_sof_pci");
}

TEST_F(DriversTest, ABuiltInDriversModuleHasItsName) {
  Link("device/driver", "../bus/usb/drivers/snd-usb-audio");
  ReadDriver(mFiles, "device", mDevice);
  EXPECT_EQ(mDevice.mDriver, "snd-usb-audio");
  EXPECT_EQ(mDevice.mModule, "snd_usb_audio");
}

TEST_F(DriversTest, WithoutADriverThereIsNoVersion) {
  mDirectory.Write("device/driver", "a file, not a link");
  ReadDriver(mFiles, "device", mDevice);
  EXPECT_EQ(mDevice.mDriver, "");
  EXPECT_EQ(Version(), "");
}

TEST_F(DriversTest, TheModulesVersionIsFirst) {
  mDevice.mDriver = mDevice.mModule = "nvidia";
  mDevice.mNetworkInterface = "eth0";
  mDirectory.Write("sys/module/nvidia/taint", "POE\n");
  mDirectory.Write("sys/class/net/eth0/operstate", "up\n");
  mDirectory.Write("sys/module/nvidia/version", "535.113.01\n");
  EXPECT_EQ(Version(), "535.113.1.0");
  EXPECT_EQ(mAsked, "");
}

TEST_F(DriversTest, AModuleVersionWithoutNumbersIsNone) {
  mDevice.mDriver = mDevice.mModule = "odd";
  mDirectory.Write("sys/module/odd/version", "latest\n");
  EXPECT_EQ(Version(), "6.1.0.18");
}

struct AskRow {
  const char* mTaint;
  const char* mInterface;
  const char* mState;
  const char* mAnswer;
  const char* mVersion;
  const char* mAsked;
  friend void PrintTo(const AskRow& row, std::ostream* stream) {
    *stream << testsupport::RowName(std::string(row.mTaint) + row.mInterface + "/" + row.mState +
                                    row.mAnswer);
  }
};

class AskDriverTest : public DriversTest, public ::testing::WithParamInterface<AskRow> {};

TEST_P(AskDriverTest, OnlyForeignDriversWithALinkAreAsked) {
  const AskRow& row = GetParam();
  mDevice.mDriver = mDevice.mModule = "mlx5_core";
  mDevice.mNetworkInterface = row.mInterface;
  mDirectory.Write("sys/module/mlx5_core/taint", row.mTaint);
  mDirectory.Write("sys/class/net/eth0/operstate", row.mState);
  mAnswer = row.mAnswer;
  EXPECT_EQ(Version(), row.mVersion);
  EXPECT_EQ(mAsked, row.mAsked);
}

INSTANTIATE_TEST_SUITE_P(Table, AskDriverTest,
                         ::testing::Values(AskRow{"OE\n", "eth0", "up\n", "5.19.6", "5.19.6.0", "eth0;"},
                                           AskRow{"O\n", "eth0", "up\n", "N/A", "6.1.0.18", "eth0;"},
                                           AskRow{"O\n", "eth0", "up\n", "", "6.1.0.18", "eth0;"},
                                           AskRow{"O\n", "eth0", "down\n", "5.19.6", "6.1.0.18", ""},
                                           AskRow{"O\n", "eth1", "up\n", "5.19.6", "6.1.0.18", ""},
                                           AskRow{"O\n", "", "up\n", "5.19.6", "6.1.0.18", ""},
                                           AskRow{"\n", "eth0", "up\n", "5.19.6", "6.1.0.18", ""},
                                           AskRow{"E\n", "eth0", "up\n", "5.19.6", "6.1.0.18", ""}));

TEST_F(DriversTest, NoQueryIsNeeded) {
  mDevice.mDriver = mDevice.mModule = "foreign";
  mDevice.mNetworkInterface = "eth0";
  mDirectory.Write("sys/module/foreign/taint", "O\n");
  mDirectory.Write("sys/class/net/eth0/operstate", "up\n");
  EXPECT_EQ(DriverVersion(mFiles, mDevice, OSComponentVersion(6, 1, 0, 18), nullptr).ToString(), "6.1.0.18");
}

TEST(AskNetworkDriverTest, AnswersNothingForWhatIsNoInterface) {
  EXPECT_EQ(AskNetworkDriver(""), "");
  EXPECT_EQ(AskNetworkDriver("no-such-if"), "");
  EXPECT_EQ(AskNetworkDriver("a name that is longer than any interface's"), "");
}

TEST(AskNetworkDriverTest, AnswersInShortTextsForTheInterfacesOfThisMachine) {
  for (const std::string& interface : RootedFiles("/").List("sys/class/net")) {
    const std::string answer = AskNetworkDriver(interface);
    EXPECT_LE(answer.size(), 32u) << interface;
    EXPECT_EQ(answer.find('\0'), std::string::npos) << interface;
  }
}

}  // namespace
}  // namespace qelcore::host::components
