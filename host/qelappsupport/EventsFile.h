// Events in their file; docs/formats/events.md describes it.
#pragma once

#include "platform/qelappsupport.h"

namespace qelappsupport::host {

/// Appends the event to the file, with the current time. Any thread may call. A file that cannot be written
/// is logged, not thrown.
void AppendToEventsFile(const analytics::SDMEvent& event);

}  // namespace qelappsupport::host
