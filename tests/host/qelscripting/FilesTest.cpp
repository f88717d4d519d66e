// Script files.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/host/qelscripting/ScriptTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace scripttest {
namespace {

using qelscripting::host::RunScriptFile;
using qelscripting::host::ScriptError;

std::string AsText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

class ScriptFiles : public Script {
 protected:
  /// Writes a script and runs it; returns the message with which it failed, or nothing.
  std::string RunFile(const std::u8string& name, const std::string& text) {
    static_cast<void>(mDirectory.Write("placeholder", text));
    const std::filesystem::path path = mDirectory.Path() / name;
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::rename(mDirectory.Path() / "placeholder", path);
    return MessageOfFile(AsText(path));
  }

  static std::string MessageOfFile(const std::string& path) {
    try {
      RunScriptFile(path);
      return {};
    } catch (const ScriptError& error) {
      return error.what();
    }
  }

  testsupport::TemporaryDirectory mDirectory;
};

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

TEST_F(ScriptFiles, AFileWithoutLengthIsReadUpToTheLimit) {
  qelscripting::host::Options options;
  options.mMemoryLimit = 1'000'000;
  SetOptions(options);
  const int device = ::open("/dev/zero", O_RDONLY | O_CLOEXEC);
  const std::string name = "/dev/fd/" + std::to_string(device);
  EXPECT_EQ(MessageOfFile(name), "cannot read the script: " + name + ": it is larger than a script may be");
  ::close(device);
}

TEST_F(ScriptFiles, WhatIsHandedOverOpenIsRun) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(::pipe(ends), 0);
  const std::string text = "print('from a pipe')";
  ASSERT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  ::close(ends[1]);
  EXPECT_EQ(MessageOfFile("/dev/fd/" + std::to_string(ends[0])), "");
  EXPECT_EQ(mPrinted, "from a pipe\n");
  ::close(ends[0]);
}

TEST_F(ScriptFiles, WhatIsNoFileIsAnErrorAtOnce) {
  const std::filesystem::path pipe = mDirectory.Path() / "pipe.lua";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& path : {AsText(pipe), std::string("/dev/zero"), std::string("/dev/null")}) {
    const std::string message = MessageOfFile(path);
    EXPECT_TRUE(message.starts_with("cannot read the script: " + path + ": not a regular file")) << message;
  }
  const std::filesystem::path loop = mDirectory.Path() / "loop.lua";
  std::filesystem::create_symlink("loop.lua", loop);
  const std::string message = MessageOfFile(AsText(loop));
  EXPECT_TRUE(message.starts_with("cannot read the script: " + AsText(loop) + ": ")) << message;
}

TEST_F(ScriptFiles, EachFileHasItsOwnGlobals) {
  EXPECT_EQ(RunFile(u8"a.lua", "shared = 1"), "");
  EXPECT_EQ(RunFile(u8"b.lua", "print(shared)"), "");
  EXPECT_EQ(mPrinted, "nil\n");
}

}  // namespace
}  // namespace scripttest
