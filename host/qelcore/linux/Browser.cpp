#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <system_error>
#include <thread>

#include "host/qelcore/System.h"

namespace qelcore::host {

bool OpenInSystemBrowser(const std::string& url) {
  std::string program = "xdg-open";
  std::string address = url;
  // No shell is involved, and an address never begins with a hyphen.
  const std::array<char*, 3> arguments{program.data(), address.data(), nullptr};
  pid_t process = 0;
  const int error = posix_spawnp(&process, program.c_str(), nullptr, nullptr, arguments.data(), environ);
  if (error != 0) throw std::system_error(error, std::generic_category(), program);
  // It may run as long as the browser does; somebody has to collect it.
  std::thread([process] { waitpid(process, nullptr, 0); }).detach();
  return true;
}

}  // namespace qelcore::host
