// Access rights and links of what is saved.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/host/qelcore/files/SafeSaveFixture.h"

namespace {

using qelcore::filesupport::SafeSave;

class LinuxSafeSaves : public testsupport::SafeSaves {
 protected:
  [[nodiscard]] mode_t ModeOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(::lstat(At(name).c_str(), &status), 0) << name;
    return status.st_mode & 07777;
  }
};

TEST_F(LinuxSafeSaves, ANewFileIsForItsOwnerOnly) {
  Save("state", "x");
  EXPECT_EQ(ModeOf("state"), 0600U);
}

TEST_F(LinuxSafeSaves, AnExistingFileKeepsItsAccessRights) {
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

TEST_F(LinuxSafeSaves, TheTemporaryFileIsForItsOwnerOnly) {
  mDirectory.Write("state", "old");
  ASSERT_EQ(::chmod(At("state").c_str(), 0644), 0);
  const SafeSave save(FileAt("state"));
  for (const std::string& name : NamesInDirectory()) {
    if (name != "state") {
      EXPECT_EQ(ModeOf(name), 0600U) << name;
    }
  }
}

TEST_F(LinuxSafeSaves, ALinkInTheSameDirectoryStaysALink) {
  mDirectory.Write("real", "old");
  std::filesystem::create_symlink("real", At("link"));
  std::filesystem::create_symlink(At("link"), At("second link"));
  Save("second link", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(At("link")));
  EXPECT_TRUE(std::filesystem::is_symlink(At("second link")));
  EXPECT_EQ(mDirectory.Read("real"), "new");
}

TEST_F(LinuxSafeSaves, ALinkToNothingInTheSameDirectoryMakesItsTarget) {
  std::filesystem::create_symlink("real", At("link"));
  Save("link", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(At("link")));
  EXPECT_EQ(mDirectory.Read("real"), "new");
}

TEST_F(LinuxSafeSaves, ALinkThatLeavesTheDirectoryIsReplacedItself) {
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

TEST_F(LinuxSafeSaves, LinksInACircleAreReplaced) {
  std::filesystem::create_symlink("second", At("first"));
  std::filesystem::create_symlink("first", At("second"));
  Save("first", "new");
  EXPECT_EQ(mDirectory.Read("first"), "new");
}

}  // namespace
