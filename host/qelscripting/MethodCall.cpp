#include "host/qelscripting/MethodCall.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/Bindings.h"
#include "host/qelscripting/Interpreter.h"
#include "platform/qelcore/Text.h"

namespace qelscripting {

namespace {

std::string_view Describe(ScriptType type) {
  return type == ScriptType::kBool ? "a truth value" : "a text";
}

std::string_view DescribeValue(lua_State* state, int index) {
  switch (lua_type(state, index)) {
    case LUA_TNIL:
      return "nil";
    case LUA_TBOOLEAN:
      return Describe(ScriptType::kBool);
    case LUA_TNUMBER:
      return "a number";
    case LUA_TSTRING:
      return Describe(ScriptType::kString);
    case LUA_TTABLE:
      return "a table";
    case LUA_TFUNCTION:
      return "a function";
    case LUA_TTHREAD:
      return "a coroutine";
    default:
      return "an object";
  }
}

/// The argument at `index`. Numbers are no texts here, although Lua would turn one into the other.
ScriptValue ReadArgument(lua_State* state, int index, const ScriptParameter& parameter) {
  const int type = lua_type(state, index);
  if (parameter.mType == ScriptType::kBool && type == LUA_TBOOLEAN) {
    return lua_toboolean(state, index) != 0;
  }
  if (parameter.mType == ScriptType::kString && type == LUA_TSTRING) {
    std::size_t length = 0;
    const char* const text = lua_tolstring(state, index, &length);
    return qelcore::string::UTF8to16(std::string_view(text, length));
  }
  throw std::invalid_argument("the parameter \"" + parameter.mName + "\" needs " +
                              std::string(Describe(parameter.mType)) + ", not " +
                              std::string(DescribeValue(state, index)));
}

void CheckCount(const ScriptMethod& method, int count) {
  const auto& parameters = method.mParameters;
  if (std::cmp_equal(count, parameters.size())) {
    return;
  }
  std::string names;
  for (const ScriptParameter& parameter : parameters) {
    names += (names.empty() ? " (\"" : ", \"") + parameter.mName + '"';
  }
  throw std::invalid_argument("takes " + std::to_string(parameters.size()) +
                              (parameters.size() == 1 ? " argument" : " arguments") + names +
                              (names.empty() ? "" : ")") + ", not " + std::to_string(count));
}

ScriptObject& ObjectOf(BoundClass& boundClass) {
  if (!boundClass.mObject) {
    boundClass.mObject = boundClass.mDefinition->MakeObject();
  }
  if (!boundClass.mObject) {
    throw std::runtime_error("there is no object of the class " + boundClass.mDefinition->GetClassName());
  }
  return *boundClass.mObject;
}

void SetResult(Reply& reply, ScriptType type, const ScriptValue& result) {
  if (const auto* const text = std::get_if<std::u16string>(&result);
      text != nullptr && type == ScriptType::kString) {
    reply.mText = qelcore::string::UTF16to8(*text);
    reply.mKind = Reply::Kind::kText;
  } else if (const auto* const truth = std::get_if<bool>(&result);
             truth != nullptr && type == ScriptType::kBool) {
    reply.mBool = *truth;
    reply.mKind = Reply::Kind::kBool;
  } else {
    throw std::logic_error("the result is not " + std::string(Describe(type)));
  }
}

/// Calls the method with the values of the stack from `first` on. Asks Lua only for what it gives without
/// ever raising an error.
void Call(lua_State* state, int first, BoundMethod& bound, Reply& reply) noexcept {
  const ScriptMethod& method = bound.mMethod;
  try {
    CheckCount(method, lua_gettop(state) - first + 1);
    std::vector<ScriptValue> arguments;
    arguments.reserve(method.mParameters.size());
    for (const ScriptParameter& parameter : method.mParameters) {
      arguments.push_back(ReadArgument(state, first + static_cast<int>(arguments.size()), parameter));
    }
    SetResult(reply, method.mResult, method.mCall(ObjectOf(bound.mClass), arguments));
  } catch (...) {
    reply.SetFailure(method.mName, std::current_exception());
  }
}

}  // namespace

void Reply::SetFailure(std::string_view name, const std::exception_ptr& exception) noexcept {
  mKind = Kind::kFailure;
  try {
    mText = std::string(name) + ": " + qelcore::host::DescribeException(exception);
  } catch (...) {
    // There is no memory even for the message; the script fails without one.
    mText.clear();
  }
}

int CallMethod(lua_State* state) {
  auto& bound = *static_cast<BoundMethod*>(lua_touserdata(state, lua_upvalueindex(1)));
  Reply& reply = Interpreter::Of(state).mReply;
  Call(state, lua_rawequal(state, 1, lua_upvalueindex(2)) != 0 ? 2 : 1, bound, reply);
  switch (reply.mKind) {
    case Reply::Kind::kBool:
      lua_pushboolean(state, reply.mBool ? 1 : 0);
      return 1;
    case Reply::Kind::kText:
      lua_pushlstring(state, reply.mText.data(), reply.mText.size());
      return 1;
    case Reply::Kind::kFailure:
      break;
  }
  return RaiseReply(state);
}

}  // namespace qelscripting
