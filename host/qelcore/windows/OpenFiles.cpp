// The limit of the C library's streams; the system itself has none that a process could change.
#include <cstdio>
#include <system_error>

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

namespace {

#if defined(_UCRT)
constexpr std::uint64_t kLargestLimit = 8192;
#else
constexpr std::uint64_t kLargestLimit = 2048;
#endif

/// The standard streams and what the C library keeps beside them.
constexpr std::uint64_t kSmallestLimit = 20;

[[noreturn]] void ThrowInvalid() {
  throw std::system_error(std::make_error_code(std::errc::invalid_argument), "the limit on open files");
}

}  // namespace

OpenFileLimits GetOpenFileLimits() {
  return {.mCurrent = static_cast<std::uint64_t>(::_getmaxstdio()), .mLargest = kLargestLimit};
}

void SetOpenFileLimit(std::uint64_t limit) {
  // The library ends the process for a number that is out of range.
  if (limit < kSmallestLimit || limit > kLargestLimit || ::_setmaxstdio(static_cast<int>(limit)) == -1) {
    ThrowInvalid();
  }
}

}  // namespace qelcore::host
