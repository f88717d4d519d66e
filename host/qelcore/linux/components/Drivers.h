// The driver that serves a device, and its version.
#pragma once

#include <functional>
#include <string>

#include "host/qelcore/linux/components/Device.h"
#include "host/qelcore/linux/components/RootedFiles.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::components {

/// Answers the version text that the driver of a network interface gives of itself; empty for none.
using NetworkDriverQuery = std::function<std::string(const std::string& interface)>;

/// Fills in the driver and the module of the device from its directory in sysfs, or from the given directory
/// when another one than the device's own is bound to the driver.
void ReadDriver(const RootedFiles& files, const std::string& directory, Device& device);

/// The version of the driver that serves the device. Empty without a driver. Otherwise the module's own
/// version; without one, for a network driver that does not come with the kernel, what the driver answers;
/// else the version of the kernel.
///
/// The driver is asked only while the interface carries a link: asking wakes a sleeping device.
[[nodiscard]] utility::OSComponentVersion DriverVersion(const RootedFiles& files, const Device& device,
                                                        const utility::OSComponentVersion& kernel,
                                                        const NetworkDriverQuery& askDriver);

/// The version text of a kernel module; empty when it is not loaded or gives none.
[[nodiscard]] std::string ModuleVersion(const RootedFiles& files, const std::string& module);

/// `NetworkDriverQuery` for the running machine.
[[nodiscard]] std::string AskNetworkDriver(const std::string& interface);

}  // namespace qelcore::host::components
