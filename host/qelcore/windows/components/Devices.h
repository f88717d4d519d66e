// The devices of a Windows machine that are components.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/qelcore/components/PIISafeName.h"
#include "host/qelcore/windows/components/DeviceSource.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::windows {

/// The numbers that the makers of PCI and USB devices give them.
struct DeviceId {
  std::uint32_t mVendor = 0;
  std::uint32_t mDevice = 0;
};

/// A device, before it becomes a component.
struct Device {
  utility::OSComponentType mType = utility::OSComponentType::kInvalid;
  std::string mName;  ///< without what tells who somebody is
  utility::OSComponentVersion mVersion;
  std::optional<DeviceId> mId;
  std::string mService;
  std::string mProvider;
  std::string mDriverDate;  ///< ISO; empty when it has another form
  std::optional<std::uint64_t> mMemoryBytes;
  std::optional<std::uint32_t> mProblem;
};

/// The video, audio and network devices, ordered by kind, then bus (PCI, USB, others), then place.
[[nodiscard]] std::vector<Device> ListDevices(const DeviceSource& source, const PersonalNames& names);

}  // namespace qelcore::host::windows
