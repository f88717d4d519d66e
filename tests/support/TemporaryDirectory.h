// A directory for one test, empty at its start and gone at its end.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace testsupport {

class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return mPath; }

  /// Writes a file below the directory, making the directories that lead to it; returns its path.
  std::filesystem::path Write(const std::string& relativePath, std::string_view content) const;

  /// The content of a file below the directory; fails the test when it cannot be read.
  [[nodiscard]] std::string Read(const std::string& relativePath) const;

 private:
  std::filesystem::path mPath;
};

/// The path that a text in UTF-8 names.
[[nodiscard]] std::filesystem::path PathFrom(std::string_view text);

/// The path as the libraries write it: UTF-8, with the separators of the system.
[[nodiscard]] std::string PathText(std::filesystem::path path);

/// The content of a file; fails the test when it cannot be read.
[[nodiscard]] std::string ReadWholeFile(const std::filesystem::path& path);

}  // namespace testsupport
