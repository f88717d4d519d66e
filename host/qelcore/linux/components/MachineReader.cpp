#include "host/qelcore/components/MachineReader.h"

#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/linux/components/ReadMachine.h"
#include "host/qelcore/linux/components/SavedProperties.h"
#include "host/qelcore/linux/components/Surroundings.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Trace.h"

namespace qelcore::host {
namespace {

std::int64_t SecondsSince1970() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count();
}

/// On the file system that a directory is on, or will be on once it is made.
std::optional<std::uint64_t> FreeBytes(std::filesystem::path directory) {
  std::error_code error;
  while (!std::filesystem::exists(directory, error) && directory.has_relative_path()) {
    directory = directory.parent_path();
  }
  const std::filesystem::space_info space = std::filesystem::space(directory, error);
  return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
}

}  // namespace

utility::OSComponentRegistry::Components ReadThisMachine(bool explicitRun) {
  components::Surroundings surroundings = components::SurroundingsOfThisProcess();
  std::optional<components::PropertyKeeping> keeping;
  if (utility::OSComponent::SupportsProperties()) {
    try {
      const filesupport::Dir preferences = filesupport::Dir::PrefDir();
      keeping = components::PropertyKeeping{preferences, explicitRun, SecondsSince1970()};
      surroundings.mFreeBytes = FreeBytes(preferences.GetFullPath());
    } catch (...) {
      // Without a preferences directory the properties are read and not kept.
      LogException(std::current_exception(), components::kLogContext);
    }
  }
  return components::ReadMachine("/", surroundings, keeping);
}

utility::OSComponentRegistry::Components ReadThisMachineWithoutKeeping() {
  components::Surroundings surroundings = components::SurroundingsOfThisProcess();
  surroundings.mFreeBytes = FreeBytes(GetDirectories().mPreferences);
  return components::ReadMachine("/", surroundings, std::nullopt);
}

void DeleteSavedProperties() {
  components::DeleteProperties(filesupport::Dir::PrefDir());
}

}  // namespace qelcore::host
