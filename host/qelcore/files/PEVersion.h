// The version of a Windows program or library, read from the file itself on every system.
#pragma once

#include <istream>
#include <string>

namespace qelcore::host {

/// The file version of the version resource as dotted text of four numbers, such as "10.0.19041.1"; empty
/// when the stream holds no Windows program, or one without a version. Reads nothing outside the file, and
/// only the few kilobytes that lead to the resource, whatever the file claims. Does not throw unless the
/// stream does.
[[nodiscard]] std::string ReadPEFileVersion(std::istream& stream);

}  // namespace qelcore::host
