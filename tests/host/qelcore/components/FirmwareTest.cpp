#include "host/qelcore/components/Firmware.h"

#include <gtest/gtest.h>

#include <string>

namespace qelcore::host::components {
namespace {

TEST(Firmware, TellsVirtualMachines) {
  struct Row {
    FirmwareNames mNames;
    const char* mKind;
  };
  for (const Row& row : {Row{{"", "", "", ""}, ""},
                         {{"LENOVO", "82RF", "LENOVO", "LENOVO"}, ""},
                         {{"QEMU", "Standard PC (Q35 + ICH9, 2009)", "", "SeaBIOS"}, "qemu"},
                         {{"VMware, Inc.", "VMware7,1", "", ""}, "vmware"},
                         {{"", "", "", "VMW71.00V"}, "vmware"},
                         {{"innotek GmbH", "VirtualBox", "Oracle Corporation", "innotek GmbH"}, "virtualbox"},
                         {{"Xen", "HVM domU", "", "Xen"}, "xen"},
                         {{"", "", "", "Bochs"}, "bochs"},
                         {{"Parallels Software International Inc.", "", "", ""}, "parallels"},
                         {{"Microsoft Corporation", "Virtual Machine", "", ""}, "hyperv"},
                         {{"Microsoft Corporation", "Surface Pro 7", "", ""}, ""},
                         {{"Other", "Virtual Machine", "", ""}, ""},
                         {{"", "", "KVM", ""}, "kvm"},
                         {{"Sold with QEMU", "", "", ""}, ""}}) {
    EXPECT_EQ(VirtualMachineKind(row.mNames), row.mKind) << row.mNames.mManufacturer << row.mNames.mModel;
  }
}

TEST(Firmware, DatesBecomeIsoDates) {
  struct Row {
    const char* mDate;
    const char* mIso;
  };
  for (const Row& row : {Row{"03/14/2023", "2023-03-14"},
                         {"12/31/1999", "1999-12-31"},
                         {"", ""},
                         {"14/03/2023", ""},
                         {"00/01/2023", ""},
                         {"01/32/2023", ""},
                         {"3/14/2023", ""},
                         {"03-14-2023", ""},
                         {"03/14/20x3", ""},
                         {"03/14/2023 ", ""}}) {
    EXPECT_EQ(IsoDateOfFirmware(row.mDate), row.mIso) << row.mDate;
  }
}

TEST(Firmware, HousingsHaveKinds) {
  struct Row {
    std::uint64_t mNumber;
    const char* mKind;
  };
  for (const Row& row : {Row{0, ""},
                         {2, ""},
                         {3, "desktop"},
                         {9, "laptop"},
                         {10, "laptop"},
                         {17, "server"},
                         {30, "tablet"},
                         {31, "convertible"},
                         {35, "desktop"},
                         {1'000'000, ""}}) {
    EXPECT_EQ(ChassisKind(row.mNumber), row.mKind) << row.mNumber;
  }
}

}  // namespace
}  // namespace qelcore::host::components
