#include "host/qelcore/linux/components/PciDevices.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Drivers.h"

namespace qelcore::host::components {
namespace {

using utility::OSComponentType;

/// The kind that belongs to a class code: 24 bits, of which the upper 8 are the class and the next 8 the
/// subclass.
OSComponentType TypeOfClass(std::uint32_t classCode) {
  constexpr std::uint32_t kMultimediaAudio = 0x0401;
  constexpr std::uint32_t kHighDefinitionAudio = 0x0403;
  switch (classCode >> 16) {
    case 0x02:
      return OSComponentType::kNetwork;
    case 0x03:
      return OSComponentType::kVideo;
    default:
      break;
  }
  const std::uint32_t subclass = classCode >> 8;
  const bool isAudio = subclass == kMultimediaAudio || subclass == kHighDefinitionAudio;
  return isAudio ? OSComponentType::kAudio : OSComponentType::kInvalid;
}

std::array<std::uint32_t, 4> ParseAddress(std::string_view address) {
  std::array<std::uint32_t, 4> parts{};
  for (std::uint32_t& part : parts) {
    const std::size_t end = address.find_first_of(":.");
    part = ParseHexadecimal(address.substr(0, end)).value_or(0);
    address = end == std::string_view::npos ? std::string_view() : address.substr(end + 1);
  }
  return parts;
}

}  // namespace

std::vector<Device> ListPciDevices(const RootedFiles& files) {
  const std::string bus = "sys/bus/pci/devices";
  std::vector<Device> devices;
  for (const std::string& address : files.List(bus)) {
    const std::optional<std::string> directory = files.Resolve(bus + "/" + address);
    if (!directory) continue;
    const auto classCode = ParseHexadecimal(files.ReadLine(*directory + "/class"));
    const OSComponentType type = classCode ? TypeOfClass(*classCode) : OSComponentType::kInvalid;
    if (type == OSComponentType::kInvalid) continue;
    if (auto device = ReadPciDevice(files, *directory, type)) devices.push_back(std::move(*device));
  }
  return devices;
}

std::optional<Device> ReadPciDevice(const RootedFiles& files, const std::string& directory,
                                    utility::OSComponentType type) {
  const auto vendor = ParseHexadecimal(files.ReadLine(directory + "/vendor"));
  const auto product = ParseHexadecimal(files.ReadLine(directory + "/device"));
  if (!vendor || !product) return std::nullopt;
  Device device;
  device.mType = type;
  device.mBus = Bus::kPci;
  device.mDirectory = directory;
  device.mId = DeviceId{*vendor, *product};
  ReadDriver(files, directory, device);
  return device;
}

bool PciAddressLess(std::string_view left, std::string_view right) {
  const auto leftParts = ParseAddress(left);
  const auto rightParts = ParseAddress(right);
  return leftParts != rightParts ? leftParts < rightParts : left < right;
}

}  // namespace qelcore::host::components
