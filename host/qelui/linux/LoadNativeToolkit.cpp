#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

#include "host/qelui/NativeToolkit.h"

namespace qelui::host {

namespace {

constexpr const char* kFileName = "libqelui_native.so";

std::filesystem::path DirectoryOfThisLibrary() {
  Dl_info info{};
  if (dladdr(&kFileName, &info) == 0 || info.dli_fname == nullptr) return {};
  return std::filesystem::path(info.dli_fname).parent_path();
}

/// What the loader says went wrong.
std::string LoaderError() {
  const char* const error = dlerror();
  return error != nullptr ? error : "unknown error";
}

}  // namespace

StartFunction LoadNativeToolkit() {
  const std::string path = (DirectoryOfThisLibrary() / kFileName).string();
  // Never unloaded: the system's toolkit registers types that cannot be taken back.
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) throw std::runtime_error("there are no windows: " + LoaderError());
  void* const function = dlsym(library, kStartFunction);
  if (function == nullptr) throw std::runtime_error("there are no windows: " + LoaderError());
  return reinterpret_cast<StartFunction>(function);
}

}  // namespace qelui::host
