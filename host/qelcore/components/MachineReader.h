// The running machine, as the component registry reads it. One implementation for each system.
#pragma once

#include "platform/qelcore/Components.h"

namespace qelcore::host {

/// Enumerates this machine in registry order: operating system, video, audio, network, then properties when
/// `OSComponent::SupportsProperties()`. `explicitRun` is that of `OSComponentRegistry::Get`. What cannot be
/// read is left out; does not throw for a machine that lacks something.
[[nodiscard]] utility::OSComponentRegistry::Components ReadThisMachine(bool explicitRun);

/// The same, all read anew, and nothing is written: neither the preferences directory nor anything in it.
[[nodiscard]] utility::OSComponentRegistry::Components ReadThisMachineWithoutKeeping();

/// Deletes the properties that `ReadThisMachine` saved in the preferences directory. Throws when they exist
/// and cannot be deleted.
void DeleteSavedProperties();

}  // namespace qelcore::host
