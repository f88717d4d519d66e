#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/qelui/NativeToolkit.h"

namespace qelui::host {

namespace {

constexpr const wchar_t* kFileName = L"qelui_native.dll";

[[noreturn]] void ThrowSystemError() {
  // The system's own words are in its language and its code page.
  throw std::runtime_error("there are no windows: qelui_native.dll cannot be loaded, error " +
                           std::to_string(GetLastError()) + " of the system");
}

std::filesystem::path DirectoryOfThisLibrary() {
  HMODULE module = nullptr;
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<LPCWSTR>(&LoadNativeToolkit), &module) == FALSE)
    ThrowSystemError();
  // The longest path that the system can name.
  std::wstring path(32'768, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

}  // namespace

StartFunction LoadNativeToolkit() {
  const std::filesystem::path path = DirectoryOfThisLibrary() / kFileName;
  // What it needs stands beside it or belongs to the system; no other directory is searched. Never unloaded:
  // window classes and threads of the system's toolkit stay.
  const HMODULE library =
      LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (library == nullptr) ThrowSystemError();
  const FARPROC function = GetProcAddress(library, kStartFunction);
  if (function == nullptr) ThrowSystemError();
  // By way of a pointer to anything, as the system means it: the types of functions have nothing in common.
  return reinterpret_cast<StartFunction>(reinterpret_cast<void*>(function));
}

}  // namespace qelui::host
