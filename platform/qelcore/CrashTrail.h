// Breadcrumbs for crash reports: what a process leaves behind so that a crash report can tell what it knew.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Text.h"

namespace qelcore::debug::brindle {

/// What a trail holds under a key: a UTF-8 text or a truth value.
using TrailValue = std::variant<std::string, bool>;
using TrailDictionary = std::map<std::string, TrailValue, std::less<>>;
using TrailList = std::vector<TrailValue>;

/// Keys that every trail has: what it is about, and how grave that is.
inline constexpr std::string_view kCheckpointCategory = "checkpoint_category";
inline constexpr std::string_view kCheckpointLevel = "checkpoint_level";
inline constexpr std::string_view kCheckpointLevel_Warning = "warning";

/// Leaves a trail. `list` holds further values without keys and may be empty. Any thread may call. Does not
/// throw.
QELCORE_EXPORT void LeaveTrail(const TrailDictionary& dictionary, const TrailList& list);

/// Sets the marker of that name, in place of its earlier value. Any thread may call. Does not throw.
QELCORE_EXPORT void TrailMarker(const ImmutableString& name, const TrailValue& value);

}  // namespace qelcore::debug::brindle
