#include "host/qelcore/files/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "host/qelcore/linux/FileError.h"

namespace qelcore::host {

namespace {

int Open(const std::string& path) {
  constexpr mode_t kOwnerMode = 0600;
  CheckPath(path);
  int descriptor = -1;
  do {
    descriptor =
        ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW, kOwnerMode);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) {
    ThrowFileError(errno, path);
  }
  return descriptor;
}

/// Tries to take the lock; returns 0 or the number of the error.
int TryToLock(int descriptor) {
  int result = -1;
  do {
    result = ::flock(descriptor, LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result == 0 ? 0 : errno;
}

}  // namespace

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience) : mHandle(Open(path)) {
  constexpr std::chrono::milliseconds kPause{1};
  const int descriptor = static_cast<int>(mHandle);
  int number = TryToLock(descriptor);
  // The pauses are counted, not the clock: a machine that stood still has not used up any patience.
  for (; number == EWOULDBLOCK && patience > patience.zero(); patience -= kPause) {
    std::this_thread::sleep_for(kPause);
    number = TryToLock(descriptor);
  }
  if (number != 0) {
    ::close(descriptor);
    ThrowFileError(number == EWOULDBLOCK ? EBUSY : number, path);
  }
}

FileLock::~FileLock() {
  // Closing alone would leave the lock with a child that was forked in the meantime.
  ::flock(static_cast<int>(mHandle), LOCK_UN);
  ::close(static_cast<int>(mHandle));
}

}  // namespace qelcore::host
