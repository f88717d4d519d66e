// Errors of calls on files.
#pragma once

#include <string>
#include <system_error>

namespace qelcore::host {

/// The category of the system's error codes. Its messages are English and the same as on other systems where
/// they mean the same; the codes compare with `std::errc`.
[[nodiscard]] const std::error_category& SystemErrors() noexcept;

/// Throws the `std::system_error` of a code that `GetLastError` gave. The message is the path and the reason.
[[noreturn]] void ThrowFileError(unsigned long code, const std::string& path);

/// The same for a file that could not be opened or made: where the system merely denies access to a
/// directory, or does not find a path that goes through a file, the error says so.
[[noreturn]] void ThrowOpenError(unsigned long code, const std::string& path);

/// Throws the `std::system_error` of a path that names no regular file where only that will do.
[[noreturn]] void ThrowNotRegular(const std::string& path);

/// Whether the code says that nothing has the name.
[[nodiscard]] bool SaysAbsent(unsigned long code) noexcept;

}  // namespace qelcore::host
