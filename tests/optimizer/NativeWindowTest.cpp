// The system's own call for a window that comes to the front.
#include "qelsystemcompatibilityreport/optimizer/NativeWindow.h"

#include <gtest/gtest.h>

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

namespace {

using qelsystemcompatibilityreport::BringNativeWindowToFront;

#if defined(_WIN32)

HWND MakeWindow() {
  return CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                         nullptr, nullptr, nullptr);
}

// Which window is in the foreground is the whole desktop's business, and other programs have a say in it. Of
// the two, only the active window is this program's own.
TEST(NativeWindow, BecomesTheActiveOne) {
  const HWND below = MakeWindow();
  const HWND above = MakeWindow();
  ASSERT_TRUE(below != nullptr && above != nullptr) << "there is no screen";
  SetActiveWindow(above);
  ASSERT_EQ(GetActiveWindow(), above);
  BringNativeWindowToFront(below);
  EXPECT_EQ(GetActiveWindow(), below);
  // Without a window the active one stays.
  BringNativeWindowToFront(nullptr);
  EXPECT_EQ(GetActiveWindow(), below);
  DestroyWindow(above);
  DestroyWindow(below);
}

#else

TEST(NativeWindow, IsLeftToTheToolkitWhereThereAreNoHandles) {
  // What it points to is nobody's business, so an address without anything behind it must do.
  BringNativeWindowToFront(nullptr);
  BringNativeWindowToFront(reinterpret_cast<void*>(1));
}

#endif

}  // namespace
