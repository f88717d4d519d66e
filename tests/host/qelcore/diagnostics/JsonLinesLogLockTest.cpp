// Another process that keeps the log's lock, because it was stopped for example.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "tests/host/qelcore/diagnostics/JsonLinesLogFixture.h"

namespace {

using testsupport::JsonLinesLogs;
using Strings = std::vector<std::string>;

/// A process that holds the lock of a file and is stopped, until `Kill` or the end of the object.
class StoppedHolder {
 public:
  explicit StoppedHolder(const std::filesystem::path& lockFile) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe(ends), 0);
    mChild = fork();
    EXPECT_GE(mChild, 0);
    if (mChild == 0) {
      const int file = open(lockFile.c_str(), O_RDWR | O_CREAT, 0600);
      const char isLocked = file >= 0 && flock(file, LOCK_EX) == 0 ? 'y' : 'n';
      if (write(ends[1], &isLocked, 1) == 1) raise(SIGSTOP);
      _exit(0);
    }
    char isLocked = 0;
    EXPECT_EQ(read(ends[0], &isLocked, 1), 1);
    EXPECT_EQ(isLocked, 'y');
    close(ends[0]);
    close(ends[1]);
  }
  ~StoppedHolder() { Kill(); }
  StoppedHolder(const StoppedHolder&) = delete;
  StoppedHolder& operator=(const StoppedHolder&) = delete;

  void Kill() {
    if (mChild <= 0) return;
    EXPECT_EQ(kill(mChild, SIGKILL), 0);
    EXPECT_EQ(waitpid(mChild, nullptr, 0), mChild);
    mChild = 0;
  }

 private:
  pid_t mChild = 0;
};

TEST_F(JsonLinesLogs, AnEntryIsLostWhenAnotherProcessKeepsTheLock) {
  StoppedHolder holder(At("log.jsonl.lock"));
  EXPECT_NO_THROW(mLog.Append(Entry("lost")));
  EXPECT_NO_THROW(mLog.Append(Entry("lost")));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_EQ(mHost.mExceptionTexts, Strings{At("log.jsonl.lock").string() + ": Device or resource busy"});
  EXPECT_FALSE(std::filesystem::exists(At("log.jsonl")));
  holder.Kill();
  mLog.Append(Entry("kept"));
  EXPECT_EQ(Texts(), Strings{"kept"});
}

TEST_F(JsonLinesLogs, TheLogIsReadWhileAnotherProcessKeepsTheLock) {
  mHost.Files().Write("preferences/log.jsonl.1", "{\"text\":\"older\"}\n");
  mLog.Append(Entry("newer"));
  const StoppedHolder holder(At("log.jsonl.lock"));
  EXPECT_EQ(Texts(), (Strings{"older", "newer"}));
  EXPECT_EQ(mHost.mExceptionTexts, Strings());
}

TEST_F(JsonLinesLogs, AFullFileStaysWhileAnotherProcessKeepsTheLock) {
  mLog.Append(Entry(TextForLine(1'048'576)));
  const StoppedHolder holder(At("log.jsonl.lock"));
  mLog.Append(Entry("lost"));
  EXPECT_EQ(Content("log.jsonl").size(), 1'048'576U);
  EXPECT_FALSE(std::filesystem::exists(At("log.jsonl.1")));
}

TEST_F(JsonLinesLogs, WhoeverKeepsTheLockIsNotWaitedForWithEachEntry) {
  const StoppedHolder holder(At("log.jsonl.lock"));
  const auto begin = std::chrono::steady_clock::now();
  for (int count = 0; count < 100; ++count) mLog.Append(Entry("lost"));
  // To wait for each would take 20 seconds.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

}  // namespace
