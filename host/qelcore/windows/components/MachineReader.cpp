#include "host/qelcore/components/MachineReader.h"

#include <optional>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/System.h"
#include "host/qelcore/components/PropertyKeeping.h"
#include "host/qelcore/windows/components/ReadMachine.h"
#include "host/qelcore/windows/components/SetupDevices.h"
#include "host/qelcore/windows/components/SystemFacts.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelcore::host {

utility::OSComponentRegistry::Components ReadThisMachine(bool explicitRun) {
  windows::SystemFacts facts = windows::ReadSystemFacts();
  const std::optional<components::PropertyKeeping> keeping = components::KeepInPreferences(explicitRun);
  if (keeping) facts.mFreeBytes = components::FreeBytes(keeping->mDirectory.GetFullPath());
  return windows::ReadMachine(windows::SetupDevices(), facts, ReadPersonalNames(), keeping);
}

utility::OSComponentRegistry::Components ReadThisMachineWithoutKeeping() {
  windows::SystemFacts facts = windows::ReadSystemFacts();
  facts.mFreeBytes = components::FreeBytes(string::UTF8to16(GetDirectories().mPreferences));
  return windows::ReadMachine(windows::SetupDevices(), facts, ReadPersonalNames(), std::nullopt);
}

void DeleteSavedProperties() {
  components::DeleteProperties(filesupport::Dir::PrefDir());
}

}  // namespace qelcore::host
