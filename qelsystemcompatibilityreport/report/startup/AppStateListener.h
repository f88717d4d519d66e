// The service's one reaction to the application's states.
#pragma once

namespace qelsystemcompatibilityreport {

/// Starts listening: when start-up is over, the statistics are logged once and listening ends. Only the first
/// call in a process does anything. Any thread may call.
void ListenToAppStates();

/// Listens with a new listener in place of the one that there is, which ends. `ListenToAppStates` does it
/// once.
void ReplaceAppStateListener();

}  // namespace qelsystemcompatibilityreport
