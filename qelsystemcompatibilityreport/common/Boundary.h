// The line that no exception crosses.
//
// Exported functions, constructors that read external text and callbacks into the host run their body in
// `AtBoundary`. It is the only place that knows what happens to an exception.
#pragma once

#include <exception>
#include <string_view>
#include <utility>

#include "platform/qelcore/Trace.h"

namespace qelsystemcompatibilityreport {

/// Logs the exception that is being handled. Where the log itself fails nobody is left to tell.
inline void LogCaughtException(std::string_view context) noexcept {
  try {
    qelcore::LogException(std::current_exception(), context);
  } catch (...) {
  }
}

/// Runs `body`. An exception is logged under `context`, which is "qelsystemcompatibilityreport::" and the
/// name of the class and function, and goes no further.
template <typename Body>
void AtBoundary(std::string_view context, Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    LogCaughtException(context);
  }
}

/// Runs `body` and returns its result, or `fallback` after an exception, which is logged under `context`.
template <typename Result, typename Body>
[[nodiscard]] Result AtBoundary(std::string_view context, Result fallback, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    LogCaughtException(context);
  }
  return fallback;
}

}  // namespace qelsystemcompatibilityreport
