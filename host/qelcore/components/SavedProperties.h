// The properties as the last enumeration saved them in the preferences directory.
//
// A launch takes the saved properties instead of fresh ones. The registry's hash decides whether anything
// changed since the last run, and values such as the free space change by the minute; and a launch must be
// quick. The file is `SystemProperties.json`: an object with a text for each property, and with "saved_at"
// (seconds since 1970) and "kernel_release".
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/qelcore/components/Properties.h"
#include "platform/qelcore/Files.h"

namespace qelcore::host::components {

/// What tells whether saved properties are of the running system.
struct SystemIdentity {
  std::string mKernelRelease;  ///< the release of the system's kernel, whole
  Properties mProperties;  ///< properties that are the same as long as the system is; "" for a missing one
};

/// The saved properties when they are of this system, not older than 24 hours at `now`, and not from the
/// future. `now` is in seconds since 1970. Nothing when there are none or they are not fit. Throws when the
/// file cannot be read or is not what was saved.
[[nodiscard]] std::optional<Properties> LoadProperties(const filesupport::Dir& directory,
                                                       const SystemIdentity& system, std::int64_t now);

/// Replaces the saved properties. Throws when that fails; the file is then as it was.
void SaveProperties(const filesupport::Dir& directory, const Properties& properties,
                    const SystemIdentity& system, std::int64_t now);

/// Deletes the saved properties, if any. Throws when they cannot be deleted.
void DeleteProperties(const filesupport::Dir& directory);

}  // namespace qelcore::host::components
