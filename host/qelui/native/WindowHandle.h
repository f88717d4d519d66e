// The contract's opaque window is a window of wxWidgets. This is the one place that knows.
#pragma once

#include "platform/qelui/Dialog.h"

class wxWindow;

namespace qelui::native {

[[nodiscard]] inline wxWindow* ToNative(OS_Window* window) {
  return reinterpret_cast<wxWindow*>(window);
}

[[nodiscard]] inline OS_Window* ToContract(wxWindow* window) {
  return reinterpret_cast<OS_Window*>(window);
}

}  // namespace qelui::native
