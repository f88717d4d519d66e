// The properties of a Linux system.
#pragma once

#include <string>
#include <vector>

#include "host/qelcore/components/Properties.h"
#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/OperatingSystem.h"
#include "host/qelcore/linux/components/RootedFiles.h"
#include "host/qelcore/linux/components/Surroundings.h"

namespace qelcore::host::components {

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
