#include "host/qelcore/files/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>

#include "host/qelcore/linux/FileError.h"

namespace qelcore::host {

namespace {

std::optional<mode_t> ModeOf(const std::string& path) {
  struct stat status {};
  if (path.find('\0') != std::string::npos || ::stat(path.c_str(), &status) != 0) {
    return std::nullopt;
  }
  return status.st_mode;
}

std::string ParentOf(const std::string& path) {
  const std::string parent = std::filesystem::path(path).parent_path().string();
  return parent.empty() ? "." : parent;
}

/// Makes a rename last: the directory's own entry must reach the disk too. Where the system cannot flush a
/// directory the rename has happened all the same, so an error is nobody's business.
void FlushDirectory(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor >= 0) {
    ::fsync(descriptor);
    ::close(descriptor);
  }
}

/// What a symbolic link holds; nothing for anything else.
std::optional<std::string> ReadLink(const std::string& path) {
  std::array<char, PATH_MAX> buffer{};
  const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
  if (length < 0 || static_cast<std::size_t>(length) == buffer.size()) {
    return std::nullopt;
  }
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

bool AreSameDirectory(const std::string& left, const std::string& right) {
  std::error_code error;
  return std::filesystem::equivalent(left, right, error);
}

}  // namespace

bool IsDirectory(const std::string& path) {
  const std::optional<mode_t> mode = ModeOf(path);
  return mode && S_ISDIR(*mode);
}

bool IsFile(const std::string& path) {
  const std::optional<mode_t> mode = ModeOf(path);
  return mode && !S_ISDIR(*mode);
}

bool IsRegularFile(const std::string& path) {
  const std::optional<mode_t> mode = ModeOf(path);
  return mode && S_ISREG(*mode);
}

bool HasRegularFile(const std::string& path) {
  CheckPath(path);
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) {
      return false;
    }
    ThrowFileError(errno, path);
  }
  if (!S_ISREG(status.st_mode)) {
    ThrowNotRegular(path);
  }
  return true;
}

bool IsSymbolicLink(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

void RemoveFile(const std::string& path) {
  CheckPath(path);
  if (::unlink(path.c_str()) != 0 && errno != ENOENT) {
    ThrowFileError(errno, path);
  }
}

void MakeDirectories(const std::string& path, DirectoryAccess access) {
  CheckPath(path);
  const mode_t mode = access == DirectoryAccess::kOwnerOnly ? 0700 : 0777;
  if (::mkdir(path.c_str(), mode) == 0) {
    return;
  }
  if (errno == EEXIST && IsDirectory(path)) {
    return;
  }
  const int error = errno;
  const std::string parent = ParentOf(path);
  if (error != ENOENT || parent == path || parent == ".") {
    ThrowFileError(error == EEXIST ? ENOTDIR : error, path);
  }
  MakeDirectories(parent, access);
  // Somebody else may have made it in the meantime.
  if (::mkdir(path.c_str(), mode) != 0 && !(errno == EEXIST && IsDirectory(path))) {
    ThrowFileError(errno, path);
  }
}

void MoveInPlace(const std::string& from, const std::string& to) {
  CheckPath(from);
  CheckPath(to);
  if (std::rename(from.c_str(), to.c_str()) != 0) {
    ThrowFileError(errno, to);
  }
  FlushDirectory(ParentOf(to));
}

std::string ResolveSaveTarget(const std::string& path) {
  constexpr int kMostLinks = 40;
  CheckPath(path);
  if (path.empty()) {
    ThrowFileError(ENOENT, path);
  }
  const std::string directory = ParentOf(path);
  std::string current = path;
  for (int count = 0; count < kMostLinks; ++count) {
    const std::optional<std::string> target = ReadLink(current);
    if (!target) {
      return current;
    }
    const std::filesystem::path next = std::filesystem::path(directory) / *target;
    if (!next.has_filename() || next.filename() == "." || next.filename() == ".." ||
        !AreSameDirectory(ParentOf(next.string()), directory)) {
      return path;
    }
    current = (std::filesystem::path(directory) / next.filename()).string();
  }
  return path;
}

}  // namespace qelcore::host
