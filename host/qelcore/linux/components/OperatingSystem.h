// The kernel and the distribution.
#pragma once

#include <string>
#include <vector>

#include "host/qelcore/linux/components/RootedFiles.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::components {

struct OperatingSystem {
  std::string mKernelRelease;  ///< "6.1.0-18-amd64"; empty when it cannot be read
  utility::OSComponentVersion mKernelVersion;
  std::string mDistribution;         ///< "Debian GNU/Linux"; empty when it does not say
  std::string mDistributionVersion;  ///< "12"; empty for a rolling distribution
  std::string mDistributionTitle;    ///< "Debian GNU/Linux 12 (bookworm)"
};

[[nodiscard]] OperatingSystem ReadOperatingSystem(const RootedFiles& files);

/// The operating system's components: the kernel as "Linux", then the distribution.
[[nodiscard]] std::vector<utility::OSComponent> ComponentsOf(const OperatingSystem& system);

}  // namespace qelcore::host::components
