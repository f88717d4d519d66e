// One interpreter: a Lua state and what belongs to it outside of Lua.
//
// Lua is C and leaves its functions with `longjmp`, which passes over C++ frames without calling destructors.
// So here is the rule for every function that Lua calls and that may raise an error: it owns nothing that has
// a destructor. What needs C++ objects stands in functions of their own, which call no function of Lua that
// may raise, let no exception out, and leave their result in the interpreter.
#pragma once

#include <csetjmp>
#include <lua.hpp>
#include <memory>
#include <string>
#include <vector>

#include "host/qelscripting/Bindings.h"
#include "host/qelscripting/HostSetup.h"
#include "host/qelscripting/ScriptMemory.h"

namespace qelscripting {

struct Script {
  std::string mName;
  std::string mText;
  std::string mExpression;  ///< what to try instead of the text first; may be empty
};

class Interpreter {
 public:
  explicit Interpreter(host::Options options);
  ~Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  /// The interpreter that a Lua state, or a coroutine of it, belongs to.
  [[nodiscard]] static Interpreter& Of(lua_State* state);

  /// Runs a script and returns its values as text. Throws `ScriptError`.
  std::vector<std::string> Run(const Script& script);

  [[nodiscard]] const host::Options& GetOptions() const { return mOptions; }

  /// Leaves the script that is running, at once and for good. For hooks.
  [[noreturn]] void Stop(lua_State* state, const char* reason);

  /// Gives a text to the sink of `print`. Returns false when that failed; the text of the reply says why.
  [[nodiscard]] bool Print(const char* text, std::size_t length) noexcept;

  /// What the C++ side of a function wants its Lua side to return.
  Reply mReply;

  /// Why the last script failed.
  std::string mMessage;
  std::string mTraceback;

 private:
  struct State;

  void Start();
  int Enter(lua_CFunction body, void* argument);
  [[nodiscard]] host::ScriptError DescribeFailure(int status) const;
  void NoteStop(lua_State* state, const char* reason) noexcept;

  host::Options mOptions;
  std::unique_ptr<State> mState;  ///< null before the first script and after one that was stopped
  bool mIsRunning = false;
  std::string mScriptName;  ///< of the last script
  std::jmp_buf mEscape;
};

/// Raises the text of the interpreter's reply as an error, at the script's present line. For functions that
/// Lua calls.
int RaiseReply(lua_State* state);

}  // namespace qelscripting
