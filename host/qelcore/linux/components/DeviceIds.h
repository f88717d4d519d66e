// Names of vendors and devices from the id lists that distributions install (`pci.ids`, `usb.ids`).
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/linux/components/RootedFiles.h"

namespace qelcore::host::components {

struct DeviceId {
  std::uint32_t mVendor = 0;
  std::uint32_t mDevice = 0;

  friend bool operator==(const DeviceId&, const DeviceId&) = default;
};

/// One id list. It is read when the first name is asked for, and only the vendors that are asked for are
/// looked at. For one thread.
class DeviceIds {
 public:
  /// `places` are where the list may be, the first one that exists is taken; `bus` stands in the names of
  /// what the list does not know. `files` must live as long as this object.
  DeviceIds(const RootedFiles& files, std::vector<std::string> places, std::string bus);

  /// "Intel Corporation Wireless 7265" for a known device, "Intel Corporation Device 7265" for an unknown one
  /// of a known vendor, else "PCI device 8086:7265" or the like.
  [[nodiscard]] std::string Name(const DeviceId& id);

  [[nodiscard]] static DeviceIds ForPci(const RootedFiles& files);
  [[nodiscard]] static DeviceIds ForUsb(const RootedFiles& files);

 private:
  /// A vendor's part of the list, as places in the text.
  struct Section {
    std::size_t mBegin = 0;
    std::size_t mEnd = 0;
    std::string mVendorName;
  };

  const std::string& Text();
  const Section& SectionOf(std::uint32_t vendor);

  const RootedFiles& mFiles;
  std::vector<std::string> mPlaces;
  std::string mBus;
  std::optional<std::string> mText;
  std::map<std::uint32_t, Section> mSections;
};

}  // namespace qelcore::host::components
