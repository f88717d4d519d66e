#include "platform/qelcore/FileUtils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/host/qelcore/files/ProgramImage.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;
using qelcore::host::RecordedFilesScope;
using qelcore::string::UTF8to16;
using qelcore::utility::FileUtils::ConvertEnvPath;
using qelcore::utility::FileUtils::GetFileVersion;
using testsupport::EnvironmentVariable;
using testsupport::Placeholder;

class FileVersions : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const { return (mDirectory.Path() / name).string(); }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(FileVersions, OfAWindowsLibraryIsInItsResource) {
  mDirectory.Write("driver.dll", testsupport::MakeProgramImage().mBytes);
  EXPECT_EQ(GetFileVersion(At("driver.dll")), "24.21.14.1195");
  mDirectory.Write("driver.so.3", testsupport::MakeProgramImage().mBytes);
  EXPECT_EQ(GetFileVersion(At("driver.so.3")), "24.21.14.1195");
}

TEST_F(FileVersions, WhatIsNoFileHasNone) {
  std::filesystem::create_directory(At("lib.so.1"));
  for (const std::string& path :
       {std::string(), At("absent.so.1"), At("lib.so.1"), std::string("/"), std::string(10000, 'x'),
        At("lib.so.1") + std::string("\0x", 2), std::string("\xFF\xFE")}) {
    EXPECT_EQ(GetFileVersion(path), "") << path;
  }
}

// ---- Recorded machines

TEST_F(FileVersions, ARecordedMachineStandsForTheFileSystem) {
  const std::string content = testsupport::MakeProgramImage().mBytes;
  mDirectory.Write("real.dll", content);
  const EnvironmentVariable one("SCR_ONE", "one");
  const std::string real = At("real.dll");
  const File realFile(UTF8to16(real));
  const Dir realDirectory(UTF8to16(mDirectory.Path().string()));
  const File recordedFile(u"C:\\Windows\\System32\\x.dll");
  {
    const RecordedFilesScope scope({{"C:\\Windows\\System32\\x.dll", "1.2.3.4"}, {"C:\\no version", ""}});
    EXPECT_TRUE(recordedFile.Exists());
    EXPECT_EQ(GetFileVersion("C:\\Windows\\System32\\x.dll"), "1.2.3.4");
    EXPECT_TRUE(File(u"C:\\no version").Exists());
    EXPECT_EQ(GetFileVersion("C:\\no version"), "");
    EXPECT_FALSE(File(u"c:\\windows\\system32\\X.dll").Exists());
    EXPECT_FALSE(realFile.Exists());
    EXPECT_EQ(GetFileVersion(real), "");
    EXPECT_FALSE(realDirectory.Exists());
    EXPECT_FALSE(Dir(u"C:\\Windows\\System32\\x.dll").Exists());
    std::string path = Placeholder("SCR_ONE") + "/%/${SCR_UNSET";
    EXPECT_EQ(ConvertEnvPath(path), 0);
    EXPECT_EQ(path, Placeholder("SCR_ONE") + "/%/${SCR_UNSET");
    // Reading and writing go to the real file system all the same.
    EXPECT_EQ(qelcore::filesupport::IPlatformByteStream(realFile).ReadAll(), content);
    qelcore::filesupport::OPlatformByteStream(File(UTF8to16(At("written")))).Write("x");
  }
  EXPECT_EQ(mDirectory.Read("written"), "x");
  EXPECT_FALSE(recordedFile.Exists());
  EXPECT_TRUE(realFile.Exists());
  EXPECT_TRUE(realDirectory.Exists());
  EXPECT_EQ(GetFileVersion(real), "24.21.14.1195");
  std::string path = Placeholder("SCR_ONE");
  EXPECT_EQ(ConvertEnvPath(path), 0);
  EXPECT_EQ(path, "one");
}

TEST_F(FileVersions, CreatingThePreferencesDirectoryWorksUnderARecordedMachine) {
  qelcore::host::SetDirectories({.mPreferences = At("preferences")});
  const RecordedFilesScope scope({});
  EXPECT_NO_THROW((void)Dir::PrefDir());
  EXPECT_NO_THROW((void)Dir::PrefDir());
  EXPECT_TRUE(std::filesystem::is_directory(At("preferences")));
}

}  // namespace
