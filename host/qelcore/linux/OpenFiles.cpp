#include <sys/resource.h>

#include <cerrno>
#include <system_error>

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

namespace {

rlimit ReadLimits() {
  rlimit limits{};
  if (getrlimit(RLIMIT_NOFILE, &limits) != 0)
    throw std::system_error(errno, std::generic_category(), "the limit on open files");
  return limits;
}

}  // namespace

OpenFileLimits GetOpenFileLimits() {
  const rlimit limits = ReadLimits();
  return {.mCurrent = limits.rlim_cur, .mLargest = limits.rlim_max};
}

void SetOpenFileLimit(std::uint64_t limit) {
  rlimit limits = ReadLimits();
  limits.rlim_cur = limit;
  if (setrlimit(RLIMIT_NOFILE, &limits) != 0)
    throw std::system_error(errno, std::generic_category(), "the limit on open files");
}

}  // namespace qelcore::host
