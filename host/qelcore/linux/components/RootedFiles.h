// Reading of files below a root directory, bounded, and never outside of it.
//
//   const RootedFiles files("/");
//   const std::string release = files.ReadLine("proc/sys/kernel/osrelease");
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qelcore::host::components {

/// A view of the files below a directory. Paths are relative to the root; a leading "/" changes nothing.
/// Every symbolic link is followed inside the root: an absolute link starts at the root again, and ".." does
/// not lead above it. What is missing, unreadable, of another kind than asked for, or behind a loop of links
/// counts as absent; nothing throws. Any thread may call.
class RootedFiles {
 public:
  static constexpr std::size_t kUsualLimit = std::size_t{64} << 10;

  /// A root that cannot be opened has no files.
  explicit RootedFiles(const std::filesystem::path& root);
  ~RootedFiles();
  RootedFiles(const RootedFiles&) = delete;
  RootedFiles& operator=(const RootedFiles&) = delete;

  /// The path without any links, "." and "..", relative to the root and without a leading "/"; empty for the
  /// root itself. Nothing when it does not exist.
  [[nodiscard]] std::optional<std::string> Resolve(std::string_view path) const;

  [[nodiscard]] bool Exists(std::string_view path) const { return Resolve(path).has_value(); }

  /// The first `limit` bytes of a regular file.
  [[nodiscard]] std::optional<std::string> Read(std::string_view path, std::size_t limit = kUsualLimit) const;

  /// The first line of a regular file, trimmed; empty when the file is absent.
  [[nodiscard]] std::string ReadLine(std::string_view path) const;

  /// The names in a directory, in natural order; at most 65,536 of them.
  [[nodiscard]] std::vector<std::string> List(std::string_view directory) const;

  /// The last name of what a symbolic link points to, whether that exists or not; empty when the path is not
  /// a link.
  [[nodiscard]] std::string LinkName(std::string_view path) const;

 private:
  /// The target of the link at a path whose directories are free of links. Nothing when it is no link;
  /// `isPresent` tells whether it is anything else.
  [[nodiscard]] std::optional<std::string> ReadLink(const std::string& path, bool& isPresent) const;

  int mRoot;
};

}  // namespace qelcore::host::components
