// Keeping what is written in the preferences directory.
#pragma once

#include <string>

namespace qelcore::host {

/// Refuses to make or change what a path names when the path is written as a place below the preferences
/// directory but one of the directories between the two is a symbolic link that leads out of it. Throws
/// `std::system_error` then, and when the system does not tell. The preferences directory may itself be
/// reached through links: its user chose it. `path` is UTF-8. The file's own name is not looked at.
void RefuseWayOutOfPreferences(const std::string& path);

/// Whether the path is written as a place in the preferences directory, at any depth. Does not throw.
[[nodiscard]] bool IsInPreferences(const std::string& path);

}  // namespace qelcore::host
