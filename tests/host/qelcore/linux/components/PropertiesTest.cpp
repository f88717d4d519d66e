#include "host/qelcore/linux/components/Properties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "tests/host/qelcore/components/RowName.h"
#include "tests/host/qelcore/linux/components/MachineTree.h"

namespace qelcore::host::components {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Key;
using ::testing::Not;
using ::testing::Pair;
using testsupport::MachineTree;

/// The properties of a machine that consists of these entries.
Properties PropertiesOf(std::string_view tree) {
  const MachineTree machine(tree);
  const RootedFiles files(machine.Root());
  return ReadProperties(files, ReadOperatingSystem(files), {}, machine.Surroundings());
}

TEST(PropertiesTest, AnEmptyMachineHasWhatIsAlwaysKnown) {
  EXPECT_THAT(PropertiesOf(""),
              ElementsAre(Pair("display.server", "none"), Pair("gpu.count", "0"),
                          Pair("system.secure_boot", "unavailable"), Pair("system.virtualisation", "none")));
}

TEST(PropertiesTest, ValuesAreCleanedAndEmptyOnesLeftOut) {
  Properties properties;
  AddProperty(properties, "a.b", " text\n");
  AddProperty(properties, "a.c", " \n");
  AddProperty(properties, "a.d", "");
  EXPECT_THAT(properties, ElementsAre(Pair("a.b", "text")));
}

struct PropertyRow {
  std::string_view mTree;
  std::string_view mName;
  std::string_view mValue;  ///< empty when the property is left out
  friend void PrintTo(const PropertyRow& row, std::ostream* stream) {
    *stream << row.mName << "/" << testsupport::RowName(row.mTree.substr(row.mTree.rfind('/') + 1))
            << row.mTree.size();
  }
};

class PropertyTest : public ::testing::TestWithParam<PropertyRow> {};

TEST_P(PropertyTest, HasTheValue) {
  const Properties properties = PropertiesOf(GetParam().mTree);
  const auto place = properties.find(GetParam().mName);
  EXPECT_EQ(place == properties.end() ? std::string() : place->second, GetParam().mValue) << GetParam().mTree;
}

INSTANTIATE_TEST_SUITE_P(
    Virtualisation, PropertyTest,
    ::testing::Values(
        PropertyRow{"sys/class/dmi/id/sys_vendor: VMware, Inc.", "system.virtualisation", "vmware"},
        PropertyRow{"sys/class/dmi/id/product_name: VirtualBox", "system.virtualisation", "virtualbox"},
        PropertyRow{"sys/class/dmi/id/sys_vendor: innotek GmbH", "system.virtualisation", "virtualbox"},
        PropertyRow{"sys/class/dmi/id/sys_vendor: QEMU", "system.virtualisation", "qemu"},
        PropertyRow{"sys/class/dmi/id/sys_vendor: QEMU\n"
                    "sys/devices/system/clocksource/clocksource0/available_clocksource: kvm-clock tsc",
                    "system.virtualisation", "kvm"},
        PropertyRow{"sys/devices/system/clocksource/clocksource0/available_clocksource: kvm-clock tsc",
                    "system.virtualisation", "kvm"},
        PropertyRow{"sys/devices/system/clocksource/clocksource0/available_clocksource: tsc hpet acpi_pm",
                    "system.virtualisation", "none"},
        PropertyRow{"sys/devices/system/clocksource/clocksource0/available_clocksource: "
                    "hyperv_clocksource_tsc_page acpi_pm",
                    "system.virtualisation", "hyperv"},
        PropertyRow{"sys/class/dmi/id/sys_vendor: Microsoft Corporation\nsys/class/dmi/id/product_name: "
                    "Virtual Machine",
                    "system.virtualisation", "hyperv"},
        PropertyRow{"sys/class/dmi/id/sys_vendor: Microsoft Corporation\nsys/class/dmi/id/product_name: "
                    "Surface Laptop 4",
                    "system.virtualisation", "none"},
        PropertyRow{"sys/hypervisor/type: xen", "system.virtualisation", "xen"},
        PropertyRow{"sys/hypervisor/type: xen\nproc/xen/capabilities: control_d", "system.virtualisation",
                    "none"},
        PropertyRow{"sys/class/dmi/id/bios_vendor: Xen", "system.virtualisation", "xen"},
        PropertyRow{"sys/firmware/devicetree/base/hypervisor/compatible = linux,kvm\\0",
                    "system.virtualisation", "kvm"},
        PropertyRow{"sys/firmware/devicetree/base/hypervisor/compatible = xen,xen-4.17\\0xen,xen\\0",
                    "system.virtualisation", "xen"},
        PropertyRow{"sys/firmware/devicetree/base/compatible = linux,dummy-virt\\0", "system.virtualisation",
                    "qemu"},
        PropertyRow{"proc/cpuinfo:\n    processor : 0\n    flags : fpu hypervisor lm",
                    "system.virtualisation", "other"},
        PropertyRow{"proc/cpuinfo:\n    flags : fpu lm hypervisor", "system.virtualisation", "other"},
        PropertyRow{"proc/cpuinfo:\n    flags : fpu hypervisors lm", "system.virtualisation", "none"},
        PropertyRow{".dockerenv =", "system.virtualisation", "container"},
        PropertyRow{"run/.containerenv =", "system.virtualisation", "container"},
        PropertyRow{"run/systemd/container: lxc\nsys/class/dmi/id/sys_vendor: QEMU", "system.virtualisation",
                    "container"}));

INSTANTIATE_TEST_SUITE_P(
    SecureBoot, PropertyTest,
    ::testing::Values(
        PropertyRow{
            "sys/firmware/efi/efivars/SecureBoot-8be4df61-93ca-11d2-aa0d-00e098032b8c = \\x06\\0\\0\\0\\x01",
            "system.secure_boot", "enabled"},
        PropertyRow{
            "sys/firmware/efi/efivars/SecureBoot-8be4df61-93ca-11d2-aa0d-00e098032b8c = \\x06\\0\\0\\0\\0",
            "system.secure_boot", "disabled"},
        PropertyRow{"sys/firmware/efi/efivars/SecureBoot-8be4df61-93ca-11d2-aa0d-00e098032b8c = \\x01",
                    "system.secure_boot", "unavailable"},
        PropertyRow{"sys/firmware/efi/efivars/SecureBoot-8be4df61-93ca-11d2-aa0d-00e098032b8c =",
                    "system.secure_boot", "unavailable"}));

INSTANTIATE_TEST_SUITE_P(
    Firmware, PropertyTest,
    ::testing::Values(
        PropertyRow{"sys/class/dmi/id/bios_date: 03/14/2023", "bios.date", "2023-03-14"},
        PropertyRow{"sys/class/dmi/id/bios_date: 14/03/2023", "bios.date", ""},
        PropertyRow{"sys/class/dmi/id/bios_date: 3/14/2023", "bios.date", ""},
        PropertyRow{"sys/class/dmi/id/bios_date: 03/00/2023", "bios.date", ""},
        PropertyRow{"sys/class/dmi/id/bios_date: 0a/14/2023", "bios.date", ""},
        PropertyRow{"sys/class/dmi/id/bios_date: 2023-03-14", "bios.date", ""},
        PropertyRow{"sys/class/dmi/id/chassis_type: 10", "system.chassis", "laptop"},
        PropertyRow{"sys/class/dmi/id/chassis_type: 3", "system.chassis", "desktop"},
        PropertyRow{"sys/class/dmi/id/chassis_type: 23", "system.chassis", "server"},
        PropertyRow{"sys/class/dmi/id/chassis_type: 30", "system.chassis", "tablet"},
        PropertyRow{"sys/class/dmi/id/chassis_type: 31", "system.chassis", "convertible"},
        PropertyRow{"sys/class/dmi/id/chassis_type: 1", "system.chassis", ""},
        PropertyRow{"sys/class/dmi/id/chassis_type: tower", "system.chassis", ""},
        PropertyRow{"sys/class/dmi/id/product_name: 21CB\nsys/firmware/devicetree/base/model = Board\\0",
                    "system.model", "21CB"},
        PropertyRow{"sys/firmware/devicetree/base/model = Board Rev 1.4\\0", "system.model",
                    "Board Rev 1.4"}));

INSTANTIATE_TEST_SUITE_P(
    Session, PropertyTest,
    ::testing::Values(
        PropertyRow{"@environment LANG=de_DE.UTF-8", "os.language", "de_DE"},
        PropertyRow{"@environment LANG=de_DE@euro", "os.language", "de_DE"},
        PropertyRow{"@environment LANG=C.UTF-8", "os.language", "C"},
        PropertyRow{"@environment LANG=en_US.UTF-8\n@environment LC_MESSAGES=fr_FR", "os.language", "fr_FR"},
        PropertyRow{"@environment LC_MESSAGES=fr_FR\n@environment LC_ALL=it_IT", "os.language", "it_IT"},
        PropertyRow{"@environment LANG=de_DE\n@environment LC_ALL=", "os.language", "de_DE"},
        PropertyRow{"@environment LANG=", "os.language", ""},
        PropertyRow{"@environment XDG_SESSION_TYPE=wayland", "display.server", "wayland"},
        PropertyRow{"@environment XDG_SESSION_TYPE=x11\n@environment WAYLAND_DISPLAY=wayland-0",
                    "display.server", "x11"},
        PropertyRow{"@environment WAYLAND_DISPLAY=wayland-0\n@environment DISPLAY=:0", "display.server",
                    "wayland"},
        PropertyRow{"@environment DISPLAY=:0", "display.server", "x11"},
        PropertyRow{"@environment XDG_SESSION_TYPE=tty\n@environment DISPLAY=host:10", "display.server",
                    "x11"},
        PropertyRow{"@environment XDG_SESSION_TYPE=tty", "display.server", "none"},
        PropertyRow{"@environment XDG_CURRENT_DESKTOP=ubuntu:GNOME", "desktop.session", "ubuntu:GNOME"},
        PropertyRow{"@free_bytes 0", "disk.free_gb", "0"},
        PropertyRow{"@free_bytes 1073741823", "disk.free_gb", "0"},
        PropertyRow{"@free_bytes 1073741824", "disk.free_gb", "1"},
        PropertyRow{"@free_bytes 18446744073709551615", "disk.free_gb", "17179869183"},
        PropertyRow{"@architecture riscv64", "os.architecture", "riscv64"}));

INSTANTIATE_TEST_SUITE_P(
    Processor, PropertyTest,
    ::testing::Values(
        PropertyRow{"sys/devices/system/cpu/online: 0-3,8,10-11", "cpu.logical_processors", "7"},
        PropertyRow{"sys/devices/system/cpu/online: 0", "cpu.logical_processors", "1"},
        PropertyRow{"sys/devices/system/cpu/online: 0-4294967295", "cpu.logical_processors", ""},
        PropertyRow{"sys/devices/system/cpu/online: 3-0", "cpu.logical_processors", ""},
        PropertyRow{"sys/devices/system/cpu/online: 0-3,", "cpu.logical_processors", "4"},
        PropertyRow{"sys/devices/system/cpu/online: 0-,2", "cpu.logical_processors", ""},
        PropertyRow{"sys/devices/system/cpu/online: all\nproc/cpuinfo:\n    processor : 0\n    processor : 1",
                    "cpu.logical_processors", "2"},
        PropertyRow{"sys/devices/system/cpu/online: 0-3\n"
                    "sys/devices/system/cpu/cpu0/topology/thread_siblings_list: 0,2\n"
                    "sys/devices/system/cpu/cpu1/topology/thread_siblings_list: 1,3\n"
                    "sys/devices/system/cpu/cpu2/topology/thread_siblings_list: 0,2\n"
                    "sys/devices/system/cpu/cpu3/topology/thread_siblings_list: 1,3",
                    "cpu.cores", "2"},
        PropertyRow{
            "sys/devices/system/cpu/online: 0-1\n"
            "sys/devices/system/cpu/cpu0/topology/thread_siblings_list: 0-1\n"
            "proc/cpuinfo:\n    physical id : 0\n    core id : 0\n    physical id : 1\n    core id : 0",
            "cpu.cores", "2"},
        PropertyRow{"proc/cpuinfo:\n    model name\t: AMD Ryzen 7 5800X 8-Core Processor             ",
                    "cpu.name", "AMD Ryzen 7 5800X 8-Core Processor"},
        PropertyRow{"proc/cpuinfo:\n    cpu\t\t: POWER9, altivec supported", "cpu.name",
                    "POWER9, altivec supported"},
        PropertyRow{"proc/cpuinfo:\n    cpu family : 6\n    cpu MHz : 800", "cpu.name", ""},
        PropertyRow{"proc/cpuinfo:\n    model name : One\n    model name : Two", "cpu.name", "One"},
        PropertyRow{"proc/cpuinfo:\n    Serial : 0123\nsys/firmware/devicetree/base/cpus/cpu@0/compatible = "
                    "arm,a72\\0",
                    "cpu.name", "arm,a72"}));

INSTANTIATE_TEST_SUITE_P(
    Memory, PropertyTest,
    ::testing::Values(PropertyRow{"proc/meminfo:\n    MemTotal:        8140008 kB", "memory.mb", "7949"},
                      PropertyRow{"proc/meminfo:\n    SwapTotal:             0 kB", "swap.mb", "0"},
                      PropertyRow{"proc/meminfo:\n    MemTotal: many kB", "memory.mb", ""},
                      PropertyRow{"proc/meminfo:\n    MemTotal:", "memory.mb", ""}));

TEST(PropertiesTest, GraphicsDevicesAreNumberedInTheirOrder) {
  const MachineTree machine("sys/module/nvidia/version: 396.24");
  Device audio;
  audio.mType = utility::OSComponentType::kAudio;
  audio.mId = DeviceId{0x10de, 0x0fbc};
  Device first;
  first.mType = utility::OSComponentType::kVideo;
  first.mId = DeviceId{0x8086, 0x1616};
  Device board = first;
  board.mId.reset();
  board.mDriver = "vc4-drm";
  Device last = first;
  last.mId = DeviceId{0x10de, 0x0141};
  last.mDriver = "nvidia";
  Properties properties;
  AddGraphicsProperties(RootedFiles(machine.Root()), {audio, first, board, last}, properties);
  EXPECT_THAT(properties,
              ElementsAre(Pair("gpu.0.device_id", "0x1616"), Pair("gpu.0.vendor_id", "0x8086"),
                          Pair("gpu.1.kernel_driver", "vc4-drm"), Pair("gpu.2.device_id", "0x0141"),
                          Pair("gpu.2.kernel_driver", "nvidia"), Pair("gpu.2.vendor_id", "0x10de"),
                          Pair("gpu.count", "3"), Pair("gpu.device_ids", "8086:1616 10de:0141"),
                          Pair("gpu.nvidia_module", "396.24")));
}

TEST(PropertiesTest, WithoutFreeSpaceItIsLeftOut) {
  EXPECT_THAT(PropertiesOf("@architecture x86_64"), Not(Contains(Key("disk.free_gb"))));
}

}  // namespace
}  // namespace qelcore::host::components
