// What file rules found on disk, remembered for the process.
#pragma once

#include <memory>
#include <string>

#include "platform/qelcore/Components.h"

namespace qelsystemcompatibilityreport {

/// The component for a file rule's path, as the rule writes it: kind `kFile`, the path with its placeholders
/// expanded as its name, the file's version. Null when the path is empty, a placeholder cannot be expanded,
/// or nothing is there. The disk is asked once for each path in a process, or by a thread that matches
/// separately. Not synchronised: all other matching in a process runs on one thread at a time.
[[nodiscard]] std::shared_ptr<qelcore::utility::OSComponent> FindFileComponent(const std::string& path);

/// Forgets every answer.
void ForgetFileComponents();

}  // namespace qelsystemcompatibilityreport
