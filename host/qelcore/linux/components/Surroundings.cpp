#include "host/qelcore/linux/components/Surroundings.h"

#include <sys/utsname.h>

#include <cstdlib>

namespace qelcore::host::components {

Surroundings SurroundingsOfThisProcess() {
  Surroundings surroundings;
  for (const std::string_view name : kVariables) {
    if (const char* const value = std::getenv(std::string(name).c_str())) {
      surroundings.mEnvironment.emplace(name, value);
    }
  }
  utsname system{};
  if (uname(&system) == 0) surroundings.mArchitecture = system.machine;
  surroundings.mAskNetworkDriver = AskNetworkDriver;
  return surroundings;
}

}  // namespace qelcore::host::components
