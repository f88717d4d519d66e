// The trails and markers that were left, for whoever writes a crash report.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/qelcore/CrashTrail.h"

namespace qelcore::host {

struct Trail {
  debug::brindle::TrailDictionary mDictionary;
  debug::brindle::TrailList mList;

  friend bool operator==(const Trail&, const Trail&) = default;
};

// ---- This process -----------------------------------------------------------------------------------------

/// The trails in the order in which they were left. Any thread may call.
[[nodiscard]] QELCORE_EXPORT std::vector<Trail> GetTrails();

/// The markers with their latest values. Any thread may call.
[[nodiscard]] QELCORE_EXPORT std::map<std::string, debug::brindle::TrailValue> GetTrailMarkers();

// ---- The last process -------------------------------------------------------------------------------------
//
// Every trail and marker that is left saves all that this process has left so far in `crash-trail.json` of
// the preferences directory, in place of what another process saved before; docs/formats/crash-trail.md
// describes the file. When saving fails, that is logged, and the file stays as it was.

struct LastTrail {
  std::string mTime{};  ///< of the last change, UTC, such as "2024-02-29T23:59:59.007Z"
  std::vector<Trail> mTrails{};
  std::map<std::string, debug::brindle::TrailValue> mMarkers{};
};

/// What the process that left a trail or marker last has saved: this process or an earlier one. Nothing when
/// there is no file. Throws `std::runtime_error`, whose message names the file and what is wrong with it,
/// when the file cannot be read or is damaged.
[[nodiscard]] QELCORE_EXPORT std::optional<LastTrail> ReadLastTrail();

/// The UTF-8 path of the file. It need not exist.
[[nodiscard]] QELCORE_EXPORT std::string GetTrailFile();

}  // namespace qelcore::host
