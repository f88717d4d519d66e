#include "host/qelscripting/Libraries.h"

#include <cstddef>
#include <cstring>

#include "host/qelscripting/Interpreter.h"

namespace qelscripting {

namespace {

struct Library {
  const char* mName;
  lua_CFunction mOpen;
  /// What is kept of it, ended by a null; null keeps all.
  const char* const* mKept;
};

/// Not here, because they reach files or compiled code or steer the memory: `collectgarbage`, `dofile`,
/// `loadfile`, `warn`. `load`, `print`, `setmetatable` are replaced below.
constexpr const char* kKeptOfBase[] = {LUA_GNAME,  "_VERSION", "assert", "error",  "getmetatable", "ipairs",
                                       "load",     "next",     "pairs",  "pcall",  "print",        "rawequal",
                                       "rawget",   "rawlen",   "rawset", "select", "setmetatable", "tonumber",
                                       "tostring", "type",     "xpcall", nullptr};

/// Only the time: the others start programs, change files, end the process or tell about the environment.
constexpr const char* kKeptOfOS[] = {"clock", "date", "difftime", "time", nullptr};

/// `dump` makes compiled code, which no script can load.
constexpr const char* kKeptOfString[] = {"byte",    "char",  "find",   "format", "gmatch",   "gsub",
                                         "len",     "lower", "match",  "pack",   "packsize", "rep",
                                         "reverse", "sub",   "unpack", "upper",  nullptr};

constexpr Library kLibraries[] = {
    {LUA_GNAME, luaopen_base, kKeptOfBase},          {LUA_COLIBNAME, luaopen_coroutine, nullptr},
    {LUA_MATHLIBNAME, luaopen_math, nullptr},        {LUA_OSLIBNAME, luaopen_os, kKeptOfOS},
    {LUA_STRLIBNAME, luaopen_string, kKeptOfString}, {LUA_TABLIBNAME, luaopen_table, nullptr},
    {LUA_UTF8LIBNAME, luaopen_utf8, nullptr},
};

bool IsKept(const char* const* kept, const char* name) {
  while (*kept != nullptr && std::strcmp(*kept, name) != 0) {
    ++kept;
  }
  return *kept != nullptr;
}

/// Takes out of the table on top of the stack what is not kept.
void RemoveOthers(lua_State* state, const char* const* kept) {
  lua_pushnil(state);
  while (lua_next(state, -2) != 0) {
    lua_pop(state, 1);
    if (!IsKept(kept, lua_tostring(state, -1))) {
      lua_pushvalue(state, -1);
      lua_pushnil(state);
      lua_rawset(state, -4);
    }
  }
}

/// `load` of text alone: compiled code is not checked when it is loaded and can break the interpreter. Its
/// upvalue is Lua's own function.
int LoadText(lua_State* state) {
  constexpr int kChunk = 1;
  constexpr int kName = 2;
  constexpr int kMode = 3;
  // Checked here as well, because Lua's function does not know under which name it was called.
  if (lua_isstring(state, kChunk) == 0) {
    luaL_checktype(state, kChunk, LUA_TFUNCTION);
  }
  luaL_optstring(state, kName, nullptr);
  if (lua_gettop(state) < kMode) {
    lua_settop(state, kMode);
  }
  lua_pushliteral(state, "t");
  lua_replace(state, kMode);
  lua_pushvalue(state, lua_upvalueindex(1));
  lua_insert(state, 1);
  lua_call(state, lua_gettop(state) - 1, LUA_MULTRET);
  return lua_gettop(state);
}

/// `setmetatable` without finalizers: nothing could stop one that does not end, because Lua calls no hook in
/// it.
int SetMetatable(lua_State* state) {
  luaL_checktype(state, 1, LUA_TTABLE);
  luaL_argexpected(state, lua_isnil(state, 2) || lua_istable(state, 2), 2, "nil or table");
  lua_settop(state, 2);
  if (luaL_getmetafield(state, 1, "__metatable") != LUA_TNIL) {
    return luaL_error(state, "cannot change a protected metatable");
  }
  if (lua_istable(state, 2)) {
    lua_pushliteral(state, "__gc");
    if (lua_rawget(state, 2) != LUA_TNIL) {
      return luaL_error(state, "a metatable of a script cannot have \"__gc\"");
    }
    lua_settop(state, 2);
  }
  lua_setmetatable(state, 1);
  return 1;
}

int Print(lua_State* state) {
  const int count = lua_gettop(state);
  luaL_Buffer buffer;
  luaL_buffinit(state, &buffer);
  for (int index = 1; index <= count; ++index) {
    if (index > 1) {
      luaL_addchar(&buffer, '\t');
    }
    luaL_tolstring(state, index, nullptr);
    luaL_addvalue(&buffer);
  }
  luaL_addchar(&buffer, '\n');
  luaL_pushresult(&buffer);
  std::size_t length = 0;
  const char* const text = lua_tolstring(state, -1, &length);
  return Interpreter::Of(state).Print(text, length) ? 0 : RaiseReply(state);
}

}  // namespace

void OpenLibraries(lua_State* state) {
  for (const Library& library : kLibraries) {
    luaL_requiref(state, library.mName, library.mOpen, 1);
    if (library.mKept != nullptr) {
      RemoveOthers(state, library.mKept);
    }
    lua_pop(state, 1);
  }
  lua_pushcfunction(state, Print);
  lua_setglobal(state, "print");
  lua_pushcfunction(state, SetMetatable);
  lua_setglobal(state, "setmetatable");
  lua_getglobal(state, "load");
  lua_pushcclosure(state, LoadText, 1);
  lua_setglobal(state, "load");
}

}  // namespace qelscripting
