#include <dlfcn.h>
#include <limits.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/qelnet/Requests.h"

namespace qelnet {

namespace {

constexpr const char* kFileName = "libqelnet_requests.so";

[[noreturn]] void Fail() {
  const char* const error = dlerror();
  throw std::runtime_error(std::string("nothing can be downloaded: ") +
                           (error != nullptr ? error : "unknown error"));
}

/// Where this library was when it was loaded. Its name can be relative to the directory of that moment.
std::filesystem::path DirectoryOfThisLibrary() {
  Dl_info info{};
  if (dladdr(&kFileName, &info) == 0) Fail();
  void* const self = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  if (self == nullptr) Fail();
  std::array<char, PATH_MAX> origin{};
  const bool isKnown = dlinfo(self, RTLD_DI_ORIGIN, origin.data()) == 0;
  dlclose(self);
  if (!isKnown) Fail();
  return origin.data();
}

Requests& Load() {
  const std::string path = (DirectoryOfThisLibrary() / kFileName).string();
  // Never unloaded: a name that is still looked up keeps a thread in it beyond the end of the requests.
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) Fail();
  void* const function = dlsym(library, kRequestsFunction);
  if (function == nullptr) Fail();
  return *reinterpret_cast<RequestsFunction>(function)();
}

}  // namespace

Requests& TheRequests() {
  static Requests& requests = Load();
  return requests;
}

}  // namespace qelnet
