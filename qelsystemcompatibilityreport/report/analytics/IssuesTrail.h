// The trail of issues for crash reports.
#pragma once

#include "qelsystemcompatibilityreport/report/state/PriorState.h"

namespace qelsystemcompatibilityreport {

/// Leaves the remembered issues' identifiers and their number where a crash report finds them.
void LeaveIssuesTrail(const SCRPriorState& state);

}  // namespace qelsystemcompatibilityreport
