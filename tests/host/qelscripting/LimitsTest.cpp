// Scripts that want too much: they fail or are stopped, and the process goes on.
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelscripting/ScriptTest.h"
#include "tests/support/SmallStack.h"

namespace scripttest {
namespace {

using qelscripting::host::Options;
using qelscripting::host::RunScriptText;
using qelscripting::host::ScriptError;
using qelscripting::host::ScriptSession;

class ScriptLimits : public Script {
 protected:
  void LimitInstructions(std::uint64_t limit) {
    Options options;
    options.mInstructionLimit = limit;
    SetOptions(options);
  }

  void LimitMemory(std::size_t limit) {
    Options options;
    options.mMemoryLimit = limit;
    SetOptions(options);
  }
};

/// Scripts that do not end and try not to be stopped.
constexpr const char* kEndless[] = {
    "while true do end",
    "::again:: goto again",
    "while true do pcall(function() while true do end end) end",
    "local function f() while true do pcall(f) end end f()",
    "while true do xpcall(function() while true do end end, function() while true do end end) end",
    "xpcall(function() local x = nil; x() end, function() while true do end end)",
    "coroutine.wrap(function() while true do end end)()",
    "while true do coroutine.wrap(function() while true do end end)() end",
    "while true do coroutine.resume(coroutine.create(function() while true do end end)) end",
    "local c = coroutine.wrap(function() while true do coroutine.yield() end end) while true do c() end",
    // Each coroutine ends early, but makes ten others first.
    "local function f(depth) for i = 1, 10 do coroutine.wrap(f)(depth + 1) end end "
    "while true do pcall(f, 1) end",
    "coroutine.wrap(function() local x <close> = setmetatable({}, {__close = function() while true do end "
    "end}) "
    "while true do end end)()",
    "local x <close> = setmetatable({}, {__close = function() while true do end end})",
    "local x <close> = setmetatable({}, {__close = function() while true do end end}) error('e')",
    "local c = coroutine.create(function() local x <close> = setmetatable({}, "
    "{__close = function() while true do end end}) coroutine.yield() end) "
    "coroutine.resume(c) coroutine.close(c)",
    "setmetatable(_G, {__index = function() while true do end end}) return unknown",
    "error(setmetatable({}, {__tostring = function() while true do end end}))",
    "return setmetatable({}, {__tostring = function() while true do end end})",
    "print(setmetatable({}, {__tostring = function() while true do end end}))",
    "table.sort({3, 2, 1, 5, 4}, function() while true do end end)",
    "('aaa'):gsub('a', function() while true do end end)",
    "load(function() while true do end end)",
    "load(function() return ' ' end)",
    "for k in function() return 1 end do end",
    "while true do (('x'):rep(100000)):find('y') end",
    "while true do pcall(error) end",
    "while true do load('return 1')() end",
    "local function f() return f() end f()",
    "local function f() error(xpcall(f, f)) end f()",
};

TEST_F(ScriptLimits, AScriptThatDoesNotEndIsStopped) {
  LimitInstructions(100'000);
  for (const char* const text : kEndless) {
    const std::string message = MessageOf(text);
    EXPECT_NE(message.find(":1: "), std::string::npos) << text << '\n' << message;
    EXPECT_TRUE(message.ends_with("the script ran for too long and was stopped")) << text << '\n' << message;
  }
  EXPECT_EQ(Run("return Recorder.Echo('alive')"), Texts{"alive"});
}

TEST_F(ScriptLimits, AScriptIsStoppedOnRequest) {
  for (const char* const text : kEndless) {
    int questions = 0;
    Options options;
    options.mShouldStop = [&questions] { return ++questions > 100; };
    SetOptions(options);
    const std::string message = MessageOf(text);
    EXPECT_TRUE(message.ends_with("the script was stopped")) << text << '\n' << message;
    EXPECT_EQ(questions, 101) << text;
  }
}

TEST_F(ScriptLimits, AQuestionThatThrowsStopsTheScript) {
  Texts logged;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    logged.push_back(std::string(context) + ": " + qelcore::host::DescribeException(exception));
  });
  Options options;
  options.mShouldStop = []() -> bool { throw std::runtime_error("from the question"); };
  SetOptions(options);
  EXPECT_EQ(MessageOf("while true do end"), "test: the script was stopped");
  EXPECT_EQ(logged.back(), "qelscripting::host::Options::mShouldStop: from the question");
  qelcore::host::SetExceptionSink(nullptr);
}

TEST_F(ScriptLimits, TheErrorOfAStoppedScriptShowsWhere) {
  LimitInstructions(100'000);
  try {
    RunScriptText("local function spin()\n while true do\n end\nend\n\nspin()", "test");
    FAIL();
  } catch (const ScriptError& error) {
    EXPECT_STREQ(error.what(), "test:2: the script ran for too long and was stopped");
    EXPECT_NE(error.GetTraceback().find("test:6:"), std::string::npos) << error.GetTraceback();
  }
}

TEST_F(ScriptLimits, ScriptsWithinTheLimitAreNotStopped) {
  LimitInstructions(1'000'000);
  for (int round = 0; round < 5; ++round) {
    EXPECT_EQ(Run("local n = 0 for i = 1, 100000 do n = n + 1 end return n"), Texts{"100000"});
  }
  ScriptSession session;
  for (int round = 0; round < 5; ++round) {
    EXPECT_EQ(session.RunText("local n = 0 for i = 1, 100000 do n = n + 1 end return n", "test"),
              Texts{"100000"});
  }
}

TEST_F(ScriptLimits, ScriptsWithinAnotherShareItsInstructions) {
  LimitInstructions(1'000'000);
  int runs = 0;
  Action() = [&runs] {
    ++runs;
    RunScriptText("for i = 1, 100000 do end", "inner");
    return u"";
  };
  const std::string message = MessageOf("while true do pcall(Recorder.Do) end");
  EXPECT_TRUE(message.ends_with("the script ran for too long and was stopped")) << message;
  EXPECT_GT(runs, 1);
  EXPECT_LT(runs, 20);
}

TEST_F(ScriptLimits, AStoppedSessionStartsAgain) {
  LimitInstructions(100'000);
  ScriptSession session;
  session.RunText("x = 5 Recorder.Nothing()", "test");
  EXPECT_EQ(LivingRecorders(), 1);
  EXPECT_THROW(session.RunText("while true do end", "test"), ScriptError);
  EXPECT_EQ(LivingRecorders(), 0);
  EXPECT_EQ(session.RunText("return x, Recorder.Echo('new')", "test"), (Texts{"nil", "new"}));
}

TEST_F(ScriptLimits, MemoryIsBounded) {
  const char* const hungry[] = {
      "local t = {} while true do t[#t + 1] = {} end",
      "local s = 'x' while true do s = s .. s end",
      "return ('x'):rep(1 << 30)",
      "return ('x'):rep(100, ('y'):rep(1 << 20))",
      "return table.concat({('x'):rep(4000000)}, ('x'):rep(4000000), 1, 1), ('x'):rep(30000000)",
      "local t = {} for i = 1, 1000000 do t[i] = ('x'):rep(100) .. i end",
      "return ('x'):rep(1000000):gsub('x', ('y'):rep(1000))",
      "return string.format('%s%s', ('x'):rep(9000000), ('x'):rep(9000000)):rep(10)",
      "local t = {} for i = 1, 1 << 40 do t[i] = coroutine.create(print) end",
      "return table.unpack({}, 1, 900000), table.pack(table.unpack({}, 1, 900000))",
  };
  LimitMemory(16'000'000);
  for (const char* const text : hungry) {
    EXPECT_EQ(MessageOf(text), "test: not enough memory: a script may use 16000000 bytes") << text;
  }
  EXPECT_EQ(Run("return Recorder.Echo('alive')"), Texts{"alive"});
}

TEST_F(ScriptLimits, AScriptMayCatchThatMemoryIsShort) {
  LimitMemory(16'000'000);
  EXPECT_EQ(Run("local ok, message = pcall(string.rep, 'x', 1 << 30) return ok, message, #('x'):rep(1000)"),
            (Texts{"false", "not enough memory", "1000"}));
}

TEST_F(ScriptLimits, MemoryThatIsFreeAgainCanBeUsedAgain) {
  LimitMemory(16'000'000);
  EXPECT_EQ(Run("for i = 1, 200 do local s = ('x'):rep(1000000 + i) end "
                "for i = 1, 50 do local t = {} for j = 1, 10000 do t[j] = {} end end return 'done'"),
            Texts{"done"});
}

TEST_F(ScriptLimits, TheDefaultLimitIsAQuarterOfAGibibyte) {
  EXPECT_EQ(Options().mMemoryLimit, 268'435'456U);
  EXPECT_EQ(Run("return #('x'):rep(100000000)"), Texts{"100000000"});
  EXPECT_EQ(MessageOf("return ('x'):rep(300000000)"),
            "test: not enough memory: a script may use 268435456 bytes");
}

TEST_F(ScriptLimits, WithNextToNoMemoryNothingRuns) {
  for (std::size_t limit = 0; limit < 100'000; limit += 997) {
    LimitMemory(limit);
    const Texts values = Run("return Recorder.Echo('ran')");
    if (values != Texts{"ran"}) {
      EXPECT_TRUE(
          values.at(0).ends_with("not enough memory: a script may use " + std::to_string(limit) + " bytes"))
          << values.at(0);
    }
  }
  LimitMemory(0);
  EXPECT_TRUE(Run("return 1").at(0).starts_with("failed: ")) << Run("return 1").at(0);
}

TEST_F(ScriptLimits, EveryShortageLeavesTheSessionUsable) {
  LimitMemory(1'000'000);
  ScriptSession session;
  for (int round = 0; round < 20; ++round) {
    EXPECT_THROW(
        session.RunText("local t = {} while true do t[#t + 1] = Recorder.Echo('text' .. #t) end", "test"),
        ScriptError);
  }
  EXPECT_EQ(session.RunText("Recorder.Echo('alive')", "test"), Texts{"alive"});
}

/// Scripts that go deep.
constexpr const char* kDeep[] = {
    "local function f() return 1 + f() end return f()",
    "local t = setmetatable({}, {}) getmetatable(t).__index = function(t, k) return t[k + 1] end return t[1]",
    "local function f(s) return (s:gsub('.', f)) end return f('x')",
    "local function f() return pcall(f) or error('deep') end return f()",
    "local function f() return coroutine.wrap(f)() end return f()",
    "local function f() table.sort({1, 2, 3}, function() f() end) end f()",
    "local function f() return tostring(setmetatable({}, {__tostring = f})) end return f()",
    "local function f() load(f) error('deep') end f()",
    "return load('return ' .. ('('):rep(1000) .. ')')() ",
    "local s = ('x'):rep(100000) return s:find(('(x?)'):rep(100))",
    "return ('x'):rep(100000):find(('.-'):rep(1000) .. 'y')",
    "error(setmetatable({}, {__tostring = function(t) return tostring(t) end}))",
    "return string.format(('%s'):rep(1000))",
    "local t = {} for i = 1, 1000000 do t = {t} end return select('#', table.unpack({}, 1, 1 << 30))",
};

TEST_F(ScriptLimits, DeepRecursionIsAnErrorOfTheScript) {
  testsupport::RunOnStackOfOneMebibyte([] {
    for (const char* const text : kDeep) {
      EXPECT_NE(MessageOf(text), "") << text;
    }
  });
  EXPECT_NE(MessageOf(kDeep[0]).find("stack overflow"), std::string::npos);
  EXPECT_EQ(Run("return Recorder.Echo('alive')"), Texts{"alive"});
}

TEST_F(ScriptLimits, ScriptsWithinAnotherFitASmallStack) {
  int depth = 0;
  const std::string deep =
      "local n = 0 local function f(s) n = n + 1 if n > 150 then return Recorder.Do() end return "
      "(s:gsub('.', f)) "
      "end return f('x')";
  Action() = [&depth, &deep] {
    ++depth;
    RunScriptText(deep, "inner");
    return u"";
  };
  testsupport::RunOnStackOfOneMebibyte([&deep] { EXPECT_NE(MessageOf(deep), ""); });
  EXPECT_EQ(depth, 2);
}

}  // namespace
}  // namespace scripttest
