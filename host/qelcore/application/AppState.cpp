#include "platform/qelcore/AppState.h"

#include <array>
#include <atomic>

#include "host/qelcore/HostSetup.h"

namespace qelcore {

namespace {

std::atomic<appstatemanager::AppState> state{appstatemanager::AppState::kLoaded};

/// The text form is "5c1f0e6b-3a57-4d02-9b8e-7741d2a6c0f3". Do not change: it names the station for ever.
constexpr std::array<std::uint8_t, 16> kStationBytes = {0x5c, 0x1f, 0x0e, 0x6b, 0x3a, 0x57, 0x4d, 0x02,
                                                        0x9b, 0x8e, 0x77, 0x41, 0xd2, 0xa6, 0xc0, 0xf3};

}  // namespace

namespace appstatemanager {

AppState GetAppState() {
  return state.load();
}

messaging::StationID GetStationID() {
  return messaging::StationID(kStationBytes);
}

AppStateMessage::AppStateMessage(AppState newState)
    : Message(messaging::HashMessageTypeNameToMessageID(kTypeName)), mState(newState) {}

AppStateMessage::~AppStateMessage() = default;

}  // namespace appstatemanager

void host::SetAppState(appstatemanager::AppState newState) {
  state.store(newState);
  messaging::SendToListeners(appstatemanager::GetStationID(), appstatemanager::AppStateMessage(newState));
}

}  // namespace qelcore
