// All devices of the machine that are components.
#pragma once

#include <vector>

#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/RootedFiles.h"

namespace qelcore::host::components {

/// The video, audio and network devices, named, ordered by kind, then bus (PCI, USB, others), then address.
[[nodiscard]] std::vector<Device> ListDevices(const RootedFiles& files);

}  // namespace qelcore::host::components
