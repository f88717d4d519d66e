#include "host/qelscripting/Interpreter.h"

#include <cstdio>
#include <new>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/Definitions.h"
#include "host/qelscripting/Libraries.h"
#include "host/qelscripting/Watch.h"

namespace qelscripting {

namespace {

/// The status of a script that was left through `Stop`; differs from Lua's own.
constexpr int kStopped = -1;

struct Job {
  const Script& mScript;
  std::string mChunkName;
  std::vector<std::string> mValues;
};

/// Copies a text out of Lua. Returns false, and leaves `text` as it was, when there is no memory for it.
bool Assign(std::string& text, const char* start, std::size_t length) noexcept {
  try {
    text.assign(start, length);
    return true;
  } catch (...) {
    return false;
  }
}

bool Append(std::vector<std::string>& texts, const char* start, std::size_t length) noexcept {
  try {
    texts.emplace_back(start, length);
    return true;
  } catch (...) {
    return false;
  }
}

int ConvertToText(lua_State* state) {
  luaL_tolstring(state, 1, nullptr);
  return 1;
}

/// Replaces an error object by a text: a script may raise anything.
void ConvertErrorObject(lua_State* state) {
  const bool hasText = lua_isnumber(state, 1) != 0 || luaL_getmetafield(state, 1, "__tostring") != LUA_TNIL;
  lua_settop(state, 1);
  lua_pushcfunction(state, ConvertToText);
  lua_pushvalue(state, 1);
  // Converting may fail itself, because it is the script's code.
  if (!hasText || lua_pcall(state, 1, 1, 0) != LUA_OK) {
    lua_pushfstring(state, "(error object is a %s value)", luaL_typename(state, 1));
  }
  lua_replace(state, 1);
}

void KeepTraceback(lua_State* state) {
  Interpreter& interpreter = Interpreter::Of(state);
  luaL_traceback(state, state, nullptr, 1);
  std::size_t length = 0;
  const char* const text = lua_tolstring(state, -1, &length);
  Assign(interpreter.mTraceback, text, length);
  lua_pop(state, 1);
}

/// The message handler: notes what was raised and where, while the calls that led there still stand.
int NoteError(lua_State* state) {
  if (lua_type(state, 1) != LUA_TSTRING) {
    ConvertErrorObject(state);
  }
  std::size_t length = 0;
  const char* const text = lua_tolstring(state, 1, &length);
  Assign(Interpreter::Of(state).mMessage, text, length);
  KeepTraceback(state);
  lua_settop(state, 1);
  return 1;
}

int NoteTraceback(lua_State* state) {
  KeepTraceback(state);
  return 0;
}

int Load(lua_State* state, const Job& job) {
  constexpr const char* kTextOnly = "t";
  const Script& script = job.mScript;
  if (!script.mExpression.empty()) {
    const int status = luaL_loadbufferx(state, script.mExpression.data(), script.mExpression.size(),
                                        job.mChunkName.c_str(), kTextOnly);
    if (status == LUA_OK) {
      return status;
    }
    lua_pop(state, 1);
  }
  return luaL_loadbufferx(state, script.mText.data(), script.mText.size(), job.mChunkName.c_str(), kTextOnly);
}

int RunJob(lua_State* state) {
  auto& job = *static_cast<Job*>(lua_touserdata(state, 1));
  lua_settop(state, 0);
  if (Load(state, job) != LUA_OK) {
    return lua_error(state);
  }
  lua_call(state, 0, LUA_MULTRET);
  const int count = lua_gettop(state);
  luaL_checkstack(state, LUA_MINSTACK, "too many results");
  for (int index = 1; index <= count; ++index) {
    std::size_t length = 0;
    const char* const text = luaL_tolstring(state, index, &length);
    if (!Append(job.mValues, text, length)) {
      return luaL_error(state, "not enough memory");
    }
    lua_pop(state, 1);
  }
  return 0;
}

int SetUp(lua_State* state) {
  auto& bindings = *static_cast<Bindings*>(lua_touserdata(state, 1));
  lua_settop(state, 0);
  OpenLibraries(state);
  bindings.AddTo(state);
  return 0;
}

/// Sets a flag for a scope.
class Flag {
 public:
  explicit Flag(bool& flag) : mFlag(flag) { mFlag = true; }
  ~Flag() { mFlag = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& mFlag;
};

}  // namespace

struct Interpreter::State {
  State(std::size_t memoryLimit, const ClassDefinitions& definitions)
      : mMemory(memoryLimit),
        mBindings(definitions),
        mLua(lua_newstate(ScriptMemory::Reallocate, &mMemory)) {}

