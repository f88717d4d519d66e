// What a script that fails says.
#include <algorithm>
#include <stdexcept>

#include "tests/host/qelscripting/ScriptTest.h"

namespace scripttest {
namespace {

using qelscripting::host::RunScriptText;
using qelscripting::host::ScriptError;

ScriptError ErrorOf(const std::string& text) {
  try {
    RunScriptText(text, "test");
  } catch (const ScriptError& error) {
    return error;
  }
  ADD_FAILURE() << "did not fail: " << text;
  return ScriptError("did not fail");
}

TEST_F(Script, AMessageBeginsWithTheNameAndTheLine) {
  const struct {
    const char* mText;
    const char* mExpected;
  } rows[] = {
      {"\n\nlocal x = ", "test:3: unexpected symbol near <eof>"},
      {"if x then", "test:1: 'end' expected near <eof>"},
      {"\nerror('mine')", "test:2: mine"},
      {"\n\nlocal t = nil; t.x = 1", "test:3: attempt to index a nil value (local 't')"},
      {"unknown()", "test:1: attempt to call a nil value (global 'unknown')"},
      {"local function f()\n error('in f')\nend\nf()", "test:2: in f"},
      {"error('no place', 0)", "no place"},
      {"local function f() error('at the caller', 2) end\n\nf()", "test:3: at the caller"},
      {"error()", "(error object is a nil value)"},
      {"error(nil)", "(error object is a nil value)"},
      {"error({})", "(error object is a table value)"},
      {"error(true)", "(error object is a boolean value)"},
      {"error(print)", "(error object is a function value)"},
      {"error(Recorder)", "(error object is a userdata value)"},
      {"error(42)", "42"},
      {"error(setmetatable({}, {__tostring = function() return 'as text' end}))", "as text"},
      {"error(setmetatable({}, {__tostring = function() error('again') end}))",
       "(error object is a table value)"},
      {"error(setmetatable({}, {__tostring = function() return 5 end}))", "5"},
      {"assert(false)", "test:1: assertion failed!"},
      {"assert(false, 'why')", "test:1: why"},
      {"coroutine.wrap(function()\n error('in a coroutine') end)()", "test:1: test:2: in a coroutine"},
      {"load('error(\"loaded\")', '=chunk')()", "chunk:1: loaded"},
      {"print(setmetatable({}, {__tostring = function() error('from tostring', 0) end}))", "from tostring"},
      {"return setmetatable({}, {__tostring = function() error('from result', 0) end})", "from result"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MessageOf(row.mText), row.mExpected) << row.mText;
  }
}

TEST_F(Script, AMessageIsValidUTF8WithoutNul) {
  EXPECT_EQ(MessageOf("error('Grüße \\xFF', 0)"), "Grüße \xEF\xBF\xBD");
  EXPECT_EQ(MessageOf("error('a\\0b', 0)"),
            "a\xEF\xBF\xBD"
            "b");
}

TEST_F(Script, TheTracebackIsKeptApart) {
  const ScriptError error =
      ErrorOf("local function inner() error('mine') end\nlocal function outer()\ninner() end\nouter()");
  EXPECT_STREQ(error.what(), "test:1: mine");
  const std::string& traceback = error.GetTraceback();
  const auto inner = traceback.find("test:1:");
  const auto outer = traceback.find("test:3:");
  const auto main = traceback.find("test:4:");
  EXPECT_NE(inner, std::string::npos) << traceback;
  EXPECT_LT(inner, outer) << traceback;
  EXPECT_LT(outer, main) << traceback;
  EXPECT_NE(main, std::string::npos) << traceback;
}

TEST_F(Script, TheTracebackIsShortEvenForDeepCalls) {
  const ScriptError error =
      ErrorOf("local function f(n) if n == 0 then error('deep') end f(n - 1) end f(10000)");
  const std::string& traceback = error.GetTraceback();
  EXPECT_LT(std::count(traceback.begin(), traceback.end(), '\n'), 30) << traceback;
  EXPECT_FALSE(traceback.empty());
}

TEST_F(Script, WhatTheSinkOfPrintThrowsIsAnErrorOfTheScript) {
  qelscripting::host::Options options;
  options.mPrint = [](std::string_view) { throw std::runtime_error("the sink is full"); };
  qelscripting::host::SetOptions(options);
  EXPECT_EQ(MessageOf("\nprint('x')"), "test:2: print: the sink is full");
  EXPECT_EQ(Run("return pcall(print, 'x')"), (Texts{"false", "print: the sink is full"}));
}

TEST_F(Script, AMessageOfALongNameIsCutAtItsBeginning) {
  try {
    RunScriptText("error('mine')", std::string(200, 'x') + "\u00e4\u00f6\u00fc.lua");
    FAIL();
  } catch (const ScriptError& error) {
    EXPECT_TRUE(std::string(error.what()).ends_with("äöü.lua:1: mine")) << error.what();
    EXPECT_LT(std::string(error.what()).size(), 100U);
  }
}

}  // namespace
}  // namespace scripttest
