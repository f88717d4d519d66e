// The system's own call for a window that comes to the front.
#pragma once

namespace qelsystemcompatibilityreport {

/// Makes the window the one in the foreground and the active one. `window` is the system's handle, as
/// `UI_Dialog::GetNativeWindow` tells it. Does nothing without one, and on systems that have no such handles:
/// there the toolkit knows how.
void BringNativeWindowToFront(void* window);

}  // namespace qelsystemcompatibilityreport
