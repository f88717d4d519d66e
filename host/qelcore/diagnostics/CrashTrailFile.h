// The crash trail in its file; docs/formats/crash-trail.md describes it.
#pragma once

#include "host/qelcore/CrashTrail.h"

namespace qelcore::host {

/// Replaces the file in one step; makes the preferences directory when missing. Throws when it cannot; the
/// file is then as it was.
void SaveTrailFile(const LastTrail& trail);

}  // namespace qelcore::host
