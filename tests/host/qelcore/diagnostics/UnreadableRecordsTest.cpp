// Records that are there and cannot be read: that must not look like no records.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelcore/diagnostics/UnreadableRecordsFixture.h"

namespace {

using testsupport::AllRecords;
using testsupport::Records;
using testsupport::UnreadableRecords;

TEST_F(UnreadableRecords, ADirectoryIsNoFile) {
  ExpectErrors([](const std::filesystem::path& path) { std::filesystem::create_directory(path); });
}

TEST_F(UnreadableRecords, AFileBeyondAllMeasureIsNotRead) {
  ExpectErrors([](const std::filesystem::path& path) {
    // It has that length without taking the room.
    EXPECT_TRUE(std::ofstream(path).is_open());
    std::filesystem::resize_file(path, 536'870'913);
  });
}

TEST_F(UnreadableRecords, WhatIsMissingIsNoError) {
  for (const Records& records : AllRecords()) {
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
