#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::filesupport::File;
using qelcore::filesupport::SafeSave;
using qelcore::host::FileOperation;
using qelcore::string::UTF8to16;

class SafeSaves : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path At(const std::string& name) const { return mDirectory.Path() / name; }
  [[nodiscard]] File FileAt(const std::string& name) const { return File(UTF8to16(At(name).string())); }

  /// Saves in one go.
  void Save(const std::string& name, const std::string& content) const {
    SafeSave save(FileAt(name));
    save.Write(content);
    save.Commit();
  }

  /// The names in the directory, sorted.
  [[nodiscard]] std::vector<std::string> NamesInDirectory() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(mDirectory.Path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  [[nodiscard]] mode_t ModeOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(::lstat(At(name).c_str(), &status), 0) << name;
    return status.st_mode & 07777;
  }

  testsupport::TemporaryDirectory mDirectory;
};

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

TEST_F(SafeSaves, ANewFileIsForItsOwnerOnly) {
  Save("state", "x");
  EXPECT_EQ(ModeOf("state"), 0600U);
}

TEST_F(SafeSaves, AnExistingFileKeepsItsAccessRights) {
  for (const mode_t mode : {0644U, 0640U, 0600U, 0444U}) {
    mDirectory.Write("state", "old");
    ASSERT_EQ(::chmod(At("state").c_str(), mode), 0);
    Save("state", "new");
    EXPECT_EQ(ModeOf("state"), mode);
    EXPECT_EQ(mDirectory.Read("state"), "new");
    std::filesystem::remove(At("state"));
  }
  mDirectory.Write("state", "old");
  ASSERT_EQ(::chmod(At("state").c_str(), 06755), 0);
  Save("state", "new");
  EXPECT_EQ(ModeOf("state"), 0755U);
}

TEST_F(SafeSaves, TheTemporaryFileIsForItsOwnerOnly) {
  mDirectory.Write("state", "old");
  ASSERT_EQ(::chmod(At("state").c_str(), 0644), 0);
  const SafeSave save(FileAt("state"));
  for (const std::string& name : NamesInDirectory()) {
    if (name != "state") {
      EXPECT_EQ(ModeOf(name), 0600U) << name;
    }
  }
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

TEST_F(SafeSaves, ALinkInTheSameDirectoryStaysALink) {
  mDirectory.Write("real", "old");
  std::filesystem::create_symlink("real", At("link"));
  std::filesystem::create_symlink(At("link"), At("second link"));
  Save("second link", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(At("link")));
  EXPECT_TRUE(std::filesystem::is_symlink(At("second link")));
  EXPECT_EQ(mDirectory.Read("real"), "new");
}

TEST_F(SafeSaves, ALinkToNothingInTheSameDirectoryMakesItsTarget) {
  std::filesystem::create_symlink("real", At("link"));
  Save("link", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(At("link")));
  EXPECT_EQ(mDirectory.Read("real"), "new");
}

TEST_F(SafeSaves, ALinkThatLeavesTheDirectoryIsReplacedItself) {
  mDirectory.Write("elsewhere/real", "untouched");
  const std::filesystem::path targets[] = {"elsewhere/real", At("elsewhere/real"),
                                           "./elsewhere/../elsewhere/real", "..", "/dev/null"};
  for (const std::filesystem::path& target : targets) {
    std::filesystem::create_symlink(target, At("link"));
    Save("link", "new");
    EXPECT_FALSE(std::filesystem::is_symlink(At("link"))) << target;
    EXPECT_EQ(mDirectory.Read("link"), "new") << target;
    EXPECT_EQ(mDirectory.Read("elsewhere/real"), "untouched") << target;
    std::filesystem::remove(At("link"));
  }
}

TEST_F(SafeSaves, LinksInACircleAreReplaced) {
  std::filesystem::create_symlink("second", At("first"));
  std::filesystem::create_symlink("first", At("second"));
  Save("first", "new");
  EXPECT_EQ(mDirectory.Read("first"), "new");
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
