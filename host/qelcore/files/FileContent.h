// Reading a file whole, within bounds.
#pragma once

#include <cstddef>
#include <string>

#include "host/qelcore/files/FileHandle.h"
#include "platform/qelcore/Export.h"

namespace qelcore::host {

/// The most that is read of any file: 64 MiB, the longest text that is parsed and the usual limit of a
/// download. What never ends would otherwise take all memory.
inline constexpr std::size_t kLargestContent = 67'108'864;

// Paths are UTF-8. What fails throws `std::system_error`, whose message is the path and the reason; more than
// `largestSize` bytes are `std::errc::file_too_large`, and no more than that and one are read.

/// Everything from the current place of the open file to its end. `path` is for the message.
[[nodiscard]] std::string ReadToEnd(FileHandle& file, const std::string& path, std::size_t largestSize);

/// Everything in the file at `path`; `FileHandle::OpenForReading` says which files can be read.
[[nodiscard]] QELCORE_EXPORT std::string ReadContent(const std::string& path, std::size_t largestSize);

}  // namespace qelcore::host
