// The functions that every script has.
#pragma once

#include <lua.hpp>

namespace qelscripting {

/// Fills the globals of a fresh state. For a function that Lua calls.
void OpenLibraries(lua_State* state);

}  // namespace qelscripting
