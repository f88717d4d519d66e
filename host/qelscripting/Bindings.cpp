#include "host/qelscripting/Bindings.h"

#include <algorithm>

#include "host/qelscripting/MethodCall.h"

namespace qelscripting {

Bindings::Bindings(const ClassDefinitions& definitions) {
  for (const auto& definition : definitions) {
    BoundClass& boundClass = mClasses.emplace_back(BoundClass{definition, nullptr});
    Namespace& home = NamespaceOf(*definition);
    for (const ScriptMethod& method : definition->GetMethods()) {
      if ((method.mFlags & kMethodIsCallable) != 0) {
        home.mMethods.push_back({boundClass, method});
        home.mMethodNames += (home.mMethodNames.empty() ? "" : ", ") + method.mName;
      }
    }
  }
}

Bindings::Namespace& Bindings::NamespaceOf(const ScriptObjectDefinition& definition) {
  const std::string& name =
      !definition.GetNamespace().empty() ? definition.GetNamespace() : definition.GetClassName();
  const auto place = std::find_if(mNamespaces.begin(), mNamespaces.end(),
                                  [&](const Namespace& known) { return known.mName == name; });
  return place != mNamespaces.end() ? *place : mNamespaces.emplace_back(Namespace{name, {}, {}});
}

void Bindings::AddTo(lua_State* state) {
  for (Namespace& added : mNamespaces) {
    AddNamespace(state, added);
  }
}

void Bindings::AddNamespace(lua_State* state, Namespace& added) {
  // No table, because `rawset` could write to one.
  lua_newuserdatauv(state, 0, 0);
  const int object = lua_gettop(state);

  lua_newtable(state);
  const int methods = lua_gettop(state);
  for (BoundMethod& method : added.mMethods) {
    lua_pushlstring(state, method.mMethod.mName.data(), method.mMethod.mName.size());
    lua_pushlightuserdata(state, &method);
    lua_pushvalue(state, object);
    lua_pushcclosure(state, CallMethod, 2);
    lua_rawset(state, methods);
  }

  lua_newtable(state);
  lua_pushlstring(state, added.mName.data(), added.mName.size());
  lua_setfield(state, -2, "__name");
  lua_pushboolean(state, 0);
  lua_setfield(state, -2, "__metatable");
  lua_pushlightuserdata(state, &added);
  lua_pushvalue(state, methods);
  lua_pushcclosure(state, FindMethod, 2);
  lua_setfield(state, -2, "__index");
  lua_pushlightuserdata(state, &added);
  lua_pushcclosure(state, RefuseAssignment, 1);
  lua_setfield(state, -2, "__newindex");
  lua_setmetatable(state, object);

  lua_pushglobaltable(state);
  lua_pushlstring(state, added.mName.data(), added.mName.size());
  lua_pushvalue(state, object);
  lua_rawset(state, -3);
  lua_settop(state, object - 1);
}

/// The function behind `object.name`.
int Bindings::FindMethod(lua_State* state) {
  lua_pushvalue(state, 2);
  if (lua_rawget(state, lua_upvalueindex(2)) != LUA_TNIL) {
    return 1;
  }
  const auto& searched = *static_cast<const Namespace*>(lua_touserdata(state, lua_upvalueindex(1)));
  const char* const wanted = luaL_tolstring(state, 2, nullptr);
  return luaL_error(state, "%s has no \"%s\"; it has %s", searched.mName.c_str(), wanted,
                    searched.mMethodNames.c_str());
}

int Bindings::RefuseAssignment(lua_State* state) {
  const auto& target = *static_cast<const Namespace*>(lua_touserdata(state, lua_upvalueindex(1)));
  return luaL_error(state, "%s cannot be changed by a script", target.mName.c_str());
}

}  // namespace qelscripting
