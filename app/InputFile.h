// Files that the user names.
#pragma once

#include <any>
#include <string>

namespace app {

/// The whole content of a file. Throws `UserError` that names the file and the reason.
[[nodiscard]] std::string ReadInputFile(const std::string& path);

/// The JSON value in a file's content. Throws `UserError` that names the file, the line and the column,
/// which counts characters.
[[nodiscard]] std::any ParseInputFile(const std::string& path, const std::string& content);

}  // namespace app
