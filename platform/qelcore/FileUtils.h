// Paths and versions of files on disk, as file rules need them.
#pragma once

#include <string>

#include "platform/qelcore/Export.h"

namespace qelcore::utility::FileUtils {

/// Expands environment placeholders inside a UTF-8 path, in place: on Linux `$NAME` and `${NAME}`, and `~` at
/// the beginning followed by a slash or the end; on Windows `%NAME%`, and `%%` for a percent sign. Returns 0,
/// or an error code when a name is not set or a placeholder is not closed; the path is then unchanged. Does
/// not throw. A host may refuse more: file rules come from elsewhere, and asking for a path on the network
/// makes the machine call whom the list names, and tell him what a placeholder stands for. The reference host
/// refuses such paths on Windows: "\\\\server\\share", drives that stand for them, and devices.
[[nodiscard]] QELCORE_EXPORT int ConvertEnvPath(std::string& path);

/// The version of the file at a UTF-8 path as dotted text, or an empty text when there is none. On Windows,
/// and for Windows programs and libraries found on Linux, the file version of the version resource; for a
/// Linux shared library the number at the end of its real name: "libGL.so.1" that leads to "libGL.so.1.7.0"
/// has 1.7.0. A directory has none. Does not throw.
[[nodiscard]] QELCORE_EXPORT std::string GetFileVersion(const std::string& path);

}  // namespace qelcore::utility::FileUtils
