#include "host/qelcore/linux/components/UsbDevices.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Drivers.h"

namespace qelcore::host::components {
namespace {

constexpr std::uint32_t kAudioInterface = 0x01;

}  // namespace

std::vector<Device> ListUsbAudioDevices(const RootedFiles& files) {
  const std::string bus = "sys/bus/usb/devices";
  std::vector<Device> devices;
  for (const std::string& name : files.List(bus)) {
    // Interfaces are named after their device: "1-2:1.0" belongs to "1-2".
    const std::size_t colon = name.find(':');
    if (colon == std::string::npos) continue;
    const std::string interfaceDirectory = bus + "/" + name;
    if (ParseHexadecimal(files.ReadLine(interfaceDirectory + "/bInterfaceClass")) != kAudioInterface)
      continue;
    const auto directory = files.Resolve(bus + "/" + name.substr(0, colon));
    if (!directory) continue;
    const bool isKnown = std::any_of(devices.begin(), devices.end(),
                                     [&](const Device& device) { return device.mDirectory == *directory; });
    if (isKnown) continue;
    auto device = ReadUsbDevice(files, *directory, interfaceDirectory, utility::OSComponentType::kAudio);
    if (device) devices.push_back(std::move(*device));
  }
  return devices;
}

std::optional<Device> ReadUsbDevice(const RootedFiles& files, const std::string& directory,
                                    const std::string& interfaceDirectory, utility::OSComponentType type) {
  const auto vendor = ParseHexadecimal(files.ReadLine(directory + "/idVendor"));
  const auto product = ParseHexadecimal(files.ReadLine(directory + "/idProduct"));
  if (!vendor || !product) return std::nullopt;
  Device device;
  device.mType = type;
  device.mBus = Bus::kUsb;
  device.mDirectory = directory;
  device.mId = DeviceId{*vendor, *product};
  ReadDriver(files, interfaceDirectory, device);
  return device;
}

}  // namespace qelcore::host::components
