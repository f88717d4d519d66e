// Telling the application how requests end.
#pragma once

#include <functional>

#include "host/qelnet/HostSetup.h"

namespace qelnet {

/// Calls the observer, if there is one, with what `makeOutcome` returns. What either throws is logged. Does
/// not throw.
QELNET_EXPORT void TellOutcome(const std::function<host::Outcome()>& makeOutcome) noexcept;

}  // namespace qelnet
