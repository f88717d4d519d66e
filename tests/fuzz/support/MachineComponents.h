// What every reading of a machine promises.
#pragma once

#include "platform/qelcore/Components.h"

namespace fuzz {

/// Components have names of valid UTF-8 without control characters and of bounded length, come in the
/// registry's order, and no property is there twice.
void RequireSoundComponents(const qelcore::utility::OSComponentRegistry::Components& components);

/// A machine reads the same twice.
void RequireEqualComponents(const qelcore::utility::OSComponentRegistry::Components& left,
                            const qelcore::utility::OSComponentRegistry::Components& right);

}  // namespace fuzz
