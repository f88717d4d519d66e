#include "host/qelcore/components/MachineReader.h"

#include <optional>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/components/PropertyKeeping.h"
#include "host/qelcore/linux/components/ReadMachine.h"
#include "host/qelcore/linux/components/Surroundings.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelcore::host {

utility::OSComponentRegistry::Components ReadThisMachine(bool explicitRun) {
  components::Surroundings surroundings = components::SurroundingsOfThisProcess();
  const std::optional<components::PropertyKeeping> keeping = components::KeepInPreferences(explicitRun);
  if (keeping) surroundings.mFreeBytes = components::FreeBytes(keeping->mDirectory.GetFullPath());
  return components::ReadMachine("/", surroundings, keeping);
}

utility::OSComponentRegistry::Components ReadThisMachineWithoutKeeping() {
  components::Surroundings surroundings = components::SurroundingsOfThisProcess();
  surroundings.mFreeBytes = components::FreeBytes(string::UTF8to16(GetDirectories().mPreferences));
  return components::ReadMachine("/", surroundings, std::nullopt);
}

void DeleteSavedProperties() {
  components::DeleteProperties(filesupport::Dir::PrefDir());
}

}  // namespace qelcore::host
