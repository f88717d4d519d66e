// Versions of shared libraries, and the placeholders of shells.
#include "platform/qelcore/FileUtils.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::utility::FileUtils::ConvertEnvPath;
using qelcore::utility::FileUtils::GetFileVersion;

class SharedLibraries : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const { return (mDirectory.Path() / name).string(); }

  testsupport::TemporaryDirectory mDirectory;
};

const std::string kElf = std::string(
                             "\x7F"
                             "ELF\x02\x01\x01",
                             7) +
                         std::string(200, '\0');

TEST_F(SharedLibraries, OfASharedLibraryIsTheNumberOfItsRealName) {
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

TEST_F(SharedLibraries, ALibraryIsToldByItsContent) {
  mDirectory.Write("libGL.so.1.7.0", "INPUT(libother.so)");
  EXPECT_EQ(GetFileVersion(At("libGL.so.1.7.0")), "");
  mDirectory.Write("libempty.so.1", "");
  EXPECT_EQ(GetFileVersion(At("libempty.so.1")), "");
}

TEST_F(SharedLibraries, WhatIsNoFileHasNone) {
  std::filesystem::create_symlink("self", At("self"));
  ASSERT_EQ(::mkfifo(At("pipe.so.1").c_str(), 0600), 0);
  for (const std::string& path : {At("self"), At("pipe.so.1"), std::string("/dev/zero")}) {
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

}  // namespace
