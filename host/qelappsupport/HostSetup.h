// The application-support library's own interface: what an application or a test sets up and reads back.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelappsupport.h"

namespace qelappsupport::host {

// ---- Features ---------------------------------------------------------------------------------------------

/// What a `feature::BetaFeature` declared.
struct BetaFeatureDescription {
  std::string mName{};
  feature::Stage mStage = feature::Stage::kBeta;
  std::string mDescription{};
  std::string mTicket{};

  friend bool operator==(const BetaFeatureDescription&, const BetaFeatureDescription&) = default;
};

/// The beta features of all loaded libraries, in the order in which they were declared. Any thread may call.
[[nodiscard]] QELAPPSUPPORT_EXPORT std::vector<BetaFeatureDescription> GetBetaFeatures();

// ---- Events -----------------------------------------------------------------------------------------------
//
// Events are recorded in a file of this machine for its user to look at; docs/formats/events.md describes it.
// Nothing is sent anywhere.

/// The debug setting that turns the recording of events off when its value is exactly "false"; its default is
/// "true". A change holds from the next event on.
inline constexpr std::string_view kRecordAnalyticsSetting = "host.record_analytics";

using EventSink = std::function<void(const analytics::SDMEvent& event)>;

/// Hands every event to `sink`, on the thread that logs it, INSTEAD of recording it in the file, and whatever
/// the debug setting says. Process-wide; an empty function brings the file back. What `sink` throws is
/// logged.
QELAPPSUPPORT_EXPORT void SetEventSink(EventSink sink);

struct RecordedEvent {
  std::string mTime;  ///< UTC, such as "2024-02-29T23:59:59.007Z"
  analytics::SDMEvent mEvent;
};

struct RecordedEvents {
  std::vector<RecordedEvent> mEvents{};  ///< oldest first
  std::size_t mDamagedLines = 0;         ///< lines that are no event
};

/// The events in the file `GetEventsFile` and its older file. Any thread may call. Throws `std::system_error`
/// when a file that is there cannot be read.
[[nodiscard]] QELAPPSUPPORT_EXPORT RecordedEvents ReadEvents();

/// The UTF-8 path of the file that events are recorded in: `analytics-events.jsonl` of the preferences
/// directory. It need not exist.
[[nodiscard]] QELAPPSUPPORT_EXPORT std::string GetEventsFile();

}  // namespace qelappsupport::host
