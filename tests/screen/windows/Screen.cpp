#include "tests/screen/windows/Screen.h"

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace testsupport {

namespace {

constexpr DWORD kLongMilliseconds = 60'000;
constexpr DWORD kPauseMilliseconds = 20;

std::string Narrow(const std::wstring& text) {
  const std::u8string narrow = std::filesystem::path(text).u8string();
  return {narrow.begin(), narrow.end()};
}

std::wstring Wide(const std::string& text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

/// "&Fix..." is shown as "Fix...", with a line below the F.
std::string WithoutMnemonic(std::wstring text) {
  std::erase(text, L'&');
  return Narrow(text);
}

HWND WindowOf(void* handle) {
  return static_cast<HWND>(handle);
}

void PressKey(WORD key) {
  INPUT events[2]{};
  for (INPUT& event : events) {
    event.type = INPUT_KEYBOARD;
    event.ki.wVk = key;
  }
  events[1].ki.dwFlags = KEYEVENTF_KEYUP;
  EXPECT_EQ(SendInput(2, events, sizeof(INPUT)), 2U);
}

}  // namespace

bool WaitUntil(const std::function<bool()>& holds) {
  for (DWORD waited = 0; waited < kLongMilliseconds; waited += kPauseMilliseconds) {
    if (holds()) return true;
    Sleep(kPauseMilliseconds);
  }
  return holds();
}

std::string ScreenWindow::Text() const {
  const HWND window = WindowOf(mHandle);
  // Of another process's control only the control itself can tell the text.
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return WithoutMnemonic(text);
}

bool ScreenWindow::IsVisible() const {
  return IsWindowVisible(WindowOf(mHandle)) != FALSE;
}

bool ScreenWindow::IsEnabled() const {
  return IsWindowEnabled(WindowOf(mHandle)) != FALSE;
}

std::vector<ScreenWindow> ScreenWindow::VisibleControls() const {
  std::vector<ScreenWindow> controls;
  EnumChildWindows(
      WindowOf(mHandle),
      [](HWND window, LPARAM list) -> BOOL {
        if (IsWindowVisible(window)) reinterpret_cast<std::vector<ScreenWindow>*>(list)->emplace_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&controls));
  return controls;
}

bool ScreenWindow::Shows(const std::string& text) const {
  return std::ranges::any_of(VisibleControls(),
                             [&](const ScreenWindow& control) { return control.Text() == text; });
}

void ScreenWindow::Press(const std::string& text) const {
  for (const ScreenWindow& control : VisibleControls()) {
    if (control.Text() != text) continue;
    PostMessageW(WindowOf(control.mHandle), BM_CLICK, 0, 0);
    return;
  }
  ADD_FAILURE() << "nothing to press is called " << text;
}

void ScreenWindow::ChooseMenuLine(int menu, int line) const {
  EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == WindowOf(mHandle); }));
  PressKey(VK_F10);
  for (int step = 0; step < menu; ++step) PressKey(VK_RIGHT);
  // The first step opens the menu.
  for (int step = 0; step <= line; ++step) PressKey(VK_DOWN);
  PressKey(VK_RETURN);
}

void ScreenWindow::Close() const {
  PostMessageW(WindowOf(mHandle), WM_CLOSE, 0, 0);
}

ScreenProgram::ScreenProgram(const std::filesystem::path& program,
                             const std::vector<std::string>& arguments) {
  std::wstring command = L"\"" + program.wstring() + L"\"";
  for (const std::string& argument : arguments) command += L" \"" + Wide(argument) + L"\"";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process))
    throw std::runtime_error("the program does not start");
  CloseHandle(process.hThread);
  mProcess = process.hProcess;
  mId = process.dwProcessId;
}

ScreenProgram::~ScreenProgram() {
  TerminateProcess(mProcess, 1);
  WaitForSingleObject(mProcess, kLongMilliseconds);
  CloseHandle(mProcess);
}

ScreenWindow ScreenProgram::WaitForWindow(const std::string& title) {
  HWND found = nullptr;
  const std::wstring wide = Wide(title);
  const auto find = [&] {
    // Titles come twice while one dialog stands above a window of the same name; the dialog is the upper one.
    for (HWND window = nullptr;
         (window = FindWindowExW(nullptr, window, nullptr, wide.c_str())) != nullptr;) {
      DWORD owner = 0;
      GetWindowThreadProcessId(window, &owner);
      if (owner != mId || !IsWindowVisible(window)) continue;
      found = window;
      return true;
    }
    return false;
  };
  if (!WaitUntil(find)) throw std::runtime_error("no window is called " + title);
  return ScreenWindow(found);
}

std::vector<std::string> ScreenProgram::Titles() const {
  struct Search {
    DWORD mOwner;
    std::vector<std::string> mTitles;
  } search{mId, {}};
  EnumWindows(
      [](HWND window, LPARAM context) -> BOOL {
        auto* const inner = reinterpret_cast<Search*>(context);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == inner->mOwner && IsWindowVisible(window))
          inner->mTitles.push_back(ScreenWindow(window).Text());
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.mTitles;
}

int ScreenProgram::WaitForEnd() {
  if (WaitForSingleObject(mProcess, kLongMilliseconds) != WAIT_OBJECT_0)
    throw std::runtime_error("the program does not end");
  DWORD code = 0;
  GetExitCodeProcess(mProcess, &code);
  return static_cast<int>(code);
}

}  // namespace testsupport
