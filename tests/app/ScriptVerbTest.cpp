#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

class ScriptVerbTest : public testsupport::ScrTest {};

TEST_F(ScriptVerbTest, AScriptWritesAReport) {
  Write("application/SystemCompatibilityReport/blocklist.en_US.json",
        Blocklist(SystemRule(R"("info_message": "found by a script")")));
  const std::string script =
      Write("r\xc3\xa9port.lua",
            "local path = '" + Path("out.txt") + "'\nprint(SystemCompatibilityReport.CreateReport(path))\n");
  const auto result = Scr({"script", script});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mOutput, "true\n");
  EXPECT_EQ(result.mErrors, "");
  EXPECT_NE(mFiles.Read("out.txt").find("found by a script"), std::string::npos);
}

TEST_F(ScriptVerbTest, AnErrorIsShownWithFileAndLine) {
  const struct {
    const char* mScript;
    const char* mText;
  } rows[] = {
      {"local a = 1\nlocal b = a.b.c\n", "script.lua:2: "},
      {"local a = 1\nlocal = \n", "script.lua:2: "},
      {"\n\nerror('my words')", "script.lua:3: my words"},
      {"\nSystemCompatibilityReport.CreateReport()", "filePath"},
      {"\nSystemCompatibilityReport.CreateReport(7)", "filePath"},
      {"\nSystemCompatibilityReport.Delete('x')", "CreateReport"},
      {"os.execute('true')", "script.lua:1: "},
      {"io.open('x')", "script.lua:1: "},
      {"\nerror({code = 3})", "script.lua:2: (error object is a table value)"},
      {"\nerror(nil)", "script.lua:2: (error object is a nil value)"},
      {"\n\nerror('my words', 0)", "script.lua:3: my words"},
      {"local function inner()\n  error('my words', 0)\nend\ninner()", "script.lua:2: my words"},
      {"\nlocal text = string.rep('x', 1 << 30)", "script.lua:2: not enough memory: a script may use "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mScript);
    const std::string script = Write("script.lua", row.mScript);
    ExpectError(Scr({"script", script}), row.mText);
  }
}

TEST_F(ScriptVerbTest, WhatTheScriptPrintedBeforeAnErrorIsThere) {
  const std::string script = Write("script.lua", "print('one', 2)\nerror('then')");
  const auto result = Scr({"script", script});
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_EQ(result.mOutput, "one\t2\n");
  EXPECT_NE(result.mErrors.find("script.lua:2: then"), std::string::npos);
}

TEST_F(ScriptVerbTest, AReportThatFailsIsTrueToTheScriptAndTold) {
  const std::string script = Write(
      "script.lua", "assert(SystemCompatibilityReport.CreateReport('" + Path("missing/out.txt") + "'))");
  const auto result = Scr({"script", script});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_NE(result.mErrors.find("missing/out.txt"), std::string::npos) << result.mErrors;
}

TEST_F(ScriptVerbTest, AReportThatFailsIsToldOnceWhateverTheScriptDoes) {
  const std::string call = "SystemCompatibilityReport.CreateReport('" + Path("missing/out.txt") + "') ";
  for (const std::string& rest : {std::string(), std::string("error('after')")}) {
    const auto result = Scr({"script", Write("script.lua", call + rest)});
    EXPECT_EQ(result.mExitCode, rest.empty() ? 0 : 1);
    const std::size_t first = result.mErrors.find("missing/out.txt");
    EXPECT_NE(first, std::string::npos) << result.mErrors;
    EXPECT_EQ(result.mErrors.find("missing/out.txt", first + 1), std::string::npos) << result.mErrors;
    EXPECT_EQ(result.mErrors.find("after") != std::string::npos, !rest.empty()) << result.mErrors;
  }
}

TEST_F(ScriptVerbTest, WrongUse) {
  ExpectError(Scr({"script"}), "FILE");
  ExpectError(Scr({"script", Path("missing.lua")}), "missing.lua");
  ExpectError(Scr({"script", mFiles.Path().string()}), mFiles.Path().string());
}

}  // namespace
