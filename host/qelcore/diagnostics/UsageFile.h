// Usage statistics in their file; docs/formats/statistics.md describes it.
#pragma once

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

/// Appends the entry to the file. Any thread may call. A failure is logged, not thrown.
void AppendToUsageFile(const UsageEntry& entry);

}  // namespace qelcore::host
