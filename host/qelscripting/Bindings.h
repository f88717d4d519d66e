// What scripts see of the defined classes: a global for each namespace.
#pragma once

#include <deque>
#include <exception>
#include <lua.hpp>
#include <memory>
#include <string>
#include <string_view>

#include "host/qelscripting/Definitions.h"
#include "platform/qelscripting.h"

namespace qelscripting {

/// What the C++ side of a call wants its Lua side to return to the script.
struct Reply {
  enum class Kind { kFailure, kBool, kText };

  /// Makes the exception the error that the script gets, under the name of what failed.
  void SetFailure(std::string_view name, const std::exception_ptr& exception) noexcept;

  Kind mKind = Kind::kFailure;
  bool mBool = false;
  std::string mText;
};

struct BoundClass {
  std::shared_ptr<const ScriptObjectDefinition> mDefinition;
  std::shared_ptr<ScriptObject> mObject;  ///< null until a script calls a method
};

struct BoundMethod {
  BoundClass& mClass;
  ScriptMethod mMethod;
};

/// The classes of one interpreter and their objects.
class Bindings {
 public:
  explicit Bindings(const ClassDefinitions& definitions);
  Bindings(const Bindings&) = delete;
  Bindings& operator=(const Bindings&) = delete;

  /// Makes the globals. For a function that Lua calls.
  void AddTo(lua_State* state);

 private:
  struct Namespace {
    std::string mName;
    std::string mMethodNames;  ///< for messages
    std::deque<BoundMethod> mMethods;
  };

  static int FindMethod(lua_State* state);
  static int RefuseAssignment(lua_State* state);
  static void AddNamespace(lua_State* state, Namespace& added);

  Namespace& NamespaceOf(const ScriptObjectDefinition& definition);

  // Lua holds addresses of the elements, so they must not move.
  std::deque<BoundClass> mClasses;
  std::deque<Namespace> mNamespaces;
};

}  // namespace qelscripting
