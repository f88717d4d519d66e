#include "host/qelcore/linux/components/ClassDevices.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Drivers.h"
#include "host/qelcore/linux/components/PciDevices.h"
#include "host/qelcore/linux/components/UsbDevices.h"

namespace qelcore::host::components {
namespace {

using utility::OSComponentType;

/// The device that stands behind an entry of a class.
struct Owner {
  Bus mBus = Bus::kOther;
  std::string mDirectory;
  std::string mUsbInterface;     ///< for a USB device: the interface on the way to it
  bool mIsBehindVirtio = false;  ///< the entry's own device is a virtio device whose transport this is
};

std::string ParentOf(const std::string& directory) {
  return directory.substr(0, directory.rfind('/'));
}

/// Whether a device of this bus is a part of its parent, so that the parent's name is the one people know.
bool IsPartOfParent(std::string_view bus) {
  return bus == "virtio" || bus == "platform" || bus == "auxiliary" || bus == "hdaudio" || bus == "soundwire";
}

/// Looks for the PCI or USB device that a class entry's device is a part of. Nothing for Bluetooth, and for
/// what is not in the tree of devices.
std::optional<Owner> FindOwner(const RootedFiles& files, const std::string& leaf) {
  constexpr std::string_view kTree = "sys/devices/";
  if (!leaf.starts_with(kTree)) return std::nullopt;
  Owner owner;
  for (std::string place = leaf; place.starts_with(kTree); place = ParentOf(place)) {
    const std::string bus = files.LinkName(place + "/subsystem");
    if (bus == "bluetooth") return std::nullopt;
    if (bus == "pci" || (bus == "usb" && files.Exists(place + "/idVendor"))) {
      owner.mBus = bus == "pci" ? Bus::kPci : Bus::kUsb;
      owner.mDirectory = place;
      return owner;
    }
    if (bus == "usb") {
      owner.mUsbInterface = place;
    } else if (!IsPartOfParent(bus)) {
      break;
    }
    owner.mIsBehindVirtio = owner.mIsBehindVirtio || bus == "virtio";
  }
  return Owner{Bus::kOther, leaf, {}, false};
}

std::string NounOf(OSComponentType type) {
  switch (type) {
    case OSComponentType::kVideo:
      return "display device";
    case OSComponentType::kAudio:
      return "audio device";
    default:
      return "network device";
  }
}

/// What the device tree calls the device: the most specific of its compatible texts, "brcm,bcm2711-hdmi0".
std::string CompatibleText(const RootedFiles& files, const std::string& directory) {
  constexpr std::string_view kKey = "OF_COMPATIBLE_0=";
  std::string text;
  ForEachLine(files.Read(directory + "/uevent").value_or(std::string()), [&](std::string_view line) {
    if (line.starts_with(kKey)) text = CleanText(line.substr(kKey.size()));
    return text.empty();
  });
  return text.empty() ? CleanText(files.Read(directory + "/of_node/compatible").value_or(std::string()))
                      : text;
}

/// The name of a device that no id list knows.
std::string NameOfOther(const RootedFiles& files, const Device& device) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kNamedBuses{
      {{"virtio", "Virtio"}, {"vmbus", "Hyper-V"}, {"xen", "Xen"}, {"thunderbolt", "Thunderbolt"}}};
  if (std::string compatible = CompatibleText(files, device.mDirectory); !compatible.empty())
    return compatible;
  const std::string bus = files.LinkName(device.mDirectory + "/subsystem");
  const std::string noun = NounOf(device.mType);
  for (const auto& [name, label] : kNamedBuses) {
    if (bus == name) return std::string(label) + " " + noun;
  }
  if (bus == "sdio") {
    const auto vendor = ParseHexadecimal(files.ReadLine(device.mDirectory + "/vendor"));
    const auto product = ParseHexadecimal(files.ReadLine(device.mDirectory + "/device"));
    if (vendor && product) {
      return "SDIO device " + FourHexadecimalDigits(*vendor) + ":" + FourHexadecimalDigits(*product);
    }
  }
  return device.mDriver.empty() ? "Unknown " + noun : device.mDriver;
}

std::optional<Device> ReadOwner(const RootedFiles& files, const Owner& owner, const std::string& leaf,
                                OSComponentType type) {
  switch (owner.mBus) {
    case Bus::kPci:
      return ReadPciDevice(files, owner.mDirectory, type);
    case Bus::kUsb:
      return ReadUsbDevice(files, owner.mDirectory,
                           owner.mUsbInterface.empty() ? owner.mDirectory : owner.mUsbInterface, type);
    case Bus::kOther:
      break;
  }
  Device device;
  device.mType = type;
  device.mDirectory = leaf;
  ReadDriver(files, leaf, device);
  device.mName = NameOfOther(files, device);
  return device;
}

void AddEntry(const RootedFiles& files, const std::string& entry, OSComponentType type,
              std::vector<Device>& devices) {
  const std::optional<std::string> leaf = files.Resolve(entry + "/device");
  if (!leaf) return;
  const std::optional<Owner> owner = FindOwner(files, *leaf);
  if (!owner) return;
  auto place = std::find_if(devices.begin(), devices.end(), [&](const Device& device) {
    return device.mType == type && device.mDirectory == owner->mDirectory;
  });
  if (place == devices.end()) {
    std::optional<Device> device = ReadOwner(files, *owner, *leaf, type);
    if (!device) return;
    place = devices.insert(devices.end(), std::move(*device));
  }
  // The transport's driver says nothing about the device; the one that serves it is bound to the virtio part.
  if (owner->mIsBehindVirtio) ReadDriver(files, *leaf, *place);
  if (type == OSComponentType::kNetwork && place->mNetworkInterface.empty()) {
    place->mNetworkInterface = entry.substr(entry.rfind('/') + 1);
  }
}

/// Whether the name is "card" and a number. The other names in these classes are connectors, render nodes and
/// the like of the same cards.
bool IsCard(std::string_view name) {
  return name.starts_with("card") && ParseDecimal(name.substr(4)).has_value();
}

}  // namespace

void AddClassDevices(const RootedFiles& files, std::vector<Device>& devices) {
  constexpr std::array<std::pair<std::string_view, OSComponentType>, 2> kCardClasses{
      {{"sys/class/drm", OSComponentType::kVideo}, {"sys/class/sound", OSComponentType::kAudio}}};
  for (const auto& [directory, type] : kCardClasses) {
    for (const std::string& name : files.List(directory)) {
      if (IsCard(name)) AddEntry(files, std::string(directory) + "/" + name, type, devices);
    }
  }
  for (const std::string& name : files.List("sys/class/net")) {
    AddEntry(files, "sys/class/net/" + name, OSComponentType::kNetwork, devices);
  }
}

}  // namespace qelcore::host::components
