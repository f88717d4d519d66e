// Script files.
#include <filesystem>

#include "tests/host/qelscripting/ScriptFilesTest.h"

namespace scripttest {
namespace {

TEST_F(ScriptFiles, AFileIsRun) {
  EXPECT_EQ(RunFile(u8"a.lua", "Recorder.Text('from a file')\nprint(1, 'two', nil, true)\nprint()"), "");
  EXPECT_EQ(Recorded(), Texts{"Recorder \"from a file\""});
  EXPECT_EQ(mPrinted, "1\ttwo\tnil\ttrue\n\n");
}

TEST_F(ScriptFiles, AnErrorNamesTheFileAndTheLine) {
  EXPECT_EQ(RunFile(u8"a.lua", "\nerror('mine')"), "a.lua:2: mine");
  EXPECT_EQ(RunFile(u8"b.lua", "local function f()\n  error('mine')\nend\nf()\n"), "b.lua:2: mine");
  EXPECT_EQ(RunFile(u8"c.lua", "x = = 1"), "c.lua:1: unexpected symbol near '='");
}

TEST_F(ScriptFiles, PathsMayBeInAnyLanguage) {
  EXPECT_EQ(RunFile(u8"Ordner für Skripte/Prüfung 検査 \U0001F600.lua", "print('da')"), "");
  EXPECT_EQ(mPrinted, "da\n");
  EXPECT_EQ(RunFile(u8"Prüfung.lua", "error('mine')"), "Prüfung.lua:1: mine");
}

TEST_F(ScriptFiles, AMissingFileAndADirectoryAreErrors) {
  const std::string missing = AsText(mDirectory.Path() / "missing.lua");
  EXPECT_TRUE(MessageOfFile(missing).starts_with("cannot read the script: " + missing + ": "))
      << MessageOfFile(missing);
  const std::string directory = AsText(mDirectory.Path());
  EXPECT_TRUE(MessageOfFile(directory).starts_with("cannot read the script: " + directory + ": "))
      << MessageOfFile(directory);
  EXPECT_TRUE(MessageOfFile("").starts_with("cannot read the script: ")) << MessageOfFile("");
}

TEST_F(ScriptFiles, CompiledCodeIsRefused) {
  EXPECT_EQ(RunFile(u8"a.lua", "\x1bLuaT\0"), "a.lua: a script is text, but this is compiled code");
  EXPECT_EQ(RunFile(u8"b.lua", "\xEF\xBB\xBF\x1bLuaT"), "b.lua: a script is text, but this is compiled code");
  EXPECT_EQ(RunFile(u8"c.lua", "#!/bin/x\n\x1bLuaT"), "c.lua:2: unexpected symbol near '<\\27>'");
}

TEST_F(ScriptFiles, WhatIsThereForOtherProgramsIsSkipped) {
  EXPECT_EQ(RunFile(u8"a.lua", "\xEF\xBB\xBFprint('mark')"), "");
  EXPECT_EQ(RunFile(u8"b.lua", "#!/usr/bin/env lua\nprint('line')"), "");
  EXPECT_EQ(RunFile(u8"c.lua", "\xEF\xBB\xBF#!/usr/bin/env lua\r\nprint('both')"), "");
  EXPECT_EQ(RunFile(u8"d.lua", "# nothing else"), "");
  EXPECT_EQ(RunFile(u8"e.lua", ""), "");
  EXPECT_EQ(RunFile(u8"f.lua", "#!x\nerror('mine')"), "f.lua:2: mine");
  EXPECT_EQ(mPrinted, "mark\nline\nboth\n");
}

TEST_F(ScriptFiles, AFileBeyondTheMemoryLimitIsNotRead) {
  qelscripting::host::Options options;
  options.mMemoryLimit = 1'000'000;
  SetOptions(options);
  const std::string message = RunFile(u8"a.lua", std::string(1'000'001, ' '));
  EXPECT_TRUE(message.ends_with("a.lua: it is larger than a script may be")) << message;
}

TEST_F(ScriptFiles, EachFileHasItsOwnGlobals) {
  EXPECT_EQ(RunFile(u8"a.lua", "shared = 1"), "");
  EXPECT_EQ(RunFile(u8"b.lua", "print(shared)"), "");
  EXPECT_EQ(mPrinted, "nil\n");
}

}  // namespace
}  // namespace scripttest
