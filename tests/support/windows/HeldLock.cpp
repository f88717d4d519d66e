#include "tests/support/HeldLock.h"

#include <gtest/gtest.h>

#include "tests/support/windows/SystemHeaders.h"

namespace testsupport {

HeldLock::HeldLock(const std::filesystem::path& lockFile)
    : mFile(reinterpret_cast<std::intptr_t>(
          CreateFileW(lockFile.c_str(), GENERIC_READ | GENERIC_WRITE,
                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                      FILE_ATTRIBUTE_NORMAL, nullptr))) {
  EXPECT_NE(mFile, kNone) << lockFile;
  OVERLAPPED beginning{};
  EXPECT_NE(LockFileEx(reinterpret_cast<HANDLE>(mFile), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY,
                       0, 1, 0, &beginning),
            FALSE)
      << lockFile;
}

void HeldLock::Release() {
  if (mFile == kNone) return;
  OVERLAPPED beginning{};
  EXPECT_NE(UnlockFileEx(reinterpret_cast<HANDLE>(mFile), 0, 1, 0, &beginning), FALSE);
  EXPECT_NE(CloseHandle(reinterpret_cast<HANDLE>(mFile)), FALSE);
  mFile = kNone;
}

}  // namespace testsupport
