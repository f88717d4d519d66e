// Devices on the USB.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/RootedFiles.h"

namespace qelcore::host::components {

/// The devices with at least one audio interface, each once, with the driver of its first such interface.
/// Without names.
[[nodiscard]] std::vector<Device> ListUsbAudioDevices(const RootedFiles& files);

/// The USB device with this resolved directory as a device of the given kind. `interfaceDirectory` is the
/// interface whose driver serves it. Nothing when its identifiers cannot be read.
[[nodiscard]] std::optional<Device> ReadUsbDevice(const RootedFiles& files, const std::string& directory,
                                                  const std::string& interfaceDirectory,
                                                  utility::OSComponentType type);

}  // namespace qelcore::host::components
