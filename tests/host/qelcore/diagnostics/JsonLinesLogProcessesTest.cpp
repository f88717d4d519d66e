// Processes that append to one file, and processes that may not. On systems with `fork`.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelcore/diagnostics/JsonLinesLogFixture.h"

namespace {

using qelcore::host::JsonLinesLog;
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

TEST_F(JsonLinesLogs, ProcessesAppendAtATime) {
  constexpr int kProcesses = 3;
  constexpr int kEntries = 150;
  const std::string filling(4'000, 'x');
  std::vector<pid_t> children;
  for (int number = 0; number < kProcesses; ++number) {
    children.push_back(Start([&] {
      for (int count = 0; count < kEntries; ++count) {
        mLog.Append(Entry(std::to_string(number * kEntries + count) + filling));
      }
      return static_cast<int>(mHost.mExceptionTexts.size());
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(ExitCodeOf(child), 0);
  const Strings texts = Texts();
  EXPECT_EQ(std::set<std::string>(texts.begin(), texts.end()).size(), 450U);
  EXPECT_EQ(texts.size(), 450U);
  EXPECT_EQ(mLog.Read().mDamagedLines, 0U);
  EXPECT_LE(Content("log.jsonl.1").size(), 1'048'576U);
  EXPECT_LE(Content("log.jsonl").size(), 1'048'576U);
}

TEST_F(JsonLinesLogs, ProcessesThatFindTheFileFullMoveItAsideOnce) {
  // Whoever moves the file aside a second time would put a short new file in the place of the full one.
  for (int round = 0; round < 10; ++round) {
    for (const char* const name : {"log.jsonl", "log.jsonl.1"}) std::filesystem::remove(At(name));
    mLog.Append(Entry(TextForLine(1'048'576)));
    std::vector<pid_t> children;
    for (const char* const text : {"a", "b", "c", "d"}) {
      children.push_back(Start([&, text] {
        mLog.Append(Entry(text));
        return static_cast<int>(mHost.mExceptionTexts.size());
      }));
    }
    for (const pid_t child : children) EXPECT_EQ(ExitCodeOf(child), 0);
    ASSERT_EQ(Content("log.jsonl.1").size(), 1'048'576U) << round;
    ASSERT_EQ(Texts().size(), 5U) << round;
  }
}

TEST_F(JsonLinesLogs, AProcessThatDiesLeavesTheLogUsable) {
  const pid_t child = Start([&] {
    mLog.Append(Entry("first"));
    raise(SIGKILL);
    return 0;
  });
  EXPECT_EQ(ExitCodeOf(child), -1);
  mLog.Append(Entry("second"));
  EXPECT_EQ(Texts(), (Strings{"first", "second"}));
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

TEST_F(JsonLinesLogs, ALogWithoutALockCanBeRead) {
  mHost.Files().Write("preferences/log.jsonl", "{\"text\":\"x\"}\n");
  std::filesystem::create_directory(At("log.jsonl.lock"));
  EXPECT_EQ(Texts(), Strings{"x"});
}

TEST_F(JsonLinesLogs, APipeIsNeitherReadNorWritten) {
  ASSERT_EQ(mkfifo(At("log.jsonl").c_str(), 0600), 0);
  mLog.Append(Entry("x"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_THROW(static_cast<void>(mLog.Read()), std::system_error);
}

}  // namespace
