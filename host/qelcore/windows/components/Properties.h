// The properties of a Windows system.
#pragma once

#include <string>
#include <vector>

#include "host/qelcore/components/Properties.h"
#include "host/qelcore/windows/components/Devices.h"
#include "host/qelcore/windows/components/SystemFacts.h"

namespace qelcore::host::windows {

/// All properties. `devices` as `ListDevices` gives them.
[[nodiscard]] components::Properties ReadProperties(const SystemFacts& facts,
                                                    const std::vector<Device>& devices);

/// The name of the product and its edition, "Windows 11 Pro".
[[nodiscard]] std::string EditionOf(const SystemFacts& facts);

/// What kind of virtual machine or container this is, "none" for a real machine.
[[nodiscard]] std::string VirtualisationOf(const SystemFacts& facts);

}  // namespace qelcore::host::windows
