#include "host/qelcore/linux/components/ReadMachine.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "host/qelcore/linux/components/Devices.h"
#include "host/qelcore/linux/components/Mesa.h"
#include "host/qelcore/linux/components/OperatingSystem.h"
#include "host/qelcore/linux/components/Properties.h"
#include "host/qelcore/linux/components/RootedFiles.h"
#include "host/qelcore/linux/components/SavedProperties.h"
#include "platform/qelcore/Trace.h"

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

std::optional<Properties> TakeKept(const std::optional<PropertyKeeping>& keeping,
                                   const OperatingSystem& system) {
  if (!keeping || keeping->mExplicitRun) return std::nullopt;
  try {
    return LoadProperties(keeping->mDirectory, system, keeping->mNow);
  } catch (...) {
    LogException(std::current_exception(), kLogContext);
    return std::nullopt;
  }
}

void Keep(const std::optional<PropertyKeeping>& keeping, const Properties& properties,
          const OperatingSystem& system) {
  if (!keeping) return;
  try {
    SaveProperties(keeping->mDirectory, properties, system, keeping->mNow);
  } catch (...) {
    LogException(std::current_exception(), kLogContext);
  }
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

  std::optional<Properties> properties = TakeKept(keeping, system);
  if (!properties) {
    properties = ReadProperties(files, system, devices, surroundings);
    Keep(keeping, *properties, system);
  }
  for (const auto& [name, value] : *properties)
    Add(components, {OSComponentType::kProperty, name, {}, value});
  return components;
}

}  // namespace qelcore::host::components
