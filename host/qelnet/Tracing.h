// Trace messages about requests.
#pragma once

#include <functional>
#include <string>

#include "platform/qelcore/Guid.h"

namespace qelnet {

/// Levels of the channel "qelnet".
inline constexpr int kWarningLevel = 5;
inline constexpr int kDetailLevel = 6;

/// Traces what `makeText` returns, after the request's identifier. It is called only when the level is
/// recorded. A text that cannot be made is lost; nothing is thrown.
void TraceRequest(int level, const qelcore::Guid& identifier, const std::function<std::string()>& makeText);

}  // namespace qelnet
