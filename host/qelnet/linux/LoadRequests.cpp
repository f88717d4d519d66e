#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/qelnet/Requests.h"

namespace qelnet {

namespace {

constexpr const char* kFileName = "libqelnet_requests.so";

std::filesystem::path DirectoryOfThisLibrary() {
  Dl_info info{};
  if (dladdr(&kFileName, &info) == 0 || info.dli_fname == nullptr) return {};
  return std::filesystem::path(info.dli_fname).parent_path();
}

[[noreturn]] void Fail() {
  const char* const error = dlerror();
  throw std::runtime_error(std::string("nothing can be downloaded: ") +
                           (error != nullptr ? error : "unknown error"));
}

Requests& Load() {
  const std::string path = (DirectoryOfThisLibrary() / kFileName).string();
  // Never unloaded: a name that is still looked up keeps a thread in it beyond the end of the requests.
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) Fail();
  void* const function = dlsym(library, kRequestsFunction);
  if (function == nullptr) Fail();
  return reinterpret_cast<RequestsFunction>(function)();
}

}  // namespace

Requests& TheRequests() {
  static Requests& requests = Load();
  return requests;
}

}  // namespace qelnet
