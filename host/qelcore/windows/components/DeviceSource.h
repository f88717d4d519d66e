// The devices of a Windows machine as its registry describes them: on the running machine read through the
// system, in a replay of a recorded machine taken from the record.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qelcore::host::windows {

/// The setup classes whose devices are components.
enum class DeviceClass { kDisplay, kMedia, kNet };

/// One device that is present. Texts are UTF-8, and empty when the registry has none; what a text says is
/// nobody's promise.
struct DeviceRecord {
  /// "PCI\VEN_10DE&DEV_2484&SUBSYS_..\4&2283F625&0&0008". May hold a serial number: it orders devices, and
  /// its first part is the bus; it becomes no part of a component.
  std::string mInstance{};
  std::optional<std::uint32_t> mBusNumber{};   ///< orders devices, and stays here too
  std::optional<std::uint32_t> mBusAddress{};  ///< the same; for PCI the device's number and its function's
  std::string mFriendlyName{};
  std::string mDescription{};
  std::vector<std::string> mHardwareIds{};  ///< the most specific first
  std::string mService{};                   ///< of the kernel driver, such as "nvlddmkm"

  // Of the driver's own key.
  std::string mProvider{};
  std::string mDriverVersion{};                 ///< "31.0.15.3623"
  std::string mDriverDate{};                    ///< "6-8-2023": month, day, year
  std::optional<std::uint64_t> mMemoryBytes{};  ///< of a display device

  /// What keeps the device from working, 0 for nothing, after the system's list of problem codes.
  std::optional<std::uint32_t> mProblem{};
};

class DeviceSource {
 public:
  DeviceSource() = default;
  virtual ~DeviceSource() = default;
  DeviceSource(const DeviceSource&) = delete;
  DeviceSource& operator=(const DeviceSource&) = delete;

  /// The devices of a class, in any order; none when they cannot be read.
  [[nodiscard]] virtual std::vector<DeviceRecord> List(DeviceClass deviceClass) const = 0;
};

}  // namespace qelcore::host::windows
