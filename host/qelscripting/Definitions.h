// The classes that scripts know, and the initiators that define them.
#pragma once

#include <memory>
#include <vector>

#include "platform/qelscripting.h"

namespace qelscripting {

using ClassDefinitions = std::vector<std::shared_ptr<const ScriptObjectDefinition>>;

/// All classes in the order in which they were first defined. Asks the initiators that were not asked yet.
[[nodiscard]] ClassDefinitions AllClassDefinitions();

}  // namespace qelscripting
