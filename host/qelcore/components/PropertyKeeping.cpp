#include "host/qelcore/components/PropertyKeeping.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <system_error>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Trace.h"

namespace qelcore::host::components {
namespace {

std::int64_t SecondsSince1970() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count();
}

std::optional<Properties> TakeKept(const PropertyKeeping& keeping, const SystemIdentity& system) {
  if (keeping.mExplicitRun) return std::nullopt;
  try {
    return LoadProperties(keeping.mDirectory, system, keeping.mNow);
  } catch (...) {
    LogException(std::current_exception(), kLogContext);
    return std::nullopt;
  }
}

void Keep(const PropertyKeeping& keeping, const Properties& properties, const SystemIdentity& system) {
  try {
    SaveProperties(keeping.mDirectory, properties, system, keeping.mNow);
  } catch (...) {
    LogException(std::current_exception(), kLogContext);
  }
}

}  // namespace

std::optional<PropertyKeeping> KeepInPreferences(bool explicitRun) {
  if (!utility::OSComponent::SupportsProperties()) return std::nullopt;
  try {
    return PropertyKeeping{filesupport::Dir::PrefDir(), explicitRun, SecondsSince1970()};
  } catch (...) {
    LogException(std::current_exception(), kLogContext);
    return std::nullopt;
  }
}

Properties TakeOrRead(const std::optional<PropertyKeeping>& keeping, const SystemIdentity& system,
                      const std::function<Properties()>& read) {
  if (!keeping) return read();
  if (std::optional<Properties> kept = TakeKept(*keeping, system)) return *std::move(kept);
  Properties properties = read();
  Keep(*keeping, properties, system);
  return properties;
}

std::optional<std::uint64_t> FreeBytes(const std::u16string& directory) {
  std::filesystem::path place(directory);
  std::error_code error;
  while (!std::filesystem::exists(place, error) && place.has_relative_path()) {
    place = place.parent_path();
  }
  const std::filesystem::space_info space = std::filesystem::space(place, error);
  return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
}

}  // namespace qelcore::host::components
