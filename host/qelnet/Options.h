// The options in force.
#pragma once

#include "host/qelnet/HostSetup.h"

namespace qelnet {

/// The options of a request that starts now, with its time-outs within their bounds. Any thread may call.
[[nodiscard]] QELNET_EXPORT host::Options CurrentOptions();

}  // namespace qelnet
