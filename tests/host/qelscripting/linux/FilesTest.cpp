// Scripts that are no files on the disk.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/host/qelscripting/ScriptFilesTest.h"

namespace scripttest {
namespace {

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

}  // namespace
}  // namespace scripttest
