// A Windows machine as components.
#pragma once

#include <optional>

#include "host/qelcore/components/PIISafeName.h"
#include "host/qelcore/components/PropertyKeeping.h"
#include "host/qelcore/windows/components/DeviceSource.h"
#include "host/qelcore/windows/components/SystemFacts.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::windows {

/// The components in registry order: "Windows", video, audio, network, then properties when
/// `OSComponent::SupportsProperties()`. What the machine does not say is left out. No name holds any of
/// `names`. Without `keeping` the properties are made afresh and not kept.
[[nodiscard]] utility::OSComponentRegistry::Components ReadMachine(
    const DeviceSource& source, const SystemFacts& facts, const PersonalNames& names,
    const std::optional<components::PropertyKeeping>& keeping);

}  // namespace qelcore::host::windows
