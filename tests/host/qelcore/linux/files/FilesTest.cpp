// Files, directories and streams where Linux has what others have not: links, pipes, devices, access rights.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;
using qelcore::filesupport::IPlatformByteStream;
using qelcore::filesupport::OPlatformByteStream;
using qelcore::string::UTF8to16;

File FileAt(const std::filesystem::path& path) {
  return File(UTF8to16(path.string()));
}
Dir DirAt(const std::filesystem::path& path) {
  return Dir(UTF8to16(path.string()));
}

mode_t ModeOf(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 0777;
}

class LinuxFiles : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path At(const std::string& name) const { return mDirectory.Path() / name; }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(LinuxFiles, ExistsFollowsLinksAndCountsPipesAsFiles) {
  mDirectory.Write("file", "x");
  std::filesystem::create_symlink("file", At("link"));
  std::filesystem::create_symlink("nothing", At("dangling"));
  std::filesystem::create_symlink(".", At("directory link"));
  ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0600), 0);
  struct Row {
    const char* mName;
    bool mIsFile;
    bool mIsDirectory;
  };
  for (const Row& row : {Row{"link", true, false},
                         {"dangling", false, false},
                         {"pipe", true, false},
                         {"directory link", false, true}}) {
    EXPECT_EQ(FileAt(At(row.mName)).Exists(), row.mIsFile) << row.mName;
    EXPECT_EQ(DirAt(At(row.mName)).Exists(), row.mIsDirectory) << row.mName;
  }
}

TEST_F(LinuxFiles, NoDirectoryIsMadeWhereTheSystemKeepsItsOwn) {
  EXPECT_THROW(DirAt("/proc/none/such").Create(), std::system_error);
}

TEST_F(LinuxFiles, CreateDoesNotWaitForAReaderOfAPipe) {
  ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0600), 0);
  EXPECT_THROW(FileAt(At("pipe")).Create(), std::system_error);
}

TEST_F(LinuxFiles, DeletingALinkLeavesItsTarget) {
  mDirectory.Write("file", "x");
  std::filesystem::create_symlink("file", At("link"));
  FileAt(At("link")).Delete();
  EXPECT_EQ(mDirectory.Read("file"), "x");
  EXPECT_FALSE(std::filesystem::is_symlink(At("link")));
}

TEST_F(LinuxFiles, ThePreferencesDirectoryIsMadeForItsOwnerOnly) {
  qelcore::host::SetDirectories({.mPreferences = At("config/scr").string()});
  (void)Dir::PrefDir();
  EXPECT_EQ(ModeOf(At("config/scr")), 0700U);
  EXPECT_EQ(ModeOf(At("config")), 0700U);
}

TEST_F(LinuxFiles, AFullDiskIsAnError) {
  OPlatformByteStream output(FileAt("/dev/full"));
  try {
    output.Write("x");
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::system_error& error) {
    EXPECT_STREQ(error.what(), "/dev/full: No space left on device");
  }
}

TEST_F(LinuxFiles, FilesThatSayTheyAreEmptyAreReadAllTheSame) {
  IPlatformByteStream input(FileAt("/proc/self/status"));
  EXPECT_EQ(input.GetLength(), 0U);
  EXPECT_NE(input.ReadAll().find("Name:"), std::string::npos);
}

}  // namespace
