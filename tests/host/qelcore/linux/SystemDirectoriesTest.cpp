#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::host::Directories;
using qelcore::host::GetDirectories;
using qelcore::host::SetDirectories;

class UsualPlaces : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* const name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"}) {
      ::unsetenv(name);
    }
    ::setenv("HOME", Home().c_str(), 1);
  }

  [[nodiscard]] std::string Home() const { return mDirectory.Path().string(); }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(UsualPlaces, AreBelowTheHomeDirectory) {
  const Directories directories = GetDirectories();
  EXPECT_EQ(directories.mPreferences, Home() + "/.config/scr");
  EXPECT_EQ(directories.mState, Home() + "/.local/state/scr");
  EXPECT_EQ(directories.mDocuments, Home());
  EXPECT_TRUE(std::filesystem::is_empty(mDirectory.Path()));
}

TEST_F(UsualPlaces, FollowTheEnvironment) {
  ::setenv("XDG_CONFIG_HOME", "/x/config", 1);
  ::setenv("XDG_STATE_HOME", "/x/state/", 1);
  EXPECT_EQ(GetDirectories().mPreferences, "/x/config/scr");
  EXPECT_EQ(GetDirectories().mState, "/x/state/scr");
}

TEST_F(UsualPlaces, RelativeAndEmptyValuesDoNotCount) {
  for (const char* const value : {"", "relative", "./x", "~/x"}) {
    ::setenv("XDG_CONFIG_HOME", value, 1);
    ::setenv("XDG_STATE_HOME", value, 1);
    EXPECT_EQ(GetDirectories().mPreferences, Home() + "/.config/scr") << value;
    EXPECT_EQ(GetDirectories().mState, Home() + "/.local/state/scr") << value;
  }
}

TEST_F(UsualPlaces, WithoutAHomeVariableTheAccountDecides) {
  for (const char* const value : {"", "relative"}) {
    ::setenv("HOME", value, 1);
    const std::string preferences = GetDirectories().mPreferences;
    EXPECT_TRUE(preferences.starts_with('/')) << preferences;
    EXPECT_TRUE(preferences.ends_with("/.config/scr")) << preferences;
  }
}

TEST_F(UsualPlaces, DocumentsComeFromTheUserDirectories) {
  struct Row {
    const char* mContent;
    std::string mDocuments;
  };
  const std::string home = Home();
  for (const Row& row :
       {Row{"XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n", home + "/Dokumente"},
        {"# a comment\nXDG_MUSIC_DIR=\"$HOME/Musik\"\n  XDG_DOCUMENTS_DIR=\"$HOME/D\"", home + "/D"},
        {"XDG_DOCUMENTS_DIR=\"/data/docs/\"\n", "/data/docs"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/\"\n", home},
        {"XDG_DOCUMENTS_DIR=\"$HOME/with \\$\"\n", home + "/with $"},
        {"XDG_DOCUMENTS_DIR=\"relative\"\n", home},
        {"XDG_DOCUMENTS_DIR=\"unclosed\n", home},
        {"#XDG_DOCUMENTS_DIR=\"/no\"\n", home},
        {"", home}}) {
    mDirectory.Write(".config/user-dirs.dirs", row.mContent);
    EXPECT_EQ(GetDirectories().mDocuments, row.mDocuments) << row.mContent;
  }
  std::filesystem::remove(mDirectory.Path() / ".config/user-dirs.dirs");
  std::filesystem::create_directory(mDirectory.Path() / "Documents");
  EXPECT_EQ(GetDirectories().mDocuments, home + "/Documents");
}

TEST_F(UsualPlaces, UserDirectoriesThatAreNoFileAreNotWaitedFor) {
  const std::filesystem::path list = mDirectory.Write(".config/user-dirs.dirs", "");
  std::filesystem::remove(list);
  ASSERT_EQ(::mkfifo(list.c_str(), 0600), 0);
  EXPECT_EQ(GetDirectories().mDocuments, Home());
  std::filesystem::remove(list);
  std::filesystem::create_symlink("/dev/zero", list);
  EXPECT_EQ(GetDirectories().mDocuments, Home());
}

TEST_F(UsualPlaces, ApplicationDataComesFromTheSourceTree) {
  // The test program is not installed. Built outside the source tree it finds no data.
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  const std::string sources = QELSCR_SOURCE_DIR;
  const bool isInSourceTree = program.string().starts_with(sources + '/');
  const std::string installed = (program.parent_path().parent_path() / "share/scr").string();
  EXPECT_EQ(GetDirectories().mApplication, isInSourceTree ? sources + "/data" : installed);
}

TEST_F(UsualPlaces, GivenDirectoriesWin) {
  SetDirectories({.mPreferences = "/p", .mApplication = "/a", .mDocuments = "/d", .mState = "/s"});
  const Directories directories = GetDirectories();
  EXPECT_EQ(directories.mPreferences, "/p");
  EXPECT_EQ(directories.mApplication, "/a");
  EXPECT_EQ(directories.mDocuments, "/d");
  EXPECT_EQ(directories.mState, "/s");
  SetDirectories({.mState = "/other"});
  EXPECT_EQ(GetDirectories().mPreferences, Home() + "/.config/scr");
  EXPECT_EQ(GetDirectories().mState, "/other");
}

TEST_F(UsualPlaces, GivenDirectoriesBecomeAbsolute) {
  std::filesystem::current_path(mDirectory.Path());
  const std::string here = std::filesystem::current_path().string();
  struct Row {
    const char* mGiven;
    std::string mAbsolute;
  };
  for (const Row& row : {Row{"prefs", here + "/prefs"},
                         {"./a/../b/", here + "/b"},
                         {".", here},
                         {"/", "/"},
                         {"/a//b/", "/a/b"}}) {
    SetDirectories({.mPreferences = row.mGiven});
    EXPECT_EQ(GetDirectories().mPreferences, row.mAbsolute) << row.mGiven;
  }
}

}  // namespace
