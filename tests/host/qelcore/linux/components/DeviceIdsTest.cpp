#include "host/qelcore/linux/components/DeviceIds.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using testsupport::TemporaryDirectory;

constexpr std::string_view kList =
    "# A comment\n"
    "\n"
    "0001  First Vendor\n"
    "\t0001  First Device\n"
    "8086  Intel Corporation\n"
    "# A comment inside\n"
    "\t095a  Wireless 7265\n"
    "\t\t8086 1616  Dual Band Wireless-AC 7265\n"
    "\n"
    "\t1616  HD Graphics 5500\n"
    "\t2222  \n"
    "8087  Another Intel\n"
    "\t0a2a  Only Here\n"
    "ffff  Illegal Vendor ID\n"
    "C 03  Display controller\n"
    "\t00  VGA compatible controller\n"
    "\t1234  Not a device\n";

class DeviceIdsTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string PciName(std::uint32_t vendor, std::uint32_t device) const {
    DeviceIds ids = DeviceIds::ForPci(mFiles);
    return ids.Name({vendor, device});
  }

  TemporaryDirectory mDirectory;
  RootedFiles mFiles{mDirectory.Path()};
};

TEST_F(DeviceIdsTest, NamesKnownDevices) {
  mDirectory.Write("usr/share/misc/pci.ids", kList);
  EXPECT_EQ(PciName(0x8086, 0x1616), "Intel Corporation HD Graphics 5500");
  EXPECT_EQ(PciName(0x8086, 0x095a), "Intel Corporation Wireless 7265");
  EXPECT_EQ(PciName(0x0001, 0x0001), "First Vendor First Device");
}

TEST_F(DeviceIdsTest, NamesUnknownDevices) {
  mDirectory.Write("usr/share/misc/pci.ids", kList);
  EXPECT_EQ(PciName(0x8086, 0x0a2a), "Intel Corporation Device 0a2a") << "a device of the next vendor";
  EXPECT_EQ(PciName(0x8086, 0x2222), "Intel Corporation Device 2222") << "a device with an empty name";
  EXPECT_EQ(PciName(0xffff, 0x1234), "Illegal Vendor ID Device 1234") << "an entry of a class";
  EXPECT_EQ(PciName(0x1234, 0x1111), "PCI device 1234:1111");
}

TEST_F(DeviceIdsTest, SubsystemsAreNoDevices) {
  mDirectory.Write("usr/share/misc/pci.ids",
                   "8086  Intel Corporation\n\t0001  One\n\t\t0002  Two\n\t\t8086 0003  Three\n");
  EXPECT_EQ(PciName(0x8086, 0x0002), "Intel Corporation Device 0002");
  EXPECT_EQ(PciName(0x8086, 0x8086), "Intel Corporation Device 8086");
}

TEST_F(DeviceIdsTest, UsbHasItsOwnList) {
  mDirectory.Write("usr/share/misc/usb.ids", "046d  Logitech, Inc.\n\t0825  Webcam C270\n");
  DeviceIds ids = DeviceIds::ForUsb(mFiles);
  EXPECT_EQ(ids.Name({0x046d, 0x0825}), "Logitech, Inc. Webcam C270");
  EXPECT_EQ(ids.Name({0x046d, 0x0a44}), "Logitech, Inc. Device 0a44");
  EXPECT_EQ(ids.Name({0x1235, 0x8210}), "USB device 1235:8210");
}

TEST_F(DeviceIdsTest, TakesTheFirstListThatHasContent) {
  mDirectory.Write("usr/share/hwdata/pci.ids", "");
  mDirectory.Write("usr/share/misc/pci.ids", "8086  From misc\n");
  mDirectory.Write("usr/share/pci.ids", "8086  From share\n");
  EXPECT_EQ(PciName(0x8086, 1), "From misc Device 0001");
  mDirectory.Write("usr/share/hwdata/pci.ids", "8086  From hwdata\n");
  EXPECT_EQ(PciName(0x8086, 1), "From hwdata Device 0001");
}

TEST_F(DeviceIdsTest, WithoutAListThereAreNumbers) {
  EXPECT_EQ(PciName(0x8086, 0x4c8a), "PCI device 8086:4c8a");
}

TEST_F(DeviceIdsTest, ToleratesCarriageReturnsCutsAndJunk) {
  mDirectory.Write("usr/share/misc/pci.ids", "8086  Intel\r\n\t0001  One\r\n\r\n\t0002  Two\xff\x01");
  EXPECT_EQ(PciName(0x8086, 1), "Intel One");
  EXPECT_EQ(PciName(0x8086, 2), "Intel Two\xef\xbf\xbd");
  mDirectory.Write("usr/share/misc/pci.ids", "8086  ");
  EXPECT_EQ(PciName(0x8086, 1), "PCI device 8086:0001");
  mDirectory.Write("usr/share/misc/pci.ids", std::string("8086  Intel\n\0\0\0\n\t0001  One", 26));
  EXPECT_EQ(PciName(0x8086, 1), "Intel Device 0001");
  mDirectory.Write("usr/share/misc/pci.ids",
                   std::string(100'000, '\n') + "8086  " + std::string(100'000, 'a'));
  EXPECT_EQ(PciName(0x8086, 1), std::string(256, 'a') + " Device 0001");
}

TEST_F(DeviceIdsTest, ReadsNoMoreThanTheBound) {
  mDirectory.Write("usr/share/misc/pci.ids", std::string(std::size_t{16} << 20, '\n') + "8086  Too far\n");
  EXPECT_EQ(PciName(0x8086, 1), "PCI device 8086:0001");
}

TEST_F(DeviceIdsTest, IdentifiersWiderThanTheListsAreUnknown) {
  mDirectory.Write("usr/share/misc/pci.ids", kList);
  EXPECT_EQ(PciName(0x18086, 0x1616), "PCI device 18086:1616");
  EXPECT_EQ(PciName(0x8086, 0x11616), "Intel Corporation Device 11616");
}

}  // namespace
}  // namespace qelcore::host::components
