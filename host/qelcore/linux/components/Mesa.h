// The user-space part of the free graphics drivers.
#pragma once

#include "host/qelcore/linux/components/RootedFiles.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::components {

/// The version of the installed Mesa, read from the name of its library or from what the package manager
/// recorded. Empty when there is none or its version cannot be read.
[[nodiscard]] utility::OSComponentVersion MesaVersion(const RootedFiles& files);

}  // namespace qelcore::host::components
