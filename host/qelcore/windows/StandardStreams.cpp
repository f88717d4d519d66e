#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/windows/SystemHeaders.h"

namespace qelcore::host {

namespace {

/// The code pages that the console had before; 0 for none. They stay with the console when the program ends.
UINT outputPageBefore = 0;
UINT inputPageBefore = 0;

void RestoreConsole() {
  if (outputPageBefore != 0) {
    ::SetConsoleOutputCP(outputPageBefore);
  }
  if (inputPageBefore != 0) {
    ::SetConsoleCP(inputPageBefore);
  }
}

bool IsConsole(DWORD stream) {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(stream), &mode) != 0;
}

void UseUtf8OnConsole() {
  if (IsConsole(STD_OUTPUT_HANDLE) || IsConsole(STD_ERROR_HANDLE)) {
    outputPageBefore = ::GetConsoleOutputCP();
    ::SetConsoleOutputCP(CP_UTF8);
  }
  if (IsConsole(STD_INPUT_HANDLE)) {
    inputPageBefore = ::GetConsoleCP();
    ::SetConsoleCP(CP_UTF8);
  }
  if (outputPageBefore != 0 || inputPageBefore != 0) {
    static_cast<void>(std::atexit(RestoreConsole));
  }
}

/// Gives a stream that the program was started without, or with a handle that is closed, the null device, so
/// that no file that is opened gets the same handle.
void TakePlaceOf(DWORD stream) {
  const HANDLE handle = ::GetStdHandle(stream);
  ::SetLastError(ERROR_SUCCESS);
  const bool isOpen = handle != nullptr && handle != INVALID_HANDLE_VALUE &&
                      (::GetFileType(handle) != FILE_TYPE_UNKNOWN || ::GetLastError() == ERROR_SUCCESS);
  if (!isOpen) {
    // For reading only, so that writing to an output that the caller closed still fails.
    const HANDLE null = ::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    ::SetStdHandle(stream, null != INVALID_HANDLE_VALUE ? null : nullptr);
  }
}

}  // namespace

void ReserveStandardStreams() {
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    TakePlaceOf(stream);
  }
  // What is written is the same as on every system: without it a line's end would become two characters.
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    const int descriptor = ::_fileno(stream);
    if (descriptor >= 0) {
      ::_setmode(descriptor, _O_BINARY);
    }
  }
  UseUtf8OnConsole();
}

bool IsStandardErrorATerminal() {
  return IsConsole(STD_ERROR_HANDLE);
}

}  // namespace qelcore::host
