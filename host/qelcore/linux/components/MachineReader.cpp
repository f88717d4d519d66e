#include "host/qelcore/MachineReader.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>

#include "host/qelcore/linux/components/ReadMachine.h"
#include "host/qelcore/linux/components/SavedProperties.h"
#include "host/qelcore/linux/components/Surroundings.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Trace.h"

namespace qelcore::host {
namespace {

using components::PropertyKeeping;

std::int64_t SecondsSince1970() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count();
}

std::optional<std::uint64_t> FreeBytes(const filesupport::Dir& directory) {
  std::error_code error;
  const std::filesystem::space_info space = std::filesystem::space(directory.GetFullPath(), error);
  return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
}

/// Where the properties are kept. Nothing when there is no preferences directory.
std::optional<PropertyKeeping> FindKeeping(bool explicitRun) {
  try {
    return PropertyKeeping{filesupport::Dir::PrefDir(), explicitRun, SecondsSince1970()};
  } catch (...) {
    LogException(std::current_exception(), components::kLogContext);
    return std::nullopt;
  }
}

}  // namespace

utility::OSComponentRegistry::Components ReadThisMachine(bool explicitRun) {
  components::Surroundings surroundings = components::SurroundingsOfThisProcess();
  std::optional<PropertyKeeping> keeping;
  if (utility::OSComponent::SupportsProperties()) {
    keeping = FindKeeping(explicitRun);
    if (keeping) surroundings.mFreeBytes = FreeBytes(keeping->mDirectory);
  }
  return components::ReadMachine("/", surroundings, keeping);
}

void DeleteSavedProperties() {
  components::DeleteProperties(filesupport::Dir::PrefDir());
}

}  // namespace qelcore::host
