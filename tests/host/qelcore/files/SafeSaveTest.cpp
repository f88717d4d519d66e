#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "tests/host/qelcore/files/SafeSaveFixture.h"

namespace {

using qelcore::filesupport::File;
using qelcore::filesupport::SafeSave;
using qelcore::host::FileOperation;
using testsupport::SafeSaves;

using Names = std::vector<std::string>;

TEST_F(SafeSaves, CommitReplacesTheTarget) {
  mDirectory.Write("state", "old");
  {
    SafeSave save(FileAt("state"));
    save.Write("new ");
    save.Write("content");
    EXPECT_EQ(mDirectory.Read("state"), "old");
    EXPECT_EQ(NamesInDirectory().size(), 2U);
    save.Commit();
    EXPECT_EQ(mDirectory.Read("state"), "new content");
  }
  EXPECT_EQ(mDirectory.Read("state"), "new content");
  EXPECT_EQ(NamesInDirectory(), Names{"state"});
}

TEST_F(SafeSaves, WithoutCommitTheTargetStays) {
  mDirectory.Write("state", "old");
  {
    SafeSave save(FileAt("state"));
    save.Write("new");
  }
  EXPECT_EQ(mDirectory.Read("state"), "old");
  EXPECT_EQ(NamesInDirectory(), Names{"state"});
  { SafeSave save(FileAt("other")); }
  EXPECT_EQ(NamesInDirectory(), Names{"state"});
}

TEST_F(SafeSaves, TwoSavesAtATimeDoNotDisturbEachOther) {
  SafeSave first(FileAt("state"));
  SafeSave second(FileAt("state"));
  first.Write("first");
  second.Write("second");
  second.Commit();
  EXPECT_EQ(mDirectory.Read("state"), "second");
  first.Commit();
  EXPECT_EQ(mDirectory.Read("state"), "first");
  EXPECT_EQ(NamesInDirectory(), Names{"state"});
}

TEST_F(SafeSaves, ADirectoryIsNotReplaced) {
  std::filesystem::create_directory(At("directory"));
  SafeSave save(FileAt("directory"));
  save.Write("x");
  EXPECT_THROW(save.Commit(), std::system_error);
  EXPECT_TRUE(std::filesystem::is_directory(At("directory")));
}

TEST_F(SafeSaves, OpeningThrowsWhereItCannot) {
  EXPECT_THROW(SafeSave{FileAt("absent/state")}, std::system_error);
  EXPECT_THROW(SafeSave{File()}, std::system_error);
}

TEST_F(SafeSaves, AFailureAnywhereLeavesTheTargetAndNothingElse) {
  mDirectory.Write("state", "old");
  for (const FileOperation failing : {FileOperation::kOpenForWriting, FileOperation::kWrite,
                                      FileOperation::kFlush, FileOperation::kReplace}) {
    std::string failedPath;
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
      if (operation == failing) {
        failedPath = path;
        throw std::system_error(std::make_error_code(std::errc::no_space_on_device), path);
      }
    });
    EXPECT_THROW(Save("state", "new"), std::system_error) << static_cast<int>(failing);
    EXPECT_EQ(failedPath, At("state").string()) << static_cast<int>(failing);
    EXPECT_EQ(mDirectory.Read("state"), "old") << static_cast<int>(failing);
    EXPECT_EQ(NamesInDirectory(), Names{"state"}) << static_cast<int>(failing);
  }
}

}  // namespace
