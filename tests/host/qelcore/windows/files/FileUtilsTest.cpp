#include "platform/qelcore/FileUtils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/qelcore/System.h"
#include "tests/host/qelcore/files/ProgramImage.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::utility::FileUtils::ConvertEnvPath;
using qelcore::utility::FileUtils::GetFileVersion;
using testsupport::EnvironmentVariable;

class WindowsPlaceholders : public testing::Test {
 protected:
  EnvironmentVariable mOne{"SCR_ONE", "one"};
  EnvironmentVariable mPercent{"SCR_PERCENT", "%SCR_ONE%"};
  EnvironmentVariable mLong{"SCR_LONG", std::string(5000, 'x')};
  EnvironmentVariable mNotAscii{"SCR_EACUTE", "\xC3\xA9\xF0\x9F\x98\x80"};
  EnvironmentVariable mUnset{"SCR_UNSET", std::nullopt};
};

TEST_F(WindowsPlaceholders, AreExpanded) {
  struct Row {
    std::string mPath;
    std::string mExpanded;
  };
  for (const Row& row : {Row{"", ""},
                         {"C:\\plain\\path", "C:\\plain\\path"},
                         {"%SCR_ONE%", "one"},
                         {"C:\\%SCR_ONE%\\b", "C:\\one\\b"},
                         {"%scr_one%%Scr_One%", "oneone"},
                         {"%SCR_PERCENT%", "%SCR_ONE%"},
                         {"%SCR_LONG%x", std::string(5001, 'x')},
                         {"%SCR_EACUTE%", "\xC3\xA9\xF0\x9F\x98\x80"},
                         {"100%%", "100%"},
                         {"%%SCR_ONE%%", "%SCR_ONE%"},
                         {"$SCR_ONE/${SCR_ONE}/~", "$SCR_ONE/${SCR_ONE}/~"}}) {
    std::string path = row.mPath;
    EXPECT_EQ(ConvertEnvPath(path), 0) << row.mPath;
    EXPECT_EQ(path, row.mExpanded) << row.mPath;
  }
}

TEST_F(WindowsPlaceholders, AFaultLeavesThePathAlone) {
  for (const std::string text : {"%SCR_UNSET%", "a\\%SCR_UNSET%\\b", "%SCR_ONE%\\%SCR_UNSET%", "100%", "%",
                                 "%%%", "%SCR_ONE", "%SCR ONE%", "%=C:%", "%=ExitCode%", "%SCR_\xFF%"}) {
    std::string path = text;
    EXPECT_NE(ConvertEnvPath(path), 0) << text;
    EXPECT_EQ(path, text);
  }
}

TEST_F(WindowsPlaceholders, NothingIsAskedOfOtherMachines) {
  for (const std::string text :
       {R"(\\server\share\a.dll)", R"(\\%SCR_ONE%.example\share)", "//server/share", R"(\/server\share)",
        R"(\\?\UNC\server\share)", R"(\\?\unc\server\share)", R"(\\.\UNC\server\share)",
        R"(\\?\GLOBALROOT\Device\Mup\server\share)", R"(\\.\pipe\name)", R"(\\)"}) {
    std::string path = text;
    EXPECT_NE(ConvertEnvPath(path), 0) << text;
    EXPECT_EQ(path, text);
  }
  for (const std::string text : {R"(\\?\C:\a.dll)", R"(C:\\server\share)", R"(\a.dll)", "a.dll", "C:a.dll"}) {
    std::string path = text;
    EXPECT_EQ(ConvertEnvPath(path), 0) << text;
  }
}

class WindowsFileVersions : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const { return (mDirectory.Path() / name).string(); }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(WindowsFileVersions, OfASystemLibraryIsInItsResource) {
  std::string path = "%SystemRoot%\\System32\\kernel32.dll";
  ASSERT_EQ(ConvertEnvPath(path), 0);
  const std::string version = qelcore::host::NativeFileVersion(path);
  EXPECT_TRUE(version.starts_with("10.") || version.starts_with("6.")) << version;
  EXPECT_EQ(GetFileVersion(path), version);
}

TEST_F(WindowsFileVersions, OfAnImageIsTheNumberOfTheFile) {
  mDirectory.Write("driver.dll", testsupport::MakeProgramImage().mBytes);
  EXPECT_EQ(GetFileVersion(At("driver.dll")), "24.21.14.1195");
}

TEST_F(WindowsFileVersions, WhatHasNoneGivesNone) {
  mDirectory.Write("text.txt", "no program");
  mDirectory.Write("broken.dll", "MZ");
  std::filesystem::create_directory(mDirectory.Path() / "directory.dll");
  for (const std::string& path :
       {std::string(), At("absent.dll"), At("text.txt"), At("broken.dll"), At("directory.dll"),
        std::string("NUL"), std::string("\\\\.\\pipe\\qelscr-test"), std::string("\xFF"),
        At("text.txt") + std::string("\0x", 2), "C:\\" + std::string(40'000, 'x')}) {
    EXPECT_EQ(GetFileVersion(path), "") << path.substr(0, 80);
  }
}

}  // namespace
