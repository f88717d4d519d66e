// The scripting library's own interface: how an application runs scripts.
//
//   qelscripting::host::RunScriptFile("/home/a/nightly.lua");
//
// Scripts are Lua 5.4. Each class that was defined through `platform/qelscripting.h` is there as a global of
// its namespace's name, whose methods are called with a dot or a colon:
//
//   SystemCompatibilityReport.CreateReport("/home/a/report.txt")
//
// A script reaches nothing else: no files, no programs, no environment, no other modules, no compiled code.
// It has the libraries `coroutine`, `math`, `string`, `table` and `utf8`, of `os` the functions that tell the
// time, and of the basic functions all but those that read files or steer the memory.
//
// Everything here is the main thread's. A method may run another script, but that one's methods none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelscripting.h"

namespace qelscripting {
class Interpreter;
}

namespace qelscripting::host {

/// A script that could not be read, that is not well formed, that failed or that was stopped. `what` is one
/// message, valid UTF-8, that begins with the script's name and the line where there is one: "a.lua:3: ...".
class QELSCRIPTING_EXPORT ScriptError : public std::runtime_error {
 public:
  explicit ScriptError(const std::string& message, const std::string& traceback = {});
  ~ScriptError() override;
  ScriptError(const ScriptError&);
  ScriptError& operator=(const ScriptError&);

  /// The calls that led to the error, the innermost first, in several lines; at most some twenty calls. Empty
  /// when no script was running.
  [[nodiscard]] const std::string& GetTraceback() const { return mTraceback; }

 private:
  std::string mTraceback;
};

/// What scripts may use, and where they write.
struct Options {
  /// The most memory that one session may use, in bytes. A script that wants more fails.
  std::size_t mMemoryLimit = 268'435'456;

  /// After so many instructions a script is stopped; 0 means never. It is a bound and no exact number: Lua
  /// looks at it every thousand instructions and at each call, and a call counts as ten. Coroutines count,
  /// and so do the scripts that a method runs. What one function of a library does inside counts nothing: a
  /// search for a bad pattern, or a loop over numbers such as that of `table.move`, can take as long as it
  /// likes.
  std::uint64_t mInstructionLimit = 0;

  /// Asked as often as the limit is looked at; when it returns true, or throws, the script is stopped. It may
  /// look at a clock or at a flag.
  std::function<bool()> mShouldStop{};

  /// Gets what `print` writes, with the line feed, as the script made it: it need not be valid UTF-8. What it
  /// throws is an error of the script. Empty means standard output.
  std::function<void(std::string_view text)> mPrint{};
};

/// Sets the options of the sessions that are made from now on.
QELSCRIPTING_EXPORT void SetOptions(Options options);

/// Sets what `ScriptDefinitions::GetScriptComponentGroupDefinitions` returns for a class.
QELSCRIPTING_EXPORT void SetScriptComponentGroups(std::string className, ScriptComponentGroups groups);

/// Scripts that share their globals, such as those that a user types into a console. A session knows the
/// classes that are defined when its first script runs, and makes one object of a class when a script first
/// calls it; the objects live as long as the session.
///
/// A script that fails leaves the globals as they are at that moment. A script that is stopped cannot catch
/// that, and takes the globals and the objects with it: the next one starts with a new set.
class QELSCRIPTING_EXPORT ScriptSession {
 public:
  ScriptSession();
  ~ScriptSession();
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;

  /// Runs a script file, UTF-8 with or without a byte order mark, to its end. A first line that begins with
  /// "#" is skipped. Throws `ScriptError`, also when this session is running a script already.
  void RunFile(const std::string& utf8Path);

  /// Runs a text and returns the values that it returned, as `print` would show them. A text that is an
  /// expression, or several with commas, returns their values. `chunkName` stands for the file's name in
  /// messages. Throws `ScriptError` as `RunFile` does.
  std::vector<std::string> RunText(std::string_view text, const std::string& chunkName);

 private:
  std::unique_ptr<Interpreter> mInterpreter;
};

/// Runs a script file in a session of its own.
QELSCRIPTING_EXPORT void RunScriptFile(const std::string& utf8Path);

/// Runs a text in a session of its own and returns the values that it returned.
QELSCRIPTING_EXPORT std::vector<std::string> RunScriptText(std::string_view text,
                                                           const std::string& chunkName);

}  // namespace qelscripting::host
