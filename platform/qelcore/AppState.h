// The state of the application, from its start to its end.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Messaging.h"

namespace qelcore::appstatemanager {

/// The states in the order in which an application passes through them. The numbers travel in messages: do
/// not renumber. Only `kPostStartup` matters to the library.
enum class AppState : std::int32_t {
  kLoaded = 0,
  kInitializing = 1,
  kInitialized = 2,
  kStarting = 3,
  kStarted = 4,
  kPostStartup = 5,  ///< start-up is over and the user can work
  kShuttingDown = 6,
  kEnded = 7,
};

/// The application's present state; `kLoaded` before the host said anything. Any thread may call.
[[nodiscard]] QELCORE_EXPORT AppState GetAppState();

/// The station that announces the application's states.
[[nodiscard]] QELCORE_EXPORT messaging::StationID GetStationID();

/// Sent on that station with each new state, after `GetAppState` returns it.
class QELCORE_EXPORT AppStateMessage : public messaging::Message {
 public:
  static constexpr std::string_view kTypeName = "qelcore::appstatemanager::AppStateMessage";

  explicit AppStateMessage(AppState state);
  ~AppStateMessage() override;

  [[nodiscard]] AppState GetState() const { return mState; }

 private:
  AppState mState;
};

}  // namespace qelcore::appstatemanager
