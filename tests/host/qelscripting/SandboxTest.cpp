// What scripts have, and what they do not have.
#include "tests/host/qelscripting/ScriptTest.h"

namespace scripttest {
namespace {

TEST_F(Script, ForbiddenNamesAreNil) {
  const char* const names[] = {
      "io",           "package",      "require",   "debug",      "dofile",         "loadfile",
      "loadstring",   "module",       "getfenv",   "setfenv",    "collectgarbage", "warn",
      "os.execute",   "os.exit",      "os.getenv", "os.remove",  "os.rename",      "os.setlocale",
      "os.tmpname",   "string.dump",  "_G.io",     "_G.package", "_G.debug",       "_G.os.execute",
      "_ENV.require", "_G._G.dofile",
  };
  for (const char* const name : names) {
    EXPECT_EQ(Run(std::string("return ") + name), Texts{"nil"}) << name;
  }
}

TEST_F(Script, WhatThereIsIsExactlyThis) {
  EXPECT_EQ(
      Run("local names = {} for name in pairs(_G) do names[#names + 1] = name end "
          "table.sort(names) return table.concat(names, ' ')"),
      Texts{"Recorder _G _VERSION assert coroutine error getmetatable ipairs load math next os pairs pcall "
            "print rawequal rawget rawlen rawset select setmetatable string table tonumber tostring type "
            "utf8 xpcall"});
  EXPECT_EQ(Run("local names = {} for name in pairs(os) do names[#names + 1] = name end "
                "table.sort(names) return table.concat(names, ' ')"),
            Texts{"clock date difftime time"});
}

TEST_F(Script, TheLibrariesWork) {
  const struct {
    const char* mText;
    const char* mExpected;
  } rows[] = {
      {"('abc'):upper()", "ABC"},
      {"string.format('%5.1f|%s', 2.25, 'x')", "  2.2|x"},
      {"('a,b'):gsub(',', ';')", "a;b"},
      {"table.concat({1, 2, 3}, '-')", "1-2-3"},
      {"math.max(1, 5, 3)", "5"},
      {"utf8.len('Grüße')", "5"},
      {"os.time{year = 2020, month = 1, day = 2, hour = 12} - os.time{year = 2020, month = 1, day = 1, hour "
       "= 12}",
       "86400"},
      {"os.date('!%Y-%m-%d', 0)", "1970-01-01"},
      {"type(os.clock())", "number"},
      {"coroutine.wrap(function() coroutine.yield(7) end)()", "7"},
      {"select(2, pcall(error, 'e'))", "e"},
      {"select(2, xpcall(function() error('e', 0) end, function(m) return m .. '!' end))", "e!"},
      {"load('return 1 + 1')()", "2"},
      {"load('return x', 'name', 't', {x = 9})()", "9"},
      {"tostring(load('x', 'name', nil, nil) == nil)", "true"},
      {"(function() local parts = {'return', ' 3'} local i = 0 "
       "return load(function() i = i + 1 return parts[i] end)() end)()",
       "3"},
      {"setmetatable({}, {__index = function(_, key) return key end}).hello", "hello"},
      {"getmetatable(setmetatable({}, {__metatable = 'locked'}))", "locked"},
      {"#setmetatable({}, {__len = function() return 3 end})", "3"},
  };
  for (const auto& row : rows) {
    const Texts values = Run(row.mText);
    ASSERT_FALSE(values.empty()) << row.mText;
    EXPECT_EQ(values[0], row.mExpected) << row.mText;
  }
}

TEST_F(Script, LoadTakesTextAlone) {
  // The beginning of compiled code, in one piece, from a function, and with the mode that would allow it.
  const char* const loads[] = {
      "load('\\27Lua')",
      "load('\\27Lua', 'name', 'b')",
      "load('\\27Lua', 'name', 'bt')",
      "load('\\27Lua', 'name', 'b', {})",
      "load(coroutine.wrap(function() coroutine.yield('\\27L') coroutine.yield('ua') end), 'name', 'b')",
  };
  for (const char* const load : loads) {
    EXPECT_EQ(Run(std::string("local f, message = ") + load + " return f, message"),
              (Texts{"nil", "attempt to load a binary chunk (mode is 't')"}))
        << load;
  }
  EXPECT_EQ(MessageOf("\x1bLua"), "test: a script is text, but this is compiled code");
}

TEST_F(Script, FinalizersAreRefused) {
  EXPECT_EQ(MessageOf("setmetatable({}, {__gc = function() end})"),
            "test:1: a metatable of a script cannot have \"__gc\"");
  EXPECT_EQ(MessageOf("setmetatable({}, {__gc = true})"),
            "test:1: a metatable of a script cannot have \"__gc\"");
  // One that comes later is none.
  EXPECT_EQ(Run("local m = {} setmetatable({}, m) m.__gc = function() x = 1 end "
                "for i = 1, 100000 do local t = {i} end return x"),
            Texts{"nil"});
  EXPECT_EQ(Run("local m = setmetatable({}, {__index = {__gc = print}}) return type(setmetatable({}, m))"),
            Texts{"table"});
  EXPECT_EQ(MessageOf("setmetatable(1, {})"),
            "test:1: bad argument #1 to 'setmetatable' (table expected, got number)");
}

TEST_F(Script, OneScriptCannotSpoilAnother) {
  EXPECT_EQ(Run("string.upper = nil print = nil Recorder = nil getmetatable('').__index = nil return 1"),
            Texts{"1"});
  EXPECT_EQ(Run("print('x') return ('a'):upper(), Recorder.Echo('b')"), (Texts{"A", "b"}));
}

}  // namespace
}  // namespace scripttest
