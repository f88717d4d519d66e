#include "qelsystemcompatibilityreport/optimizer/NativeWindow.h"

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#if !defined(NOGDI)
#define NOGDI
#endif
#include <windows.h>
#endif

namespace qelsystemcompatibilityreport {

void BringNativeWindowToFront([[maybe_unused]] void* window) {
#if defined(_WIN32)
  if (window == nullptr) return;
  const HWND handle = static_cast<HWND>(window);
  SetForegroundWindow(handle);
  SetActiveWindow(handle);
#endif
}

}  // namespace qelsystemcompatibilityreport
