// `AskNetworkDriver` is apart from the readers of files: it is the one question that goes to the kernel
// itself.
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "host/qelcore/linux/components/Drivers.h"

namespace qelcore::host::components {

std::string AskNetworkDriver(const std::string& interface) {
  ifreq request{};
  if (interface.empty() || interface.size() >= sizeof(request.ifr_name)) return {};
  interface.copy(request.ifr_name, sizeof(request.ifr_name) - 1);
  ethtool_drvinfo information{};
  information.cmd = ETHTOOL_GDRVINFO;
  request.ifr_data = reinterpret_cast<char*>(&information);

  const int channel = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (channel < 0) return {};
  const int result = ioctl(channel, SIOCETHTOOL, &request);
  close(channel);
  if (result != 0) return {};
  return {information.version, strnlen(information.version, sizeof(information.version))};
}

}  // namespace qelcore::host::components
