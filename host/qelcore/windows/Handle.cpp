#include "host/qelcore/windows/Handle.h"

#include "host/qelcore/windows/SystemHeaders.h"

namespace qelcore::host {

Handle::~Handle() {
  if (IsValid()) {
    ::CloseHandle(mHandle);
  }
}

bool Handle::IsValid() const noexcept {
  // The calls that make handles do not agree on what a failure looks like.
  return mHandle != nullptr && mHandle != INVALID_HANDLE_VALUE;
}

}  // namespace qelcore::host
