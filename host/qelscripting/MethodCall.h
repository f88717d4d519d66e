// Calls of methods by scripts.
#pragma once

#include <lua.hpp>

namespace qelscripting {

/// The function behind each method. Its first upvalue is the address of the `BoundMethod`, its second the
/// object that stands for the namespace: as the first argument it means a call with a colon.
int CallMethod(lua_State* state);

}  // namespace qelscripting
