// Access rights, full disks, pipes, and directories that take no files.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelcore/diagnostics/JsonLinesLogFixture.h"

namespace {

using testsupport::JsonLinesLogs;
using Strings = std::vector<std::string>;

/// Starts a process that runs `body` and ends with its result.
template <typename Body>
pid_t Start(Body body) {
  const pid_t child = fork();
  EXPECT_GE(child, 0);
  if (child == 0) {
    _exit(body());
  }
  return child;
}

int ExitCodeOf(pid_t child) {
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(JsonLinesLogs, TheFilesAreForTheirOwnerOnly) {
  mLog.Append(Entry("x"));
  for (const char* const name : {"log.jsonl", "log.jsonl.lock"}) {
    EXPECT_EQ(std::filesystem::status(At(name)).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
        << name;
  }
}

TEST_F(JsonLinesLogs, AMissingDirectoryIsMadeForItsOwnerOnly) {
  std::filesystem::remove(mHost.Preferences());
  mLog.Append(Entry("x"));
  EXPECT_EQ(std::filesystem::status(mHost.Preferences()).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(JsonLinesLogs, ALineThatDoesNotFitOnTheDiskLeavesNoPiece) {
  mLog.Append(Entry("first"));
  const std::string before = Content("log.jsonl");
  const pid_t child = Start([&] {
    // The system writes the ten bytes that still fit and refuses the rest, as a full disk does.
    const rlimit limit{before.size() + 10, before.size() + 10};
    std::signal(SIGXFSZ, SIG_IGN);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 100;
    mLog.Append(Entry(std::string(1'000, 'x')));
    mLog.Append(Entry(std::string(1'000, 'x')));
    return static_cast<int>(mHost.mExceptionTexts.size());
  });
  EXPECT_EQ(ExitCodeOf(child), 1);
  EXPECT_EQ(Content("log.jsonl"), before);
}

TEST_F(JsonLinesLogs, ADirectoryThatTakesNoFilesIsLoggedOnce) {
  // Even the administrator makes no files here.
  qelcore::host::SetDirectories({.mPreferences = "/proc/self"});
  mLog.Append(Entry("lost"));
  mLog.Append(Entry("lost"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_TRUE(mLog.Read().mObjects.empty());
}

TEST_F(JsonLinesLogs, ALinkIsNotWrittenThrough) {
  mHost.Files().Write("elsewhere", "precious\n");
  std::filesystem::create_symlink("../elsewhere", At("log.jsonl"));
  mLog.Append(Entry("x"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_EQ(mHost.Files().Read("elsewhere"), "precious\n");
  EXPECT_FALSE(std::filesystem::exists(At("log.jsonl.1")));
}

TEST_F(JsonLinesLogs, ALinkToNothingMakesNothing) {
  std::filesystem::create_symlink("../elsewhere", At("log.jsonl"));
  mLog.Append(Entry("x"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_FALSE(std::filesystem::exists(mHost.Files().Path() / "elsewhere"));
}

TEST_F(JsonLinesLogs, APipeIsNeitherReadNorWritten) {
  ASSERT_EQ(mkfifo(At("log.jsonl").c_str(), 0600), 0);
  mLog.Append(Entry("x"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_THROW(static_cast<void>(mLog.Read()), std::system_error);
}

}  // namespace
