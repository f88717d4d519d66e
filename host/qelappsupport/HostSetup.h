// The application-support library's own interface: what an application or a test sets up.
#pragma once

#include <functional>

#include "platform/qelappsupport.h"

namespace qelappsupport::host {

using EventSink = std::function<void(const analytics::SDMEvent& event)>;

/// Sends every event to `sink`, on the thread that logs it. Process-wide; an empty function takes the sink
/// away. Without a sink no recorder is attached, and events are dropped.
QELAPPSUPPORT_EXPORT void SetEventSink(EventSink sink);

}  // namespace qelappsupport::host
