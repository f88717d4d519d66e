// A handle of the system's that is closed with its owner.
#pragma once

#include <utility>

namespace qelcore::host {

/// Owns what `CloseHandle` closes. An invalid or null handle is nothing.
class Handle {
 public:
  explicit Handle(void* handle) noexcept : mHandle(handle) {}
  Handle(Handle&& other) noexcept : mHandle(std::exchange(other.mHandle, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(mHandle, other.mHandle);
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle();

  [[nodiscard]] bool IsValid() const noexcept;
  [[nodiscard]] void* Get() const noexcept { return mHandle; }

  /// Gives up the handle without closing it.
  [[nodiscard]] void* Release() noexcept { return std::exchange(mHandle, nullptr); }

 private:
  void* mHandle;
};

}  // namespace qelcore::host
