// Sessions, and the values of texts.
#include <cstdio>

#include "tests/host/qelscripting/ScriptTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace scripttest {
namespace {

using qelscripting::host::RunScriptText;
using qelscripting::host::ScriptError;
using qelscripting::host::ScriptSession;

TEST_F(Script, ATextReturnsItsValues) {
  const struct {
    const char* mText;
    Texts mExpected;
  } rows[] = {
      {"", {}},
      {"return", {}},
      {"return nil", {"nil"}},
      {"return 1, 2.5, 'three', true, nil", {"1", "2.5", "three", "true", "nil"}},
      {"1 + 1", {"2"}},
      {"'a' .. 'b', 3", {"ab", "3"}},
      {"x", {"nil"}},
      {"x = 5", {}},
      {"x = 5 return x", {"5"}},
      {"local t <const> = 4; return t", {"4"}},
      {"(function(...) return select('#', ...) end)(1, nil, nil)", {"3"}},
      {"-- only a comment", {}},
      {"setmetatable({}, {__tostring = function() return 'shown' end})", {"shown"}},
      {"setmetatable({}, {__name = 'Thing'})", {"Thing: "}},
  };
  for (const auto& row : rows) {
    Texts values = Run(row.mText);
    if (!values.empty() && values[0].starts_with("Thing: ")) {
      values[0].resize(7);
    }
    EXPECT_EQ(values, row.mExpected) << row.mText;
  }
}

TEST_F(Script, ManyValuesAreReturned) {
  const Texts values = Run("return table.unpack({}, 1, 100000)");
  EXPECT_EQ(values.size(), 100000U);
}

TEST_F(Script, ASessionKeepsItsGlobals) {
  ScriptSession session;
  EXPECT_EQ(session.RunText("x = 5", "one"), Texts());
  EXPECT_EQ(session.RunText("x", "two"), Texts{"5"});
  EXPECT_THROW(session.RunText("x = 6 error('mine')", "three"), ScriptError);
  EXPECT_EQ(session.RunText("x", "four"), Texts{"6"});
  EXPECT_THROW(session.RunText("x = = 7", "five"), ScriptError);
  EXPECT_EQ(session.RunText("x", "six"), Texts{"6"});
  EXPECT_EQ(RunScriptText("x", "other session"), Texts{"nil"});
}

TEST_F(Script, ASessionRunsFilesAndTexts) {
  const testsupport::TemporaryDirectory directory;
  const std::u8string path = directory.Write("a.lua", "x = 'from the file'").u8string();
  ScriptSession session;
  session.RunFile(std::string(path.begin(), path.end()));
  EXPECT_EQ(session.RunText("x", "test"), Texts{"from the file"});
}

TEST_F(Script, ASessionLivesThroughManyErrors) {
  ScriptSession session;
  for (int round = 0; round < 2000; ++round) {
    EXPECT_THROW(
        session.RunText("local x <close> = setmetatable({}, {__close = function() closed = true end}) "
                        "error(('x'):rep(100))",
                        "test"),
        ScriptError);
  }
  EXPECT_EQ(session.RunText("closed", "test"), Texts{"true"});
}

TEST_F(Script, SessionsLiveSideBySide) {
  ScriptSession one;
  ScriptSession two;
  one.RunText("x = 1", "test");
  two.RunText("x = 2", "test");
  EXPECT_EQ(one.RunText("x", "test"), Texts{"1"});
  EXPECT_EQ(two.RunText("x", "test"), Texts{"2"});
}

TEST_F(Script, OptionsHoldForTheSessionsMadeAfterwards) {
  ScriptSession before;
  std::string printed;
  qelscripting::host::Options options;
  options.mPrint = [&](std::string_view text) { printed += text; };
  qelscripting::host::SetOptions(options);
  before.RunText("print('before')", "test");
  RunScriptText("print('after')", "test");
  EXPECT_EQ(mPrinted, "before\n");
  EXPECT_EQ(printed, "after\n");
}

TEST(Print, WritesToStandardOutputUnlessThereIsASink) {
  testing::internal::CaptureStdout();
  RunScriptText("print('Grüße', 'a\\0b', 1)", "test");
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string("Grüße\ta\0b\t1\n", 14));
}

}  // namespace
}  // namespace scripttest
