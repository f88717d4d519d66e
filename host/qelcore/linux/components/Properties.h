// The system's properties: named texts about the machine, for rules and for people who read a report.
//
// `docs/components.md` lists them all. None holds a serial number, an address, or the name of a person or of
// a machine. A property whose value cannot be read is left out.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/OperatingSystem.h"
#include "host/qelcore/linux/components/RootedFiles.h"
#include "host/qelcore/linux/components/Surroundings.h"

namespace qelcore::host::components {

/// Values by name, both UTF-8. The order of the names is the order of the components, so that properties that
/// were saved stand where fresh ones do and the registry's hash stays the same.
using Properties = std::map<std::string, std::string, std::less<>>;

/// Adds a property, its value cleaned; does nothing when no value is left.
void AddProperty(Properties& properties, std::string_view name, std::string_view value);

/// All properties. `devices` as `ListDevices` gives them.
[[nodiscard]] Properties ReadProperties(const RootedFiles& files, const OperatingSystem& system,
                                        const std::vector<Device>& devices, const Surroundings& surroundings);

// ---- The parts of it, one file each

/// "os.*"
void AddSystemProperties(const OperatingSystem& system, const Surroundings& surroundings,
                         Properties& properties);

/// "system.*" and "bios.*"
void AddFirmwareProperties(const RootedFiles& files, Properties& properties);

/// "cpu.*", "memory.mb" and "swap.mb"
void AddProcessorProperties(const RootedFiles& files, Properties& properties);

/// "gpu.*"
void AddGraphicsProperties(const RootedFiles& files, const std::vector<Device>& devices,
                           Properties& properties);

/// "desktop.session", "display.server" and "disk.free_gb"
void AddSessionProperties(const Surroundings& surroundings, Properties& properties);

/// What kind of virtual machine or container this is, "none" for a real machine: the value of
/// "system.virtualisation".
[[nodiscard]] std::string ReadVirtualisation(const RootedFiles& files);

}  // namespace qelcore::host::components
