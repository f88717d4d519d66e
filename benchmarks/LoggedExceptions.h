// How many exceptions were logged.
#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <string_view>

#include "host/qelcore/HostSetup.h"

namespace benchmarks {

/// Counts what is logged while it lives. One at a time.
class LoggedExceptions {
 public:
  LoggedExceptions() {
    qelcore::host::SetExceptionSink([this](const std::exception_ptr&, std::string_view) { ++mCount; });
  }
  ~LoggedExceptions() { qelcore::host::SetExceptionSink({}); }
  LoggedExceptions(const LoggedExceptions&) = delete;
  LoggedExceptions& operator=(const LoggedExceptions&) = delete;

  [[nodiscard]] std::size_t Count() const { return mCount; }

 private:
  std::atomic<std::size_t> mCount{0};
};

}  // namespace benchmarks
