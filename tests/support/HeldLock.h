// The lock of a file, in hands that do not give it back.
#pragma once

#include <cstdint>
#include <filesystem>

namespace testsupport {

/// Holds the lock of a file, as another process would that was stopped, until `Release` or the end of the
/// object. Makes the file when it is missing; fails the test when somebody else holds the lock.
class HeldLock {
 public:
  explicit HeldLock(const std::filesystem::path& lockFile);
  ~HeldLock() { Release(); }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

  void Release();

 private:
  static constexpr std::intptr_t kNone = -1;

  std::intptr_t mFile;
};

}  // namespace testsupport
