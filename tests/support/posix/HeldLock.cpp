#include "tests/support/HeldLock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

namespace testsupport {

HeldLock::HeldLock(const std::filesystem::path& lockFile)
    : mFile(open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  EXPECT_GE(mFile, 0) << lockFile;
  EXPECT_EQ(flock(static_cast<int>(mFile), LOCK_EX | LOCK_NB), 0) << lockFile;
}

void HeldLock::Release() {
  if (mFile == kNone) return;
  EXPECT_EQ(close(static_cast<int>(mFile)), 0);
  mFile = kNone;
}

}  // namespace testsupport
