// Records that are there and cannot be read: that must not look like no records.
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/CrashTrail.h"
#include "host/qelcore/HostSetup.h"
#include "tests/support/TestHost.h"

namespace {

/// A kind of records: the names of its files, and reading them back.
struct Records {
  std::vector<std::string> mFiles;
  std::function<bool()> mHasAny;  ///< throws when they cannot be read
};

std::vector<Records> AllRecords() {
  return {{{"analytics-events.jsonl", "analytics-events.jsonl.1"},
           [] { return !qelappsupport::host::ReadEvents().mEvents.empty(); }},
          {{"usage-statistics.jsonl", "usage-statistics.jsonl.1"},
           [] { return !qelcore::host::ReadUsageEntries().mEntries.empty(); }},
          {{"crash-trail.json"}, [] { return qelcore::host::ReadLastTrail().has_value(); }}};
}

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

class UnreadableRecords : public testing::Test {
 protected:
  /// Reading throws, and says which file it is.
  static void ExpectError(const Records& records, const std::filesystem::path& path) {
    try {
      static_cast<void>(records.mHasAny());
      ADD_FAILURE() << path << " was read";
    } catch (const std::runtime_error& error) {
      const std::string message = error.what();
      EXPECT_TRUE(message.starts_with(path.string() + ": ")) << message;
      EXPECT_FALSE(message.ends_with('.')) << message;
    }
  }

  /// Puts something in the place of each file, one after the other, and expects an error.
  void ExpectErrors(const std::function<void(const std::filesystem::path&)>& put) const {
    for (const Records& records : AllRecords()) {
      for (const std::string& name : records.mFiles) {
        const std::filesystem::path path = mHost.Preferences() / name;
        put(path);
        ExpectError(records, path);
        std::filesystem::remove(path);
      }
    }
  }

  testsupport::TestHost mHost;
};

TEST_F(UnreadableRecords, ADirectoryIsNoFile) {
  ExpectErrors([](const std::filesystem::path& path) { std::filesystem::create_directory(path); });
}

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

TEST_F(UnreadableRecords, AFileBeyondAllMeasureIsNotRead) {
  ExpectErrors([](const std::filesystem::path& path) {
    // It has that length without taking the room.
    EXPECT_EQ(truncate(path.c_str(), 0), -1);
    EXPECT_EQ(mknod(path.c_str(), S_IFREG | 0600, 0), 0);
    EXPECT_EQ(truncate(path.c_str(), 536'870'913), 0);
  });
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

TEST_F(UnreadableRecords, WhatIsMissingIsNoError) {
  for (const Records& records : AllRecords()) {
    EXPECT_FALSE(records.mHasAny()) << records.mFiles.front();
    std::filesystem::create_symlink("nothing", mHost.Preferences() / records.mFiles.front());
    EXPECT_FALSE(records.mHasAny()) << records.mFiles.front();
  }
  const std::filesystem::path file = mHost.Files().Write("file", "");
  for (const std::filesystem::path& preferences : {mHost.Preferences() / "absent", file}) {
    qelcore::host::SetDirectories({.mPreferences = preferences.string()});
    for (const Records& records : AllRecords()) {
      EXPECT_FALSE(records.mHasAny()) << preferences << ' ' << records.mFiles.front();
    }
  }
}

}  // namespace
