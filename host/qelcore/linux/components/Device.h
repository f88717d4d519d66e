// A device of the machine, before it becomes a component.
#pragma once

#include <optional>
#include <string>

#include "host/qelcore/linux/components/DeviceIds.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::components {

/// The numbers give the order in which the devices of a kind are listed.
enum class Bus { kPci = 0, kUsb = 1, kOther = 2 };

struct Device {
  utility::OSComponentType mType = utility::OSComponentType::kInvalid;
  Bus mBus = Bus::kOther;
  std::string mDirectory;       ///< in sysfs, resolved; tells devices apart and orders them, and stays here
  std::optional<DeviceId> mId;  ///< for PCI and USB devices
  std::string mName;
  std::string mDriver;            ///< the kernel's name of the driver that serves it; empty without one
  std::string mModule;            ///< the kernel module of that driver; a built-in driver has one as well
  std::string mNetworkInterface;  ///< the first interface of a network device
};

}  // namespace qelcore::host::components
