// The user-interface library's own interface: what an application or a test sets up. Main thread.
#pragma once

#include "platform/qelui.h"

namespace qelui::host {

/// Makes `manager` the process's node manager; null takes it away. It must live until it is taken away. A
/// process that never sets one has no toolkit, and nothing is shown.
QELUI_EXPORT void SetNodeManager(NodeManager* manager);

/// Loads the native toolkit, which stands beside this library, and makes its node manager the process's.
/// Throws `std::runtime_error` with a reason for people when that is impossible, such as without a display;
/// the process then goes on without windows, and may try again. Does nothing when the toolkit already runs.
///
/// While one of the toolkit's windows is open it runs the main thread's tasks.
QELUI_EXPORT void StartToolkit();

/// Takes the native toolkit's node manager away and ends the toolkit. Every dialog and window must be gone.
/// Does nothing when it does not run.
QELUI_EXPORT void StopToolkit();

}  // namespace qelui::host
