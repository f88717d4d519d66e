#include "host/qelcore/files/FileLock.h"

#include <algorithm>
#include <thread>

#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/OwnerOnly.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/SystemPath.h"

namespace qelcore::host {

namespace {

Handle Open(const std::string& path) {
  const std::wstring systemPath = SystemPath(path);
  if (NamesDevice(systemPath)) {
    ThrowNotRegular(path);
  }
  const OwnerOnly rights(OwnerOnly::Kind::kFile);
  SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), rights.Descriptor(), FALSE};
  Handle file(::CreateFileW(systemPath.c_str(), GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &attributes, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsValid()) {
    ThrowOpenError(::GetLastError(), path);
  }
  return file;
}

/// Tries to take the lock; returns 0 or the code of the error.
DWORD TryToLock(HANDLE file) {
  OVERLAPPED beginning{};
  const BOOL isTaken =
      ::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &beginning);
  return isTaken != 0 ? ERROR_SUCCESS : ::GetLastError();
}

bool SaysTaken(DWORD code) {
  return code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING;
}

/// Waits a moment and tells how long. The system may make the shortest pause last until its clock ticks,
/// about 16 ms; what is longer is a machine that stood still, which has not used up any patience.
std::chrono::milliseconds Pause() {
  constexpr std::chrono::milliseconds kShortest{1};
  constexpr std::chrono::milliseconds kLongest{16};
  const auto begin = std::chrono::steady_clock::now();
  std::this_thread::sleep_for(kShortest);
  const auto length = std::chrono::steady_clock::now() - begin;
  return std::clamp(std::chrono::duration_cast<std::chrono::milliseconds>(length), kShortest, kLongest);
}

}  // namespace

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience) : mHandle(0) {
  Handle file = Open(path);
  DWORD code = TryToLock(file.Get());
  while (SaysTaken(code) && patience > patience.zero()) {
    patience -= Pause();
    code = TryToLock(file.Get());
  }
  if (code != ERROR_SUCCESS) {
    ThrowFileError(SaysTaken(code) ? ERROR_BUSY : code, path);
  }
  mHandle = reinterpret_cast<std::intptr_t>(file.Release());
}

FileLock::~FileLock() {
  const Handle file(reinterpret_cast<HANDLE>(mHandle));
  // Closing alone would give the lock back at a time of the system's choosing.
  OVERLAPPED beginning{};
  ::UnlockFileEx(file.Get(), 0, 1, 0, &beginning);
}

}  // namespace qelcore::host
