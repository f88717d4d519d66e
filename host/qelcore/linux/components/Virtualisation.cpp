// Whether the machine is a virtual one or a container, told from files alone.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "host/qelcore/components/Firmware.h"
#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {
namespace {

/// Containers share the kernel of their host, so that all the other signs are the host's.
bool IsContainer(const RootedFiles& files) {
  constexpr std::array<std::string_view, 3> kMarks{"run/systemd/container", "run/.containerenv",
                                                   ".dockerenv"};
  return std::any_of(kMarks.begin(), kMarks.end(), [&](std::string_view mark) { return files.Exists(mark); });
}

/// What the makers of virtual machines write into the firmware's table.
std::string_view FromFirmware(const RootedFiles& files) {
  const std::string table = "sys/class/dmi/id/";
  return VirtualMachineKind({.mManufacturer = files.ReadLine(table + "sys_vendor"),
                             .mModel = files.ReadLine(table + "product_name"),
                             .mBoardManufacturer = files.ReadLine(table + "board_vendor"),
                             .mFirmwareVendor = files.ReadLine(table + "bios_vendor")});
}

/// The clocks that hypervisors offer to their guests carry their names.
std::string_view FromClocks(const RootedFiles& files) {
  const std::string clocks =
      files.ReadLine("sys/devices/system/clocksource/clocksource0/available_clocksource");
  if (clocks.find("kvm-clock") != std::string::npos) return "kvm";
  if (clocks.find("hyperv_clocksource") != std::string::npos) return "hyperv";
  return {};
}

std::string_view FromDeviceTree(const RootedFiles& files) {
  const std::string tree = "sys/firmware/devicetree/base/";
  const std::string hypervisor =
      CleanText(files.Read(tree + "hypervisor/compatible").value_or(std::string()));
  if (hypervisor == "linux,kvm") return "kvm";
  if (hypervisor.starts_with("xen,")) return "xen";
  const std::string machine = CleanText(files.Read(tree + "compatible").value_or(std::string()));
  return machine == "linux,dummy-virt" ? "qemu" : std::string_view();
}

bool HasHypervisorFlag(const RootedFiles& files) {
  bool hasFlag = false;
  ForEachLine(files.Read("proc/cpuinfo").value_or(std::string()), [&](std::string_view line) {
    if (!line.starts_with("flags")) return true;
    hasFlag = (std::string(Trim(line)) + " ").find(" hypervisor ") != std::string::npos;
    return false;
  });
  return hasFlag;
}

}  // namespace

std::string ReadVirtualisation(const RootedFiles& files) {
  if (IsContainer(files)) return "container";
  if (files.ReadLine("sys/hypervisor/type") == "xen") {
    // The domain that controls the others runs on the hypervisor as well, but with the real devices.
    const bool isControlDomain =
        files.ReadLine("proc/xen/capabilities").find("control_d") != std::string::npos;
    return isControlDomain ? "none" : "xen";
  }
  const std::string_view firmware = FromFirmware(files);
  const std::string_view clocks = FromClocks(files);
  // The emulator leaves its own name in the table also when the kernel's hypervisor does the work.
  if (firmware == "qemu" && clocks == "kvm") return "kvm";
  if (!firmware.empty()) return std::string(firmware);
  if (!clocks.empty()) return std::string(clocks);
  if (const std::string_view tree = FromDeviceTree(files); !tree.empty()) return std::string(tree);
  return HasHypervisorFlag(files) ? "other" : "none";
}

}  // namespace qelcore::host::components
