// What the host knows about the application: its directories and its version.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qelcore::host {

// ---- Directories
// ------------------------------------------------------------------------------------------- Absolute UTF-8
// paths: what `SetDirectories` gave, else the system's usual place. Nothing is created. Any thread may call.

[[nodiscard]] std::string PreferencesDirectory();
[[nodiscard]] std::string ApplicationDirectory();
[[nodiscard]] std::string DocumentsDirectory();
[[nodiscard]] std::string StateDirectory();

struct ApplicationVersion {
  std::int32_t mMajor = 0;
  std::int32_t mMinor = 0;
};

/// What `SetApplicationVersion` gave.
[[nodiscard]] std::optional<ApplicationVersion> GetApplicationVersion();

}  // namespace qelcore::host
