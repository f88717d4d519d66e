#include <gtest/gtest.h>

#include "host/qelcore/windows/components/Properties.h"

namespace qelcore::host::windows {
namespace {

SystemFacts Facts(const char* manufacturer, const char* hypervisor) {
  SystemFacts facts;
  facts.mFirmware.mManufacturer = manufacturer;
  facts.mHypervisor.mName = hypervisor;
  facts.mHypervisor.mIsPresent = *hypervisor != '\0';
  return facts;
}

TEST(Virtualisation, IsToldByFirmwareAndHypervisor) {
  struct Row {
    const char* mManufacturer;
    const char* mHypervisor;
    const char* mKind;
  };
  for (const Row& row : {Row{"LENOVO", "", "none"},
                         {"QEMU", "KVMKVMKVM", "kvm"},
                         {"QEMU", "TCGTCGTCGTCG", "qemu"},
                         {"QEMU", "", "qemu"},
                         {"VMware, Inc.", "VMwareVMware", "vmware"},
                         {"innotek GmbH", "KVMKVMKVM", "virtualbox"},
                         {"Google", "KVMKVMKVM", "kvm"},
                         {"", "VBoxVBoxVBox", "virtualbox"},
                         {"", "XenVMMXenVMM", "xen"},
                         {"", "Microsoft Hv", "hyperv"},
                         {"", " prl hyperv ", "parallels"},
                         {"", "bhyve bhyve ", "bhyve"},
                         {"LENOVO", "QNXQVMBSQG", "other"}}) {
    EXPECT_EQ(VirtualisationOf(Facts(row.mManufacturer, row.mHypervisor)), row.mKind)
        << row.mManufacturer << ' ' << row.mHypervisor;
  }
}

TEST(Virtualisation, TheSystemThatControlsTheHypervisorIsARealMachine) {
  SystemFacts facts = Facts("LENOVO", "Microsoft Hv");
  facts.mHypervisor.mIsRootPartition = true;
  EXPECT_EQ(VirtualisationOf(facts), "none");
}

TEST(Virtualisation, AContainerIsOneWhateverItRunsOn) {
  SystemFacts facts = Facts("QEMU", "KVMKVMKVM");
  facts.mIsContainer = true;
  EXPECT_EQ(VirtualisationOf(facts), "container");
}

TEST(Edition, WindowsElevenIsCalledByItsName) {
  struct Row {
    const char* mVersion;
    const char* mProductName;
    const char* mEdition;
  };
  for (const Row& row : {Row{"10.0.19045.3803", "Windows 10 Pro", "Windows 10 Pro"},
                         {"10.0.22000.1", "Windows 10 Pro", "Windows 11 Pro"},
                         {"10.0.22000.1", "Windows 11 Pro", "Windows 11 Pro"},
                         {"10.0.26100.1", "Windows Server 2025 Standard", "Windows Server 2025 Standard"},
                         {"10.0.26100.1", "", ""}}) {
    SystemFacts facts;
    facts.mVersion = utility::OSComponentVersion(std::string_view(row.mVersion));
    facts.mProductName = row.mProductName;
    EXPECT_EQ(EditionOf(facts), row.mEdition) << row.mVersion;
  }
}

}  // namespace
}  // namespace qelcore::host::windows
