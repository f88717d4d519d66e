// Operations on files and directories by path. One implementation for each system; names avoid those that
// system headers define as macros.
#pragma once

#include <string>

namespace qelcore::host {

// Paths are UTF-8. Operations that fail throw `std::system_error`, whose message is the path and the reason.

/// Whether the path names a directory. Does not throw.
[[nodiscard]] bool IsDirectory(const std::string& path);

/// Whether the path names anything but a directory. Does not throw.
[[nodiscard]] bool IsFile(const std::string& path);

/// Whether the path names a regular file, so that reading it neither waits nor goes on for ever. Does not
/// throw.
[[nodiscard]] bool IsRegularFile(const std::string& path);

/// Whether there is a regular file to read. False when nothing has that name. Throws when something else has
/// it, and when the system does not tell.
[[nodiscard]] bool HasRegularFile(const std::string& path);

/// Whether the path names a symbolic link, wherever it leads. Does not throw.
[[nodiscard]] bool IsSymbolicLink(const std::string& path);

/// Deletes a file; a missing one is fine.
void RemoveFile(const std::string& path);

/// Who may use a directory that is made.
enum class DirectoryAccess { kUsual, kOwnerOnly };

/// Makes the directory and every missing one above it; an existing directory is fine.
void MakeDirectories(const std::string& path, DirectoryAccess access);

/// Puts the file `from` in the place of `to`, in one step, and makes that last. The errors name `to`.
void MoveInPlace(const std::string& from, const std::string& to);

/// The path to replace when somebody saves to `path`: `path` itself, or, when it is a symbolic link, what the
/// link leads to as long as that stays in the same directory. An empty path is an error.
[[nodiscard]] std::string ResolveSaveTarget(const std::string& path);

}  // namespace qelcore::host
