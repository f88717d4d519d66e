// Links, pipes and devices in the place of records, and access rights in their way.
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "tests/host/qelcore/diagnostics/UnreadableRecordsFixture.h"

namespace {

using testsupport::AllRecords;
using testsupport::Records;
using testsupport::UnreadableRecords;

/// Takes the right to look into a directory away from the process, an administrator's included.
class LockedDirectory {
 public:
  explicit LockedDirectory(std::filesystem::path path) : mPath(std::move(path)) {
    EXPECT_EQ(chmod(mPath.c_str(), 0), 0);
    if (geteuid() == 0) setfsuid(65534);
  }
  ~LockedDirectory() {
    if (geteuid() == 0) setfsuid(0);
    EXPECT_EQ(chmod(mPath.c_str(), 0700), 0);
  }
  LockedDirectory(const LockedDirectory&) = delete;
  LockedDirectory& operator=(const LockedDirectory&) = delete;

 private:
  std::filesystem::path mPath;
};

TEST_F(UnreadableRecords, ALinkToItselfIsNoFile) {
  ExpectErrors(
      [](const std::filesystem::path& path) { std::filesystem::create_symlink(path.filename(), path); });
}

TEST_F(UnreadableRecords, APipeIsNoFile) {
  ExpectErrors([](const std::filesystem::path& path) { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); });
}

TEST_F(UnreadableRecords, ADeviceIsNoFile) {
  ExpectErrors([](const std::filesystem::path& path) { std::filesystem::create_symlink("/dev/zero", path); });
}

TEST_F(UnreadableRecords, ADirectoryThatMayNotBeLookedIntoTellsNothing) {
  for (const Records& records : AllRecords()) {
    const LockedDirectory locked(mHost.Preferences());
    EXPECT_THROW(static_cast<void>(records.mHasAny()), std::runtime_error) << records.mFiles.front();
  }
}

TEST_F(UnreadableRecords, AFileThatMayNotBeReadIsAnError) {
  for (const Records& records : AllRecords()) {
    const std::filesystem::path path = mHost.Files().Write("preferences/" + records.mFiles.front(), "{}\n");
    const LockedDirectory locked(path);
    ExpectError(records, path);
  }
}

TEST_F(UnreadableRecords, ALinkToNothingIsNoError) {
  for (const Records& records : AllRecords()) {
    std::filesystem::create_symlink("nothing", mHost.Preferences() / records.mFiles.front());
    EXPECT_FALSE(records.mHasAny()) << records.mFiles.front();
  }
}

}  // namespace
