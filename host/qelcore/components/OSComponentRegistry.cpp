#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/components/MachineReader.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

using utility::OSComponent;
using utility::OSComponentRegistry;

/// Where registries come from, and the last one that was read.
struct Source {
  std::mutex mMutex;
  host::ComponentSource mReplacement;
  std::shared_ptr<const OSComponentRegistry> mSnapshot;
  bool mSnapshotHasProperties = false;
};

Source& TheSource() {
  // Never destroyed, because other libraries' static objects may still call while the process ends.
  static Source& source = *new Source;
  return source;
}

std::shared_ptr<const OSComponentRegistry> ReadRegistry(bool explicitRun) {
  Source& source = TheSource();
  const bool hasProperties = OSComponent::SupportsProperties();
  host::ComponentSource replacement;
  {
    const std::lock_guard lock(source.mMutex);
    replacement = source.mReplacement;
    // A snapshot from before the properties were switched on lacks what rules now ask for.
    if (!replacement && !explicitRun && source.mSnapshotHasProperties == hasProperties && source.mSnapshot) {
      return source.mSnapshot;
    }
  }
  if (replacement) {
    return replacement(explicitRun);
  }
  auto registry = std::make_shared<const OSComponentRegistry>(host::ReadThisMachine(explicitRun));
  const std::lock_guard lock(source.mMutex);
  source.mSnapshot = registry;
  source.mSnapshotHasProperties = hasProperties;
  return registry;
}

}  // namespace

namespace host {

std::shared_ptr<const OSComponentRegistry> ReadMachineWithoutKeeping() {
  try {
    Source& source = TheSource();
    ComponentSource replacement;
    {
      const std::lock_guard lock(source.mMutex);
      replacement = source.mReplacement;
    }
    return replacement ? replacement(true)
                       : std::make_shared<const OSComponentRegistry>(ReadThisMachineWithoutKeeping());
  } catch (...) {
    LogException(std::current_exception(), "qelcore::host::ReadMachineWithoutKeeping");
    return nullptr;
  }
}

void SetComponentSource(ComponentSource source) {
  Source& current = TheSource();
  const std::lock_guard lock(current.mMutex);
  current.mReplacement = std::move(source);
}

}  // namespace host

namespace utility {

OSComponentRegistry::OSComponentRegistry(Components components) : mAll(std::move(components)) {
  std::erase(mAll, nullptr);
  for (const std::shared_ptr<OSComponent>& component : mAll) {
    const auto index = static_cast<std::int32_t>(component->GetType());
    if (index >= 0 && index < kOSComponentTypeCount) {
      mByType[static_cast<std::size_t>(index)].push_back(component);
    }
  }
}

std::shared_ptr<const OSComponentRegistry> OSComponentRegistry::Get(bool explicitRun) {
  try {
    return ReadRegistry(explicitRun);
  } catch (...) {
    LogException(std::current_exception(), "qelcore::utility::OSComponentRegistry::Get");
    return nullptr;
  }
}

const OSComponentRegistry::Components& OSComponentRegistry::GetComponentsOfType(OSComponentType type) const {
  static const Components none;
  const auto index = static_cast<std::int32_t>(type);
  return index >= 0 && index < kOSComponentTypeCount ? mByType[static_cast<std::size_t>(index)] : none;
}

Guid OSComponentRegistry::Hash() const {
  MixHashGuidT<HashValueMixerState> state;
  for (const std::shared_ptr<OSComponent>& component : mAll) {
    Guid componentHash;
    GetHashResult(component->Hash(), componentHash);
    UpdateHashState(state, componentHash.Bytes().data(), componentHash.Bytes().size());
  }
  Guid result;
  GetHashResult(state, result);
  return result;
}

void OSComponentRegistry::DeletePropertiesFromPrefsDir() {
  try {
    host::DeleteSavedProperties();
  } catch (...) {
    LogException(std::current_exception(),
                 "qelcore::utility::OSComponentRegistry::DeletePropertiesFromPrefsDir");
  }
}

void OSComponentRegistry::LogToAnalytics() const {
  constexpr std::string_view kChannel = "OSComponentRegistry";
  constexpr int kDetail = 6;
  if (!TraceEnabled(kChannel, kDetail)) {
    return;
  }
  std::string text = std::to_string(mAll.size()) + " components:";
  for (std::int32_t index = 0; index < kOSComponentTypeCount; ++index) {
    text += index == 0 ? " " : ", ";
    text += ComponentTypeToString(static_cast<OSComponentType>(index)) + ' ' +
            std::to_string(mByType[static_cast<std::size_t>(index)].size());
  }
  TraceOutput(kChannel, kDetail, text);
}

}  // namespace utility
}  // namespace qelcore
