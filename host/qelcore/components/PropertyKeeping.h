// Properties of one run: fresh ones, or those that the last run kept.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "host/qelcore/components/Properties.h"
#include "host/qelcore/components/SavedProperties.h"
#include "platform/qelcore/Files.h"

namespace qelcore::host::components {

/// Where properties are kept between runs, and whether the run may take them from there.
struct PropertyKeeping {
  filesupport::Dir mDirectory;
  bool mExplicitRun = false;  ///< read the properties afresh whatever is kept
  std::int64_t mNow = 0;      ///< seconds since 1970
};

/// Keeping in the preferences directory, now. Nothing when properties are not asked for, and, logged, when
/// there is no preferences directory: they are then read and not kept.
[[nodiscard]] std::optional<PropertyKeeping> KeepInPreferences(bool explicitRun);

/// The kept properties, when the run may take them and they fit; else those that `read` gives, which are kept
/// from then on. Without `keeping` they are read and not kept. A failure to keep them or to take them is
/// logged and has no other effect.
[[nodiscard]] Properties TakeOrRead(const std::optional<PropertyKeeping>& keeping,
                                    const SystemIdentity& system, const std::function<Properties()>& read);

/// The bytes that the user may still write to the disk that a directory is on, or will be on once it is made.
/// Nothing when the system does not tell.
[[nodiscard]] std::optional<std::uint64_t> FreeBytes(const std::u16string& directory);

/// The function that failures are logged under.
inline constexpr std::string_view kLogContext = "qelcore::host::ReadThisMachine";

}  // namespace qelcore::host::components
