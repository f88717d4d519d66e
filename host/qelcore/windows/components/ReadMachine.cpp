#include "host/qelcore/windows/components/ReadMachine.h"

#include <memory>
#include <vector>

#include "host/qelcore/windows/components/Devices.h"
#include "host/qelcore/windows/components/Properties.h"

namespace qelcore::host::windows {

using utility::OSComponent;
using utility::OSComponentType;

utility::OSComponentRegistry::Components ReadMachine(
    const DeviceSource& source, const SystemFacts& facts, const PersonalNames& names,
    const std::optional<components::PropertyKeeping>& keeping) {
  const std::vector<Device> devices = ListDevices(source, names);
  utility::OSComponentRegistry::Components result;
  result.push_back(std::make_shared<OSComponent>(OSComponentType::kOS, "Windows", facts.mVersion));
  for (const Device& device : devices) {
    result.push_back(std::make_shared<OSComponent>(device.mType, device.mName, device.mVersion));
  }
  if (!OSComponent::SupportsProperties()) return result;

  const components::SystemIdentity identity{facts.mVersion.ToString(), {{"os.edition", EditionOf(facts)}}};
  const components::Properties properties =
      components::TakeOrRead(keeping, identity, [&] { return ReadProperties(facts, devices); });
  for (const auto& [name, value] : properties) {
    result.push_back(std::make_shared<OSComponent>(OSComponentType::kProperty, name,
                                                   utility::OSComponentVersion(), value));
  }
  return result;
}

}  // namespace qelcore::host::windows
