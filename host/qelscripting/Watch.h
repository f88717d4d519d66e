// What stops scripts that do not end by themselves.
#pragma once

#include <lua.hpp>
#include <string>

#include "host/qelscripting/HostSetup.h"

namespace qelscripting {

/// Counts, while it lives, as a script that is running. Those that run within one another share one account
/// of instructions.
class RunningScript {
 public:
  /// Throws `ScriptError` when too many run within one another: each takes its part of the thread's stack.
  explicit RunningScript(const std::string& name);
  ~RunningScript();
  RunningScript(const RunningScript&) = delete;
  RunningScript& operator=(const RunningScript&) = delete;
};

/// Makes a state, and the coroutines that it will have, stop when the options say so.
void InstallWatch(lua_State* state, const host::Options& options);

}  // namespace qelscripting
