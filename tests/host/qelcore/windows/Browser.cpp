// Stands for a browser: hands its command line to the test that waits for it.
//
// The test names a file in QELSCR_BROWSER_FILE and an event in QELSCR_BROWSER_EVENT.
#include <cstddef>
#include <cstdlib>
#include <cwchar>

#include "host/qelcore/windows/SystemHeaders.h"

int main() {
  const wchar_t* const path = _wgetenv(L"QELSCR_BROWSER_FILE");
  const wchar_t* const eventName = _wgetenv(L"QELSCR_BROWSER_EVENT");
  if (path == nullptr || eventName == nullptr) return 1;
  const HANDLE file = ::CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  const wchar_t* const line = ::GetCommandLineW();
  DWORD count = 0;
  ::WriteFile(file, line, static_cast<DWORD>(std::wcslen(line) * sizeof(wchar_t)), &count, nullptr);
  ::CloseHandle(file);
  const HANDLE event = ::OpenEventW(EVENT_MODIFY_STATE, FALSE, eventName);
  if (event == nullptr) return 1;
  ::SetEvent(event);
  ::CloseHandle(event);
  return 0;
}
