#include "host/qelcore/linux/components/Properties.h"

#include <utility>

#include "host/qelcore/linux/components/PlainText.h"

namespace qelcore::host::components {

void AddProperty(Properties& properties, std::string_view name, std::string_view value) {
  std::string text = CleanText(value);
  if (!text.empty()) properties.insert_or_assign(std::string(name), std::move(text));
}

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
