// The localised name of a component's kind.
#pragma once

#include <string>

#include "platform/qelcore/Components.h"

namespace qelsystemcompatibilityreport {

/// "Operating System", "Video", "Audio", "Network", "File System", "Property", or "Unknown" for any other
/// value, in the application's language.
[[nodiscard]] std::u16string KindLabel(qelcore::utility::OSComponentType kind);

}  // namespace qelsystemcompatibilityreport
