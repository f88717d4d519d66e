// Devices that the kernel lists by what they do: graphics cards, sound cards, network interfaces.
//
// Most of them sit on the PCI bus or the USB and are found there. This reader finds the others, such as the
// parts of an ARM board and the devices of a virtual machine, and tells which driver and network interface
// belong to the devices that are known already.
#pragma once

#include <vector>

#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/RootedFiles.h"

namespace qelcore::host::components {

/// Adds what the classes "drm", "sound" and "net" hold beyond `devices`, and completes those. A device is
/// added once for each kind, however many cards or interfaces it has. Interfaces without a device (loopback,
/// bridges, tunnels) and those of Bluetooth connections are left out. PCI and USB devices are added without
/// names.
void AddClassDevices(const RootedFiles& files, std::vector<Device>& devices);

}  // namespace qelcore::host::components
