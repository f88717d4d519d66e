#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {

Properties ReadProperties(const RootedFiles& files, const OperatingSystem& system,
                          const std::vector<Device>& devices, const Surroundings& surroundings) {
  Properties properties;
  AddSystemProperties(system, surroundings, properties);
  AddFirmwareProperties(files, properties);
  AddProcessorProperties(files, properties);
  AddGraphicsProperties(files, devices, properties);
  AddSessionProperties(surroundings, properties);
  return properties;
}

}  // namespace qelcore::host::components
