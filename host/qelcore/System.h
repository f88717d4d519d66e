// What each system does in its own way: the usual places, the people and names, versions of files. One
// implementation for each system, in the folder of its name.
#pragma once

#include <string>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/components/PIISafeName.h"

namespace qelcore::host {

/// Whether `ReadThisMachine` knows properties on this system.
#if defined(__linux__) || defined(_WIN32)
inline constexpr bool kSystemHasProperties = true;
#else
inline constexpr bool kSystemHasProperties = false;
#endif

// ---- Usual places
// ------------------------------------------------------------------------------------------ Absolute UTF-8
// paths. Nothing is created. Where a place cannot be told, the path is one that cannot exist, so that using
// it fails with an error that names it.

[[nodiscard]] std::string UsualPreferencesDirectory();
[[nodiscard]] std::string UsualApplicationDirectory();
[[nodiscard]] std::string UsualDocumentsDirectory();
[[nodiscard]] std::string UsualStateDirectory();

// ---- Environment ------------------------------------------------------------------------------------------

/// The environment's language, such as "de_DE"; empty when it has none.
[[nodiscard]] std::string EnvironmentLanguage();

/// The names that tell who uses this machine. What cannot be read stays empty.
[[nodiscard]] PersonalNames ReadPersonalNames();

/// `FileUtils::ConvertEnvPath` on this system.
[[nodiscard]] int ExpandEnvironment(std::string& path);

/// Hands an address to the system's browser. Returns whether it was taken; throws `std::system_error` when
/// there is no way to.
[[nodiscard]] bool OpenInSystemBrowser(const std::string& url);

// ---- Files ------------------------------------------------------------------------------------------------

/// The version that this system gives to a file of its own kind, from the file's path alone and a look at its
/// beginning; empty when the file is of another kind or cannot be read.
[[nodiscard]] std::string NativeFileVersion(const std::string& path);

}  // namespace qelcore::host
