#include "host/qelcore/linux/components/PciDevices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testsupport::TemporaryDirectory;
using utility::OSComponentType;

TEST(PciAddressTest, OrdersByTheNumbersOfTheAddress) {
  std::vector<std::string> addresses{"10000:00:00.0", "ffff:00:00.0", "0000:e1:00.0", "0000:41:00.1",
                                     "0000:41:00.0",  "0000:1f:03.0", "0000:02:00.0", "0000:02:1f.6"};
  std::sort(addresses.begin(), addresses.end(), PciAddressLess);
  EXPECT_THAT(addresses, ElementsAre("0000:02:00.0", "0000:02:1f.6", "0000:1f:03.0", "0000:41:00.0",
                                     "0000:41:00.1", "0000:e1:00.0", "ffff:00:00.0", "10000:00:00.0"));
}

TEST(PciAddressTest, TextsThatAreNoAddressesHaveAnOrderToo) {
  const std::vector<std::string> texts{"", "0000:00:00.0", "x", "y", "0000:00:00", "::.", "0000:00:00.0.0"};
  for (const std::string& left : texts) {
    EXPECT_FALSE(PciAddressLess(left, left)) << left;
    for (const std::string& right : texts) {
      EXPECT_TRUE(left == right || PciAddressLess(left, right) != PciAddressLess(right, left))
          << left << " " << right;
    }
  }
}

struct ClassRow {
  const char* mClass;
  OSComponentType mType;  ///< `kInvalid` when the device is left out

  friend void PrintTo(const ClassRow& row, std::ostream* stream) { *stream << row.mClass; }
};

class PciClassTest : public ::testing::TestWithParam<ClassRow> {};

TEST_P(PciClassTest, GivesTheKind) {
  const TemporaryDirectory directory;
  const std::string start = "sys/bus/pci/devices/0000:00:02.0/";
  directory.Write(start + "class", GetParam().mClass);
  directory.Write(start + "vendor", "0x8086\n");
  directory.Write(start + "device", "0x1616\n");
  const std::vector<Device> devices = ListPciDevices(RootedFiles(directory.Path()));
  if (GetParam().mType == OSComponentType::kInvalid) {
    EXPECT_THAT(devices, IsEmpty());
    return;
  }
  ASSERT_EQ(devices.size(), 1u);
  EXPECT_EQ(devices[0].mType, GetParam().mType);
  EXPECT_EQ(devices[0].mBus, Bus::kPci);
  EXPECT_EQ(devices[0].mId, (DeviceId{0x8086, 0x1616}));
}

INSTANTIATE_TEST_SUITE_P(
    Table, PciClassTest,
    ::testing::Values(
        ClassRow{"0x030000", OSComponentType::kVideo}, ClassRow{"0x030200", OSComponentType::kVideo},
        ClassRow{"0x038000", OSComponentType::kVideo}, ClassRow{"0x040100", OSComponentType::kAudio},
        ClassRow{"0x040300", OSComponentType::kAudio}, ClassRow{"0x040380", OSComponentType::kAudio},
        ClassRow{"0x040000", OSComponentType::kInvalid}, ClassRow{"0x048000", OSComponentType::kInvalid},
        ClassRow{"0x020000", OSComponentType::kNetwork}, ClassRow{"0x028000", OSComponentType::kNetwork},
        ClassRow{"0x0c0330", OSComponentType::kInvalid}, ClassRow{"0x010300", OSComponentType::kInvalid},
        ClassRow{"0x1030000", OSComponentType::kInvalid}, ClassRow{"0x3", OSComponentType::kInvalid}));

}  // namespace
}  // namespace qelcore::host::components
