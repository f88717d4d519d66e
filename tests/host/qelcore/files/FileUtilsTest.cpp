#include "platform/qelcore/FileUtils.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/host/qelcore/files/ProgramImage.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;
using qelcore::host::RecordedFilesScope;
using qelcore::string::UTF8to16;
using qelcore::utility::FileUtils::ConvertEnvPath;
using qelcore::utility::FileUtils::GetFileVersion;

class FileVersions : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const { return (mDirectory.Path() / name).string(); }

  testsupport::TemporaryDirectory mDirectory;
};

const std::string kElf = std::string(
                             "\x7F"
                             "ELF\x02\x01\x01",
                             7) +
                         std::string(200, '\0');

TEST_F(FileVersions, OfASharedLibraryIsTheNumberOfItsRealName) {
  mDirectory.Write("libGL.so.1.7.0", kElf);
  std::filesystem::create_symlink("libGL.so.1.7.0", At("libGL.so.1"));
  std::filesystem::create_symlink("libGL.so.1", At("libGL.so"));
  for (const char* const name : {"libGL.so", "libGL.so.1", "libGL.so.1.7.0"}) {
    EXPECT_EQ(GetFileVersion(At(name)), "1.7.0") << name;
  }
  struct Row {
    const char* mName;
    const char* mVersion;
  };
  for (const Row& row : {Row{"liba.so.6", "6"},
                         {"libb.so.72.1", "72.1"},
                         {"libc.so.1.2.3.4", "1.2.3.4"},
                         {"libd.so", ""},
                         {"libe.so.", ""},
                         {"libf.so.1.", ""},
                         {"libg.so.1a", ""},
                         {"libh.so.1..2", ""},
                         {"libi.so.1-2", ""},
                         {"libj.so.5.so.6", "6"},
                         {"k.so.5 ", ""}}) {
    mDirectory.Write(row.mName, kElf);
    EXPECT_EQ(GetFileVersion(At(row.mName)), row.mVersion) << row.mName;
  }
}

TEST_F(FileVersions, ALibraryIsToldByItsContent) {
  mDirectory.Write("libGL.so.1.7.0", "INPUT(libother.so)");
  EXPECT_EQ(GetFileVersion(At("libGL.so.1.7.0")), "");
  mDirectory.Write("libempty.so.1", "");
  EXPECT_EQ(GetFileVersion(At("libempty.so.1")), "");
}

TEST_F(FileVersions, OfAWindowsLibraryIsInItsResource) {
  mDirectory.Write("driver.dll", testsupport::MakeProgramImage().mBytes);
  EXPECT_EQ(GetFileVersion(At("driver.dll")), "24.21.14.1195");
  mDirectory.Write("driver.so.3", testsupport::MakeProgramImage().mBytes);
  EXPECT_EQ(GetFileVersion(At("driver.so.3")), "24.21.14.1195");
}

TEST_F(FileVersions, WhatIsNoFileHasNone) {
  std::filesystem::create_directory(At("lib.so.1"));
  std::filesystem::create_symlink("self", At("self"));
  ASSERT_EQ(::mkfifo(At("pipe.so.1").c_str(), 0600), 0);
  for (const std::string& path :
       {std::string(), At("absent.so.1"), At("lib.so.1"), At("self"), At("pipe.so.1"),
        std::string("/dev/zero"), std::string("/"), std::string(10000, 'x'),
        At("lib.so.1") + std::string("\0x", 2), std::string("\xFF\xFE")}) {
    EXPECT_EQ(GetFileVersion(path), "") << path;
  }
}

// ---- Placeholders

struct PathRow {
  const char* mPath;
  const char* mExpanded;
};

class EnvironmentPlaceholders : public testing::Test {
 protected:
  void SetUp() override {
    ::setenv("HOME", "/home/anna", 1);
    ::setenv("SCR_ONE", "one", 1);
    ::setenv("SCR_EMPTY", "", 1);
    ::setenv("SCR_DOLLAR", "$SCR_ONE", 1);
    ::unsetenv("SCR_UNSET");
  }
};

TEST_F(EnvironmentPlaceholders, AreExpanded) {
  for (const PathRow& row : {PathRow{"", ""},
                             {"/plain/path", "/plain/path"},
                             {"~", "/home/anna"},
                             {"~/x", "/home/anna/x"},
                             {"~bert/x", "~bert/x"},
                             {"/a/~/x", "/a/~/x"},
                             {"$SCR_ONE", "one"},
                             {"/a/$SCR_ONE/b", "/a/one/b"},
                             {"${SCR_ONE}x", "onex"},
                             {"$SCR_ONE$SCR_ONE", "oneone"},
                             {"a$SCR_EMPTY/b", "a/b"},
                             {"$SCR_DOLLAR", "$SCR_ONE"},
                             {"~/$SCR_ONE/${SCR_ONE}", "/home/anna/one/one"},
                             {"a$", "a$"},
                             {"a$/b", "a$/b"},
                             {"$$SCR_ONE", "$one"},
                             {"100%", "100%"},
                             {"%SCR_ONE%/x", "%SCR_ONE%/x"}}) {
    std::string path = row.mPath;
    EXPECT_EQ(ConvertEnvPath(path), 0) << row.mPath;
    EXPECT_EQ(path, row.mExpanded) << row.mPath;
  }
}

TEST_F(EnvironmentPlaceholders, AFaultLeavesThePathAlone) {
  for (const char* const text : {"$SCR_UNSET", "/a/${SCR_UNSET}/b", "$SCR_ONE/$SCR_UNSET", "$SCR_ONEx",
                                 "${SCR_ONE", "${", "${}", "${SCR-ONE}", "${SCR_ONE/x}", "~/${"}) {
    std::string path = text;
    EXPECT_NE(ConvertEnvPath(path), 0) << text;
    EXPECT_EQ(path, text);
  }
}

// ---- Recorded machines

TEST_F(FileVersions, ARecordedMachineStandsForTheFileSystem) {
  mDirectory.Write("libreal.so.1", kElf);
  ::setenv("SCR_ONE", "one", 1);
  const std::string real = At("libreal.so.1");
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
    std::string path = "$SCR_ONE/${SCR_UNSET";
    EXPECT_EQ(ConvertEnvPath(path), 0);
    EXPECT_EQ(path, "$SCR_ONE/${SCR_UNSET");
    // Reading and writing go to the real file system all the same.
    EXPECT_EQ(qelcore::filesupport::IPlatformByteStream(realFile).ReadAll(), kElf);
    qelcore::filesupport::OPlatformByteStream(File(UTF8to16(At("written")))).Write("x");
  }
  EXPECT_EQ(mDirectory.Read("written"), "x");
  EXPECT_FALSE(recordedFile.Exists());
  EXPECT_TRUE(realFile.Exists());
  EXPECT_TRUE(realDirectory.Exists());
  EXPECT_EQ(GetFileVersion(real), "1");
  std::string path = "$SCR_ONE";
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
