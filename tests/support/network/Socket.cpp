#include "tests/support/network/Socket.h"

#include <utility>

namespace testsupport {

Socket::~Socket() {
  Close();
}

Socket::Socket(Socket&& other) noexcept : mHandle(std::exchange(other.mHandle, kNone)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
  if (this != &other) {
    Close();
    mHandle = std::exchange(other.mHandle, kNone);
  }
  return *this;
}

}  // namespace testsupport
