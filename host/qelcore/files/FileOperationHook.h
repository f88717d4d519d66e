// The call of the hook that an application or a test may have set on file operations.
#pragma once

#include <string>

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

/// Announces an operation to the hook, if there is one. Throws what the hook throws. Any thread may call.
void AnnounceFileOperation(FileOperation operation, const std::string& path);

}  // namespace qelcore::host
