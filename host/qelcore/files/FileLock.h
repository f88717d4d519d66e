// A lock that keeps other processes and threads away from a file. One implementation for each system.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace qelcore::host {

/// Holds the lock of a lock file, which is made when missing, readable by its owner only, and stays when the
/// lock goes. At most one object holds it at a time, on the whole machine; the system gives it back when a
/// process dies.
class FileLock {
 public:
  /// Takes the lock, and waits about `patience` for it when somebody else has it; without any patience it is
  /// tried once. `path` is UTF-8. Throws `std::system_error`, whose message is the path and the reason, when
  /// the lock file cannot be made or cannot be locked; with `std::errc::device_or_resource_busy` when
  /// somebody else has kept the lock.
  FileLock(const std::string& path, std::chrono::milliseconds patience);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  std::intptr_t mHandle;
};

}  // namespace qelcore::host
