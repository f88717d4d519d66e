// Script files.
#pragma once

#include <cstddef>
#include <string>

namespace qelscripting {

struct ScriptFile {
  std::string mName;  ///< the file's name without its directory
  std::string mText;  ///< without what is there for other programs: byte order mark, first line with "#"
};

/// Reads a script file. Throws `ScriptError` when it cannot be read or has more than `largestSize` bytes.
[[nodiscard]] ScriptFile ReadScriptFile(const std::string& utf8Path, std::size_t largestSize);

}  // namespace qelscripting
