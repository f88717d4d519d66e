// Errors of calls on files.
#pragma once

#include <string>

namespace qelcore::host {

/// Throws the `std::system_error` of the number that a system call left in `errno`.
[[noreturn]] void ThrowFileError(int number, const std::string& path);

/// Throws the `std::system_error` of a path that names no regular file where only that will do.
[[noreturn]] void ThrowNotRegular(const std::string& path);

/// Throws when the path cannot be handed to the system, which would read it up to its first null character.
void CheckPath(const std::string& path);

}  // namespace qelcore::host
