// Paths as UTF-8, which is what every text here is, whatever the system's own form is.
#pragma once

#include <filesystem>
#include <string>

namespace app {

[[nodiscard]] std::filesystem::path ToPath(const std::string& utf8);
[[nodiscard]] std::string ToUTF8(const std::filesystem::path& path);

/// The path from the root on. Throws `std::filesystem::filesystem_error` when there is no current directory.
[[nodiscard]] std::string AbsolutePath(const std::string& utf8);

}  // namespace app
