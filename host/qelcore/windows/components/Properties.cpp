#include "host/qelcore/windows/components/Properties.h"

#include <array>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::windows {
namespace {

using components::AddProperty;
using components::FourHexadecimalDigits;
using components::Properties;
using utility::OSComponentType;

constexpr int kMebibyteShift = 20;
constexpr int kGibibyteShift = 30;

template <typename Number>
void AddNumber(Properties& properties, std::string_view name, const std::optional<Number>& number) {
  if (number) AddProperty(properties, name, std::to_string(*number));
}

void AddAmount(Properties& properties, std::string_view name, const std::optional<std::uint64_t>& bytes,
               int shift) {
  if (bytes) AddProperty(properties, name, std::to_string(*bytes >> shift));
}

void AddSystemProperties(const SystemFacts& facts, Properties& properties) {
  AddProperty(properties, "os.architecture", facts.mArchitecture);
  AddProperty(properties, "os.display_version", facts.mDisplayVersion);
  AddProperty(properties, "os.edition", EditionOf(facts));
  AddProperty(properties, "os.kernel_release", facts.mVersion.ToString());
  AddProperty(properties, "os.language", facts.mLanguage);
}

void AddFirmwareProperties(const SystemFacts& facts, Properties& properties) {
  AddProperty(properties, "bios.date", components::IsoDateOfFirmware(facts.mFirmwareDate));
  AddProperty(properties, "bios.vendor", facts.mFirmware.mFirmwareVendor);
  AddProperty(properties, "bios.version", facts.mFirmwareVersion);
  if (facts.mChassis) AddProperty(properties, "system.chassis", components::ChassisKind(*facts.mChassis));
  AddProperty(properties, "system.manufacturer", facts.mFirmware.mManufacturer);
  AddProperty(properties, "system.model", facts.mFirmware.mModel);
  const std::string_view whenRead = facts.mIsSecureBootEnabled.value_or(false) ? "enabled" : "disabled";
  AddProperty(properties, "system.secure_boot", facts.mIsSecureBootEnabled ? whenRead : "unavailable");
  AddProperty(properties, "system.virtualisation", VirtualisationOf(facts));
}

void AddProcessorProperties(const SystemFacts& facts, Properties& properties) {
  AddNumber(properties, "cpu.cores", facts.mCores);
  AddNumber(properties, "cpu.logical_processors", facts.mLogicalProcessors);
  AddProperty(properties, "cpu.name", facts.mProcessorName);
  AddAmount(properties, "memory.mb", facts.mMemoryBytes, kMebibyteShift);
  AddAmount(properties, "swap.mb", facts.mPageFileBytes, kMebibyteShift);
}

void AddSessionProperties(const SystemFacts& facts, Properties& properties) {
  if (facts.mIsRemoteSession) {
    AddProperty(properties, "desktop.remote", *facts.mIsRemoteSession ? "yes" : "no");
  }
  AddAmount(properties, "disk.free_gb", facts.mFreeBytes, kGibibyteShift);
  AddNumber(properties, "display.count", facts.mMonitors);
  AddNumber(properties, "display.dpi", facts.mDotsPerInch);
}

std::string_view PrefixOf(OSComponentType type) {
  switch (type) {
    case OSComponentType::kVideo:
      return "gpu.";
    case OSComponentType::kAudio:
      return "audio.";
    default:
      return "network.";
  }
}

/// Each kind's devices are counted from 0.
void AddDeviceProperties(const std::vector<Device>& devices, Properties& properties) {
  std::map<OSComponentType, std::size_t> counts{{OSComponentType::kVideo, 0}};
  std::string identifiers;
  for (const Device& device : devices) {
    const std::string start =
        std::string(PrefixOf(device.mType)) + std::to_string(counts[device.mType]++) + ".";
    AddProperty(properties, start + "driver_date", device.mDriverDate);
    AddProperty(properties, start + "driver_provider", device.mProvider);
    AddNumber(properties, start + "problem_code", device.mProblem);
    if (device.mType != OSComponentType::kVideo) continue;
    AddProperty(properties, start + "kernel_driver", device.mService);
    AddAmount(properties, start + "memory_mb", device.mMemoryBytes, kMebibyteShift);
    if (!device.mId) continue;
    const std::string vendor = FourHexadecimalDigits(device.mId->mVendor);
    const std::string product = FourHexadecimalDigits(device.mId->mDevice);
    AddProperty(properties, start + "vendor_id", "0x" + vendor);
    AddProperty(properties, start + "device_id", "0x" + product);
    identifiers += (identifiers.empty() ? "" : " ") + vendor + ":" + product;
  }
  AddProperty(properties, "gpu.count", std::to_string(counts[OSComponentType::kVideo]));
  AddProperty(properties, "gpu.device_ids", identifiers);
}

/// The kind of virtual machine that a hypervisor's own name stands for.
std::string_view KindOfHypervisor(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kKinds{
      {{"KVMKVMKVM", "kvm"},
       {"TCGTCGTCGTCG", "qemu"},
       {"VMwareVMware", "vmware"},
       {"VBoxVBoxVBox", "virtualbox"},
       {"Microsoft Hv", "hyperv"},
       {"XenVMMXenVMM", "xen"},
       {"prl hyperv", "parallels"},
       {"bhyve bhyve", "bhyve"}}};
  for (const auto& [known, kind] : kKinds) {
    if (components::Trim(name) == known) return kind;
  }
  return {};
}

}  // namespace

Properties ReadProperties(const SystemFacts& facts, const std::vector<Device>& devices) {
  Properties properties;
  AddSystemProperties(facts, properties);
  AddFirmwareProperties(facts, properties);
  AddProcessorProperties(facts, properties);
  AddDeviceProperties(devices, properties);
  AddSessionProperties(facts, properties);
  return properties;
}

std::string EditionOf(const SystemFacts& facts) {
  constexpr std::string_view kOldName = "Windows 10";
  constexpr std::uint32_t kFirstBuildOfNext = 22000;
  std::string name = components::CleanText(facts.mProductName);
  // The registry kept the old name when the product got its new one.
  if (facts.mVersion.mVersionY >= kFirstBuildOfNext && name.starts_with(kOldName)) {
    name.replace(0, kOldName.size(), "Windows 11");
  }
  return name;
}

std::string VirtualisationOf(const SystemFacts& facts) {
  if (facts.mIsContainer) return "container";
  if (facts.mHypervisor.mIsRootPartition) return "none";
  const std::string_view firmware = components::VirtualMachineKind(facts.mFirmware);
  const std::string_view hypervisor = KindOfHypervisor(facts.mHypervisor.mName);
  // The emulator leaves its own name in the table also when the kernel's hypervisor does the work.
  if (firmware == "qemu" && hypervisor == "kvm") return "kvm";
  if (!firmware.empty()) return std::string(firmware);
  if (!hypervisor.empty()) return std::string(hypervisor);
  return facts.mHypervisor.mIsPresent ? "other" : "none";
}

}  // namespace qelcore::host::windows
