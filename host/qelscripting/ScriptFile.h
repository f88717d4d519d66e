// Script files.
#pragma once

#include <cstddef>
#include <string>

namespace qelscripting {

struct ScriptFile {
  std::string mName;  ///< the file's name without its directory
  std::string mText;  ///< without what is there for other programs: byte order mark, first line with "#"
};

/// Reads a script file. Throws `ScriptError`, whose message names the file, when it cannot be read, is
/// neither a regular file nor one that the process was handed open, or has more than `largestSize` bytes or
/// 64 MiB; no more than that and one are read.
[[nodiscard]] ScriptFile ReadScriptFile(const std::string& utf8Path, std::size_t largestSize);

}  // namespace qelscripting
