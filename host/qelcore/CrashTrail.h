// The trails and markers that were left in this process, for whoever writes a crash report.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/qelcore/CrashTrail.h"

namespace qelcore::host {

struct Trail {
  debug::brindle::TrailDictionary mDictionary;
  debug::brindle::TrailList mList;
};

/// The trails in the order in which they were left. Any thread may call.
[[nodiscard]] QELCORE_EXPORT std::vector<Trail> GetTrails();

/// The markers with their latest values. Any thread may call.
[[nodiscard]] QELCORE_EXPORT std::map<std::string, debug::brindle::TrailValue> GetTrailMarkers();

}  // namespace qelcore::host
