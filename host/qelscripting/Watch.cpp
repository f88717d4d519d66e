#include "host/qelscripting/Watch.h"

#include <cstdint>
#include <exception>

#include "host/qelscripting/Interpreter.h"
#include "platform/qelcore/Trace.h"

namespace qelscripting {

namespace {

/// A script can use several hundred kilobytes of the thread's stack, which has a megabyte or more.
constexpr int kMostRunningScripts = 2;

/// How many instructions Lua runs between two looks at the watch, for each coroutine on its own.
constexpr int kInstructionsBetweenLooks = 1000;

/// What a call counts. More than nothing, because a coroutine that ends before its first look would otherwise
/// run for nothing, and a script can make as many as it likes.
constexpr int kInstructionsOfACall = 10;

int runningScripts = 0;
std::uint64_t usedInstructions = 0;

bool IsStopWanted(const host::Options& options) noexcept {
  try {
    return options.mShouldStop && options.mShouldStop();
  } catch (...) {
    qelcore::LogException(std::current_exception(), "qelscripting::host::Options::mShouldStop");
    return true;
  }
}

/// The hook. It does not raise an error: a script could catch that, and Lua calls a script's error handler
/// with its hooks off.
void Look(lua_State* state, lua_Debug* event) {
  Interpreter& interpreter = Interpreter::Of(state);
  const host::Options& options = interpreter.GetOptions();
  usedInstructions += event->event == LUA_HOOKCOUNT ? kInstructionsBetweenLooks : kInstructionsOfACall;
  if (options.mInstructionLimit != 0 && usedInstructions > options.mInstructionLimit) {
    interpreter.Stop(state, "the script ran for too long and was stopped");
  }
  if (IsStopWanted(options)) {
    interpreter.Stop(state, "the script was stopped");
  }
}

}  // namespace

RunningScript::RunningScript(const std::string& name) {
  if (runningScripts == kMostRunningScripts) {
    throw host::ScriptError(name + ": too many scripts run within one another");
  }
  if (runningScripts == 0) {
    usedInstructions = 0;
  }
  ++runningScripts;
}

RunningScript::~RunningScript() {
  --runningScripts;
}

void InstallWatch(lua_State* state, const host::Options& options) {
  // Lua runs several times slower with a hook, so there is none where nothing is to be watched.
  if (options.mInstructionLimit != 0 || options.mShouldStop) {
    lua_sethook(state, Look, LUA_MASKCALL | LUA_MASKCOUNT, kInstructionsBetweenLooks);
  }
}

}  // namespace qelscripting
