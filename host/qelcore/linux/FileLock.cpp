#include "host/qelcore/files/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "host/qelcore/linux/FileError.h"

namespace qelcore::host {

namespace {

int Open(const std::string& path) {
  constexpr mode_t kOwnerMode = 0600;
  CheckPath(path);
  int descriptor = -1;
  do {
    descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, kOwnerMode);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) {
    ThrowFileError(errno, path);
  }
  return descriptor;
}

}  // namespace

FileLock::FileLock(const std::string& path) : mHandle(Open(path)) {
  const int descriptor = static_cast<int>(mHandle);
  int result = -1;
  do {
    result = ::flock(descriptor, LOCK_EX);
  } while (result != 0 && errno == EINTR);
  if (result != 0) {
    const int number = errno;
    ::close(descriptor);
    ThrowFileError(number, path);
  }
}

FileLock::~FileLock() {
  // Closing alone would leave the lock with a child that was forked in the meantime.
  ::flock(static_cast<int>(mHandle), LOCK_UN);
  ::close(static_cast<int>(mHandle));
}

}  // namespace qelcore::host