  ScriptMemory mMemory;
  Bindings mBindings;
  /// Never closed, because it may have been left in the middle of its work: its memory goes all the same, and
  /// no value of a script owns anything else.
  lua_State* mLua;
};

Interpreter::Interpreter(host::Options options) : mOptions(std::move(options)), mEscape() {}
Interpreter::~Interpreter() = default;

Interpreter& Interpreter::Of(lua_State* state) {
  return **static_cast<Interpreter**>(lua_getextraspace(state));
}

void Interpreter::Start() {
  std::unique_ptr<State> started;
  try {
    started = std::make_unique<State>(mOptions.mMemoryLimit, AllClassDefinitions());
  } catch (const std::bad_alloc&) {
    throw DescribeFailure(LUA_ERRMEM);
  }
  if (started->mLua == nullptr) {
    throw DescribeFailure(LUA_ERRMEM);
  }
  *static_cast<Interpreter**>(lua_getextraspace(started->mLua)) = this;
  mState = std::move(started);
  const int status = Enter(SetUp, &mState->mBindings);
  if (status != LUA_OK) {
    mState.reset();
    throw DescribeFailure(status);
  }
  InstallWatch(mState->mLua, mOptions);
}

/// Calls `body` with `argument`. Returns a status of Lua or `kStopped`.
int Interpreter::Enter(lua_CFunction body, void* argument) {
  // `Stop` jumps into this frame.
  if (setjmp(mEscape) != 0) {
    return kStopped;
  }
  lua_State* const state = mState->mLua;
  lua_settop(state, 0);
  lua_pushcfunction(state, NoteError);
  lua_pushcfunction(state, body);
  lua_pushlightuserdata(state, argument);
  return lua_pcall(state, 1, 0, 1);
}

std::vector<std::string> Interpreter::Run(const Script& script) {
  if (mIsRunning) {
    throw host::ScriptError(script.mName + ": the session is running a script already");
  }
  if (script.mText.starts_with(LUA_SIGNATURE[0])) {
    throw host::ScriptError(script.mName + ": a script is text, but this is compiled code");
  }
  const Flag isRunning(mIsRunning);
  const RunningScript runningScript(script.mName);
  mScriptName = script.mName;
  mMessage.clear();
  mTraceback.clear();
  if (!mState) {
    Start();
  }
  Job job{script, '@' + script.mName, {}};
  const int status = Enter(RunJob, &job);
  if (status != LUA_OK) {
    const host::ScriptError failure = DescribeFailure(status);
    if (status == kStopped) {
      mState.reset();
    }
    throw failure;
  }
  return std::move(job.mValues);
}

host::ScriptError Interpreter::DescribeFailure(int status) const {
  if (status == LUA_ERRMEM || mMessage == "not enough memory") {
    return host::ScriptError(mScriptName + ": not enough memory: a script may use " +
                                 std::to_string(mOptions.mMemoryLimit) + " bytes",
                             mTraceback);
  }
  return host::ScriptError(!mMessage.empty() ? mMessage : mScriptName + ": failed for an unknown reason",
                           mTraceback);
}

void Interpreter::Stop(lua_State* state, const char* reason) {
  NoteStop(state, reason);
  // Making a traceback may fail, for want of memory or of calls that may be nested: then there is none.
  lua_pushcfunction(state, NoteTraceback);
  lua_pcall(state, 0, 0, 0);
  std::longjmp(mEscape, 1);
}

/// Notes where the script is and why it stops. Asks Lua only for what it gives without ever raising an error.
void Interpreter::NoteStop(lua_State* state, const char* reason) noexcept {
  try {
    std::string place = mScriptName + ": ";
    lua_Debug function;
    for (int level = 0; lua_getstack(state, level, &function) != 0; ++level) {
      lua_getinfo(state, "Sl", &function);
      if (function.currentline > 0) {
        place = std::string(function.short_src) + ':' + std::to_string(function.currentline) + ": ";
        break;
      }
    }
    mMessage = place + reason;
  } catch (...) {
    mMessage.clear();
  }
}

bool Interpreter::Print(const char* text, std::size_t length) noexcept {
  try {
    if (mOptions.mPrint) {
      mOptions.mPrint(std::string_view(text, length));
    } else {
      std::fwrite(text, 1, length, stdout);
    }
    return true;
  } catch (...) {
    mReply.SetFailure("print", std::current_exception());
    return false;
  }
}

int RaiseReply(lua_State* state) {
  const std::string& text = Interpreter::Of(state).mReply.mText;
  luaL_where(state, 1);
  lua_pushlstring(state, text.data(), text.size());
  lua_concat(state, 2);
  return lua_error(state);
}

}  // namespace qelscripting
