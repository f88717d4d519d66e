// Who runs the system, asked of the processor.
#pragma once

#include "host/qelcore/windows/components/SystemFacts.h"

namespace qelcore::host::windows {

/// What the running machine's processor says; nothing on processors of another architecture.
[[nodiscard]] HypervisorFacts ReadHypervisor();

}  // namespace qelcore::host::windows
