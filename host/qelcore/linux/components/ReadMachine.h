// The machine below a root directory as components.
#pragma once

#include <filesystem>
#include <optional>

#include "host/qelcore/components/PropertyKeeping.h"
#include "host/qelcore/linux/components/Surroundings.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::components {

/// The components in registry order: operating system, video, audio, network, then properties when
/// `OSComponent::SupportsProperties()`. What cannot be read is left out. Reads below `root` only, starts no
/// process and wakes no device. Without `keeping` the properties are read afresh and not kept; a failure to
/// keep them or to take them is logged and has no other effect.
[[nodiscard]] utility::OSComponentRegistry::Components ReadMachine(
    const std::filesystem::path& root, const Surroundings& surroundings,
    const std::optional<PropertyKeeping>& keeping);

}  // namespace qelcore::host::components
