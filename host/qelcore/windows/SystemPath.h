// Paths as the system takes them.
#pragma once

#include <optional>
#include <string>

namespace qelcore::host {

/// The UTF-8 path as an absolute one for the system, fit for any length: a long one gets the mark that lifts
/// the old limit of 260 characters. Throws `std::system_error` when the path is empty, not UTF-8, or holds a
/// null character.
[[nodiscard]] std::wstring SystemPath(const std::string& path);

/// The same; nothing where `SystemPath` throws.
[[nodiscard]] std::optional<std::wstring> TrySystemPath(const std::string& path);

/// Whether a path that `SystemPath` gave names a device or a pipe, such as "NUL", "COM1" and
/// "\\server\pipe\name". To open one may have an effect or wait, so that the name must be enough.
[[nodiscard]] bool NamesDevice(const std::wstring& path);

/// Whether asking for a UTF-8 path could call another machine: "\\server\share", a drive that stands for such
/// a place, and what names no drive behind "\\?\" or "\\.\". Asks nobody.
[[nodiscard]] bool LiesOnNetwork(const std::string& path);

}  // namespace qelcore::host
