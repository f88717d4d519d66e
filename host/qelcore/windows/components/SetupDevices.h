// The devices of the running machine.
#pragma once

#include <vector>

#include "host/qelcore/windows/components/DeviceSource.h"

namespace qelcore::host::windows {

/// Reads the devices that are present through the system's setup functions. These look into the registry; no
/// device is asked or woken. Any thread may call.
class SetupDevices : public DeviceSource {
 public:
  [[nodiscard]] std::vector<DeviceRecord> List(DeviceClass deviceClass) const override;
};

}  // namespace qelcore::host::windows
