// Devices on the PCI bus.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/RootedFiles.h"

namespace qelcore::host::components {

/// The display, audio and network devices of the bus, by their class codes. Without names.
[[nodiscard]] std::vector<Device> ListPciDevices(const RootedFiles& files);

/// The PCI device with this resolved directory as a device of the given kind, whatever its class code says.
/// Nothing when its identifiers cannot be read.
[[nodiscard]] std::optional<Device> ReadPciDevice(const RootedFiles& files, const std::string& directory,
                                                  utility::OSComponentType type);

/// Orders two bus addresses, such as "0000:41:00.1", by domain, bus, device and function.
[[nodiscard]] bool PciAddressLess(std::string_view left, std::string_view right);

}  // namespace qelcore::host::components
