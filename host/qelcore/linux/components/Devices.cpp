#include "host/qelcore/linux/components/Devices.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/ClassDevices.h"
#include "host/qelcore/linux/components/PciDevices.h"
#include "host/qelcore/linux/components/UsbDevices.h"

namespace qelcore::host::components {
namespace {

std::string_view LastName(std::string_view directory) {
  return directory.substr(directory.rfind('/') + 1);
}

bool StandsBefore(const Device& left, const Device& right) {
  if (left.mType != right.mType) return left.mType < right.mType;
  if (left.mBus != right.mBus) return left.mBus < right.mBus;
  switch (left.mBus) {
    case Bus::kPci:
      return PciAddressLess(LastName(left.mDirectory), LastName(right.mDirectory));
    case Bus::kUsb:
      return NaturalLess(LastName(left.mDirectory), LastName(right.mDirectory));
    case Bus::kOther:
      break;
  }
  // The numbers of cards and interfaces depend on which driver was loaded first; the place in sysfs does not.
  return NaturalLess(left.mDirectory, right.mDirectory);
}

}  // namespace

std::vector<Device> ListDevices(const RootedFiles& files) {
  std::vector<Device> devices = ListPciDevices(files);
  std::vector<Device> usbDevices = ListUsbAudioDevices(files);
  std::move(usbDevices.begin(), usbDevices.end(), std::back_inserter(devices));
  AddClassDevices(files, devices);
  std::stable_sort(devices.begin(), devices.end(), StandsBefore);

  DeviceIds pciIds = DeviceIds::ForPci(files);
  DeviceIds usbIds = DeviceIds::ForUsb(files);
  for (Device& device : devices) {
    if (device.mId) device.mName = (device.mBus == Bus::kPci ? pciIds : usbIds).Name(*device.mId);
  }
  return devices;
}

}  // namespace qelcore::host::components
