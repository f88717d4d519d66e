#include "host/qelcore/files/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "host/qelcore/linux/FileError.h"

namespace qelcore::host {

namespace {

/// Opens a file; `flags` without those that every file gets.
int Open(const std::string& path, int flags, mode_t mode = 0) {
  CheckPath(path);
  int descriptor = -1;
  do {
    descriptor = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) {
    ThrowFileError(errno, path);
  }
  return descriptor;
}

constexpr mode_t kUsualMode = 0666;
constexpr mode_t kOwnerMode = 0600;
constexpr mode_t kAccessRights = 0777;

int Descriptor(std::intptr_t handle) {
  return static_cast<int>(handle);
}

/// Whether the path as written names an open file of this process. What a link leads to does not count:
/// nobody chose that when the path was written.
bool NamesOpenFile(std::string_view path) {
  return path == "/dev/stdin" || path.starts_with("/dev/fd/") || path.starts_with("/proc/self/fd/");
}

}  // namespace

FileHandle FileHandle::OpenForReading(const std::string& path) {
  const bool isOpenAlready = NamesOpenFile(path);
  FileHandle file(path, Open(path, O_RDONLY | (isOpenAlready ? 0 : O_NONBLOCK)));
  struct stat status {};
  if (::fstat(Descriptor(file.mHandle), &status) != 0) {
    ThrowFileError(errno, path);
  }
  if (S_ISDIR(status.st_mode)) {
    ThrowFileError(EISDIR, path);
  }
  if (!S_ISREG(status.st_mode) && !isOpenAlready) {
    ThrowNotRegular(path);
  }
  return file;
}

FileHandle FileHandle::OpenForWriting(const std::string& path) {
  return {path, Open(path, O_WRONLY | O_CREAT | O_TRUNC, kUsualMode)};
}

FileHandle FileHandle::OpenOrCreate(const std::string& path, bool mustBeNew) {
  return {path, Open(path, O_WRONLY | O_CREAT | O_NONBLOCK | (mustBeNew ? O_EXCL : 0), kOwnerMode)};
}

FileHandle FileHandle::OpenForAppending(const std::string& path) {
  FileHandle file(path, Open(path, O_RDWR | O_APPEND | O_NONBLOCK | O_NOFOLLOW));
  struct stat status {};
  if (::fstat(Descriptor(file.mHandle), &status) != 0) {
    ThrowFileError(errno, path);
  }
  if (!S_ISREG(status.st_mode)) {
    ThrowNotRegular(path);
  }
  return file;
}

FileHandle FileHandle::CreateForOwner(const std::string& path) {
  return {path, Open(path, O_WRONLY | O_CREAT | O_EXCL, kOwnerMode)};
}

FileHandle::FileHandle(std::string path, std::intptr_t handle) noexcept
    : mPath(std::move(path)), mHandle(handle) {}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : mPath(std::move(other.mPath)), mHandle(std::exchange(other.mHandle, kNoHandle)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
  std::swap(mPath, other.mPath);
  std::swap(mHandle, other.mHandle);
  return *this;
}

FileHandle::~FileHandle() {
  if (mHandle != kNoHandle) {
    ::close(Descriptor(mHandle));
  }
}

std::uint64_t FileHandle::Length() const {
  struct stat status {};
  if (::fstat(Descriptor(mHandle), &status) != 0) {
    ThrowFileError(errno, mPath);
  }
  return S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::size_t FileHandle::Read(char* buffer, std::size_t size) {
  ssize_t count = -1;
  do {
    count = ::read(Descriptor(mHandle), buffer, size);
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    ThrowFileError(errno, mPath);
  }
  return static_cast<std::size_t>(count);
}

char FileHandle::ReadByte(std::uint64_t place) const {
  char byte = 0;
  ssize_t count = -1;
  do {
    count = ::pread(Descriptor(mHandle), &byte, 1, static_cast<off_t>(place));
  } while (count < 0 && errno == EINTR);
  if (count != 1) {
    ThrowFileError(count < 0 ? errno : EIO, mPath);
  }
  return byte;
}

void FileHandle::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(Descriptor(mHandle), bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      ThrowFileError(errno, mPath);
    }
  }
}

void FileHandle::Flush() {
  int result = -1;
  do {
    result = ::fsync(Descriptor(mHandle));
  } while (result != 0 && errno == EINTR);
  // What cannot be flushed, such as a pipe, says so with these.
  if (result != 0 && errno != EINVAL && errno != EROFS) {
    ThrowFileError(errno, mPath);
  }
}

void FileHandle::TakeAccessRightsOf(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return;
  }
  if (::fchmod(Descriptor(mHandle), status.st_mode & kAccessRights) != 0) {
    ThrowFileError(errno, mPath);
  }
}

void FileHandle::Close() {
  if (mHandle == kNoHandle) {
    return;
  }
  // The descriptor is gone even when the call was interrupted; trying again could close somebody else's.
  if (::close(Descriptor(std::exchange(mHandle, kNoHandle))) != 0 && errno != EINTR) {
    ThrowFileError(errno, mPath);
  }
}

}  // namespace qelcore::host
