#include "host/qelcore/linux/components/ReadMachine.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "host/qelcore/linux/components/Devices.h"
#include "host/qelcore/linux/components/Mesa.h"
#include "host/qelcore/linux/components/OperatingSystem.h"
#include "host/qelcore/linux/components/Properties.h"
#include "host/qelcore/linux/components/RootedFiles.h"

namespace qelcore::host::components {
namespace {

using utility::OSComponent;
using utility::OSComponentType;
using Components = utility::OSComponentRegistry::Components;

void Add(Components& components, OSComponent component) {
  components.push_back(std::make_shared<OSComponent>(std::move(component)));
}

void AddDevices(const RootedFiles& files, const std::vector<Device>& devices, const OperatingSystem& system,
                const Surroundings& surroundings, Components& components) {
  const auto add = [&](const Device& device) {
    Add(components, {device.mType, device.mName,
                     DriverVersion(files, device, system.mKernelVersion, surroundings.mAskNetworkDriver)});
  };
  const auto endOfVideo = std::find_if(devices.begin(), devices.end(), [](const Device& device) {
    return device.mType != OSComponentType::kVideo;
  });
  std::for_each(devices.begin(), endOfVideo, add);
  if (endOfVideo != devices.begin()) {
    if (const auto mesa = MesaVersion(files)) Add(components, {OSComponentType::kVideo, "Mesa", mesa});
  }
  std::for_each(endOfVideo, devices.end(), add);
}

}  // namespace

Components ReadMachine(const std::filesystem::path& root, const Surroundings& surroundings,
                       const std::optional<PropertyKeeping>& keeping) {
  const RootedFiles files(root);
  const OperatingSystem system = ReadOperatingSystem(files);
  const std::vector<Device> devices = ListDevices(files);

  Components components;
  for (OSComponent& component : ComponentsOf(system)) Add(components, std::move(component));
  AddDevices(files, devices, system, surroundings, components);
  if (!OSComponent::SupportsProperties()) return components;

  const SystemIdentity identity{system.mKernelRelease, {{"os.distribution", system.mDistributionTitle}}};
  const Properties properties =
      TakeOrRead(keeping, identity, [&] { return ReadProperties(files, system, devices, surroundings); });
  for (const auto& [name, value] : properties) Add(components, {OSComponentType::kProperty, name, {}, value});
  return components;
}

}  // namespace qelcore::host::components
