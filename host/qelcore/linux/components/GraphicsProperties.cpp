// Properties of the display devices.
#include <cstddef>
#include <string>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Drivers.h"
#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {

void AddGraphicsProperties(const RootedFiles& files, const std::vector<Device>& devices,
                           Properties& properties) {
  std::size_t count = 0;
  std::string identifiers;
  for (const Device& device : devices) {
    if (device.mType != utility::OSComponentType::kVideo) continue;
    const std::string start = "gpu." + std::to_string(count++) + ".";
    AddProperty(properties, start + "kernel_driver", device.mDriver);
    if (!device.mId) continue;
    const std::string vendor = FourHexadecimalDigits(device.mId->mVendor);
    const std::string product = FourHexadecimalDigits(device.mId->mDevice);
    AddProperty(properties, start + "vendor_id", "0x" + vendor);
    AddProperty(properties, start + "device_id", "0x" + product);
    identifiers += (identifiers.empty() ? "" : " ") + vendor + ":" + product;
  }
  AddProperty(properties, "gpu.count", std::to_string(count));
  AddProperty(properties, "gpu.device_ids", identifiers);
  AddProperty(properties, "gpu.nvidia_module", ModuleVersion(files, "nvidia"));
}

}  // namespace qelcore::host::components
