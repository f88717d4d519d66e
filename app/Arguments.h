// What the program was started with.
#pragma once

#include <string>
#include <vector>

namespace app {

/// The arguments behind the program's name, as UTF-8. On Windows they are asked for anew: those that the
/// program is handed are in the user's code page, which lacks most characters.
#if defined(_WIN32)
[[nodiscard]] std::vector<std::string> ProgramArguments(int count, char** arguments);
#else
[[nodiscard]] inline std::vector<std::string> ProgramArguments(int count, char** arguments) {
  return {arguments + (count > 0 ? 1 : 0), arguments + count};
}
#endif

}  // namespace app
