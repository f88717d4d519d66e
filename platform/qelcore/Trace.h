// Trace messages and the exception log. Everything here may be called from any thread; nothing throws.
#pragma once

#include <cstdint>
#include <exception>
#include <string_view>

#include "platform/qelcore/Export.h"

namespace qelcore {

/// Whether messages of this channel and level are recorded. Levels: 1 errors, 5 warnings and skips, 6 detail;
/// a channel that is set to a level records that level and every lower number.
[[nodiscard]] QELCORE_EXPORT bool TraceEnabled(std::string_view channel, int level);

/// A counter that moves whenever the trace configuration changes. It starts above 0, so that 0 can stand for
/// "never asked".
[[nodiscard]] QELCORE_EXPORT std::uint32_t TraceChangeCount();

/// Records a message, UTF-8, which may hold line feeds. Asking `TraceEnabled` first is the caller's business.
QELCORE_EXPORT void TraceOutput(std::string_view channel, int level, std::string_view text);

/// Records an exception that was caught. `context` names the function that caught it and is recorded
/// unchanged. A null pointer is recorded as an unknown exception.
QELCORE_EXPORT void LogException(const std::exception_ptr& exception, std::string_view context);

}  // namespace qelcore
