#include "platform/qelcore/AppState.h"

#include <atomic>

#include "host/qelcore/HostSetup.h"

namespace qelcore {

namespace {

std::atomic<appstatemanager::AppState> state{appstatemanager::AppState::kLoaded};

}  // namespace

appstatemanager::AppState appstatemanager::GetAppState() {
  return state.load();
}

void host::SetAppState(appstatemanager::AppState newState) {
  state.store(newState);
}

}  // namespace qelcore
