#include "host/qelcore/linux/UserAccount.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace qelcore::host {

UserAccount ReadUserAccount() {
  constexpr std::size_t kLargestBuffer = 1'048'576;
  std::vector<char> buffer(1024);
  passwd entry{};
  passwd* found = nullptr;
  int error = ERANGE;
  while (error == ERANGE && buffer.size() < kLargestBuffer) {
    buffer.resize(buffer.size() * 2);
    error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  }
  if (error != 0 || found == nullptr) {
    return {};
  }
  const auto text = [](const char* value) { return value != nullptr ? std::string(value) : std::string(); };
  return {.mName = text(found->pw_name), .mHome = text(found->pw_dir)};
}

std::string EnvironmentValue(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : std::string();
}

std::string HomeDirectory() {
  for (std::string home : {EnvironmentValue("HOME"), ReadUserAccount().mHome}) {
    if (home.starts_with('/')) {
      return home;
    }
  }
  return {};
}

}  // namespace qelcore::host
