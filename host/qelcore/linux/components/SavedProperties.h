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

#include "host/qelcore/linux/components/OperatingSystem.h"
#include "host/qelcore/linux/components/Properties.h"
#include "platform/qelcore/Files.h"

namespace qelcore::host::components {

/// The saved properties when they are of this system (the same kernel release and distribution), not older
/// than 24 hours at `now`, and not from the future. `now` is in seconds since 1970. Nothing when there are
/// none or they are not fit. Throws when the file cannot be read or is not what was saved.
[[nodiscard]] std::optional<Properties> LoadProperties(const filesupport::Dir& directory,
                                                       const OperatingSystem& system, std::int64_t now);

/// Replaces the saved properties. Throws when that fails; the file is then as it was.
void SaveProperties(const filesupport::Dir& directory, const Properties& properties,
                    const OperatingSystem& system, std::int64_t now);

/// Deletes the saved properties, if any. Throws when they cannot be deleted.
void DeleteProperties(const filesupport::Dir& directory);

}  // namespace qelcore::host::components
