#include "platform/qelcore/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;
using qelcore::filesupport::IPlatformByteStream;
using qelcore::filesupport::OPlatformByteStream;
using qelcore::host::FileOperation;
using qelcore::string::UTF16to8;
using qelcore::string::UTF8to16;
using testsupport::PathText;

File FileAt(const std::filesystem::path& path) {
  return File(UTF8to16(path.string()));
}
Dir DirAt(const std::filesystem::path& path) {
  return Dir(UTF8to16(path.string()));
}

/// What the operation's error says; fails the test when it throws nothing or something else.
std::string ErrorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const std::system_error& error) {
    return error.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

class Files : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path At(const std::string& name) const { return mDirectory.Path() / name; }

  testsupport::TemporaryDirectory mDirectory;
};

using Directories = Files;
using Streams = Files;
using FileHook = Files;

// ---- Paths

struct PathRow {
  std::u16string mPath;
  std::u16string mName;
  std::u16string mParent;
  bool mIsTopLevel;
};

TEST(Paths, NameParentAndRoot) {
  const PathRow rows[] = {
      {u"", u"", u"", true},
      {u"/", u"", u"/", true},
      {u"//", u"", u"//", true},
      {u"/a", u"a", u"/", false},
      {u"/a/", u"a", u"/", false},
      {u"/a//", u"a", u"/", false},
      {u"/a/b", u"b", u"/a", false},
      {u"/a/b c.txt", u"b c.txt", u"/a", false},
      {u"/a/.hidden", u".hidden", u"/a", false},
      {u"/\u00E9/\U0001F600", u"\U0001F600", u"/\u00E9", false},
      {u"a", u"a", u"", false},
      {u"a/b", u"b", u"a", false},
  };
  for (const PathRow& row : rows) {
    const std::string path = UTF16to8(row.mPath);
    EXPECT_EQ(Dir(row.mPath).GetName(), row.mName) << path;
    EXPECT_EQ(File(row.mPath).GetName(), row.mName) << path;
    EXPECT_EQ(UTF16to8(File(row.mPath).GetParent().GetFullPath()), UTF16to8(row.mParent)) << path;
    EXPECT_EQ(UTF16to8(Dir(row.mPath).GetParent().GetFullPath()), UTF16to8(row.mParent)) << path;
    EXPECT_EQ(Dir(row.mPath).IsTopLevelDir(), row.mIsTopLevel) << path;
    EXPECT_EQ(Dir(row.mPath).GetFullPath(), row.mPath) << path;
  }
}

TEST(Paths, AWalkUpAlwaysEndsAtATopLevelDirectory) {
  for (const char16_t* const path :
       {u"", u"/", u"//", u"/a/b/c/", u"a/b", u".", u"..", u"../..", u"/..", u"///a///b"}) {
    Dir directory{std::u16string(path)};
    for (int steps = 0; steps < 10 && !directory.IsTopLevelDir(); ++steps) {
      directory = directory.GetParent();
    }
    EXPECT_TRUE(directory.IsTopLevelDir()) << UTF16to8(path);
  }
}

/// A directory's path as it was given, and what was joined to it with the separators of the system.
std::u16string Preferred(const std::u16string& given, const std::u16string& joined) {
  return given + std::filesystem::path(joined).make_preferred().u16string();
}

TEST(Paths, Joining) {
  EXPECT_EQ((Dir(u"/a") / u"b").GetFullPath(), Preferred(u"/a", u"/b"));
  EXPECT_EQ((Dir(u"/a/") / u"b").GetFullPath(), u"/a/b");
  EXPECT_EQ((Dir(u"/") / u"b").GetFullPath(), u"/b");
  EXPECT_EQ((Dir() / u"b").GetFullPath(), u"b");
  EXPECT_EQ(File(Dir(u"/a"), u"b.json").GetFullPath(), Preferred(u"/a", u"/b.json"));
  EXPECT_EQ(File(Dir(u"/a") / u"7.3" / u"win", u"blocklist.en_US.json").GetFullPath(),
            Preferred(u"/a", u"/7.3/win/blocklist.en_US.json"));
}

// ---- Files

TEST_F(Files, AnEmptyFileHasNoNameAndDoesNotExist) {
  EXPECT_EQ(File().GetName(), u"");
  EXPECT_FALSE(File().Exists());
  EXPECT_FALSE(Dir().Exists());
  EXPECT_THROW(File().Create(), std::system_error);
}

TEST_F(Files, ExistsTellsFilesFromDirectories) {
  mDirectory.Write("file", "x");
  struct Row {
    const char* mName;
    bool mIsFile;
    bool mIsDirectory;
  };
  for (const Row& row : {Row{"file", true, false},
                         {".", false, true},
                         {"absent", false, false},
                         {"file/below", false, false},
                         {"absent/below", false, false}}) {
    EXPECT_EQ(FileAt(At(row.mName)).Exists(), row.mIsFile) << row.mName;
    EXPECT_EQ(DirAt(At(row.mName)).Exists(), row.mIsDirectory) << row.mName;
  }
}

TEST_F(Files, PathsWithANullCharacterNameNothing) {
  mDirectory.Write("file", "x");
  const std::u16string path = UTF8to16(At("file").string()) + std::u16string(u"\0.txt", 5);
  EXPECT_FALSE(File(path).Exists());
  EXPECT_FALSE(Dir(UTF8to16(mDirectory.Path().string()) + std::u16string(u"\0x", 2)).Exists());
  EXPECT_THROW(File(path).Create(), std::system_error);
  EXPECT_THROW(File(path).Delete(), std::system_error);
  EXPECT_THROW(IPlatformByteStream{File(path)}, std::system_error);
  EXPECT_THROW(OPlatformByteStream{File(path)}, std::system_error);
  EXPECT_THROW(Dir(path).Create(), std::system_error);
  EXPECT_EQ(mDirectory.Read("file"), "x");
}

TEST_F(Files, CreateMakesAnEmptyFileAndLeavesAnExistingOneAlone) {
  FileAt(At("new")).Create();
  EXPECT_EQ(mDirectory.Read("new"), "");
  mDirectory.Write("old", "content");
  FileAt(At("old")).Create(false);
  EXPECT_EQ(mDirectory.Read("old"), "content");
  EXPECT_NO_THROW(FileAt(At("really new")).Create(true));
  EXPECT_EQ(ErrorOf([&] { FileAt(At("old")).Create(true); }), At("old").string() + ": File exists");
}

TEST_F(Files, CreateThrowsWhereItCannot) {
  EXPECT_EQ(ErrorOf([&] { FileAt(At("absent/file")).Create(); }),
            At("absent/file").string() + ": No such file or directory");
  EXPECT_EQ(ErrorOf([&] { FileAt(mDirectory.Path()).Create(); }),
            mDirectory.Path().string() + ": Is a directory");
  mDirectory.Write("file", "");
  EXPECT_EQ(ErrorOf([&] { FileAt(At("file/below")).Create(); }),
            At("file/below").string() + ": Not a directory");
}

TEST_F(Files, DeleteRemovesAFileAndAcceptsAMissingOne) {
  mDirectory.Write("file", "x");
  FileAt(At("file")).Delete();
  EXPECT_FALSE(FileAt(At("file")).Exists());
  EXPECT_NO_THROW(FileAt(At("file")).Delete());
  std::filesystem::create_directory(At("directory"));
  EXPECT_THROW(FileAt(At("directory")).Delete(), std::system_error);
  EXPECT_TRUE(DirAt(At("directory")).Exists());
}

// ---- Directories

TEST_F(Directories, CreateMakesAllThatIsMissing) {
  DirAt(At("a/b/c")).Create();
  EXPECT_TRUE(DirAt(At("a/b/c")).Exists());
  EXPECT_NO_THROW(DirAt(At("a/b/c")).Create());
  DirAt(At("d/e/")).Create();
  EXPECT_TRUE(DirAt(At("d/e")).Exists());
}

TEST_F(Directories, CreateThrowsWhereItCannot) {
  mDirectory.Write("file", "x");
  EXPECT_THROW(DirAt(At("file")).Create(), std::system_error);
  EXPECT_THROW(DirAt(At("file/below")).Create(), std::system_error);
  EXPECT_THROW(Dir().Create(), std::system_error);
  EXPECT_THROW(DirAt(At(std::string(5000, 'x'))).Create(), std::system_error);
}

TEST_F(Directories, ThePreferencesDirectoryIsMadeWhenItIsAskedFor) {
  qelcore::host::SetDirectories({.mPreferences = At("config/scr").string()});
  EXPECT_FALSE(DirAt(At("config")).Exists());
  EXPECT_EQ(UTF16to8(Dir::PrefDir().GetFullPath()), PathText(At("config/scr")));
  EXPECT_TRUE(DirAt(At("config/scr")).Exists());
  EXPECT_NO_THROW((void)Dir::PrefDir());
}

TEST_F(Directories, APreferencesDirectoryThatCannotBeMadeThrows) {
  mDirectory.Write("file", "");
  qelcore::host::SetDirectories({.mPreferences = At("file/scr").string()});
  const std::string error = ErrorOf([] { (void)Dir::PrefDir(); });
  EXPECT_TRUE(error.starts_with(At("file").string())) << error;
  EXPECT_TRUE(error.ends_with(": Not a directory")) << error;
}

TEST_F(Directories, ApplicationAndDocumentsNeedNotExist) {
  qelcore::host::SetDirectories({.mApplication = At("app").string(), .mDocuments = At("docs").string()});
  EXPECT_EQ(UTF16to8(qelcore::filesupport::AppDir().GetFullPath()), At("app").string());
  EXPECT_EQ(UTF16to8(Dir::UserDocsDir().GetFullPath()), At("docs").string());
  EXPECT_FALSE(DirAt(At("app")).Exists());
  EXPECT_FALSE(DirAt(At("docs")).Exists());
}

// ---- Streams

TEST_F(Streams, WhatIsWrittenIsRead) {
  for (const std::size_t length : {0U, 1U, 65535U, 65536U, 65537U, 3000000U}) {
    std::string content;
    for (std::size_t index = 0; index < length; ++index) {
      content += static_cast<char>(index * 31 >> 3);
    }
    OPlatformByteStream output(FileAt(At("file")));
    output.Write(content);
    output.Close();
    IPlatformByteStream input(FileAt(At("file")));
    EXPECT_EQ(input.GetLength(), length);
    EXPECT_EQ(input.ReadAll(), content) << length;
    EXPECT_EQ(input.ReadAll(), "") << length;
  }
}

TEST_F(Streams, OpeningForWritingEmptiesTheFile) {
  mDirectory.Write("file", "a long old content");
  {
    OPlatformByteStream output(FileAt(At("file")));
    EXPECT_EQ(mDirectory.Read("file"), "");
    output.Write("new");
  }
  EXPECT_EQ(mDirectory.Read("file"), "new");
}

TEST_F(Streams, BlocksAreAppended) {
  OPlatformByteStream output(FileAt(At("file")), qelcore::filesupport::OpenFlags::kWrite);
  output.Write("a");
  output.Write("");
  output.Write(std::string_view("\0b", 2));
  output.Close();
  EXPECT_EQ(mDirectory.Read("file"), std::string("a\0b", 3));
  EXPECT_NO_THROW(output.Close());
  EXPECT_THROW(output.Write("c"), std::system_error);
}

TEST_F(Streams, ErrorsNameThePathAndTheReason) {
  EXPECT_EQ(ErrorOf([&] { IPlatformByteStream stream(FileAt(At("absent"))); }),
            At("absent").string() + ": No such file or directory");
  EXPECT_EQ(ErrorOf([&] { IPlatformByteStream stream(FileAt(mDirectory.Path())); }),
            mDirectory.Path().string() + ": Is a directory");
  EXPECT_EQ(ErrorOf([&] { OPlatformByteStream stream(FileAt(mDirectory.Path())); }),
            mDirectory.Path().string() + ": Is a directory");
  EXPECT_EQ(ErrorOf([&] { OPlatformByteStream stream(FileAt(At("absent/file"))); }),
            At("absent/file").string() + ": No such file or directory");
}

// ---- The hook

TEST_F(FileHook, SeesEachOperationBeforeItHappens) {
  mDirectory.Write("old", "x");
  std::vector<std::pair<FileOperation, std::string>> seen;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
    seen.emplace_back(operation, std::filesystem::path(path).filename().string());
  });
  FileAt(At("new")).Create();
  (void)IPlatformByteStream(FileAt(At("old"))).ReadAll();
  OPlatformByteStream(FileAt(At("out"))).Write("x");
  FileAt(At("old")).Delete();
  DirAt(At("directory")).Create();
  DirAt(At("directory")).Create();
  qelcore::host::SetFileOperationHook(nullptr);
  FileAt(At("unseen")).Create();
  const std::vector<std::pair<FileOperation, std::string>> expected = {
      {FileOperation::kCreate, "new"},
      {FileOperation::kOpenForReading, "old"},
      {FileOperation::kRead, "old"},
      {FileOperation::kOpenForWriting, "out"},
      {FileOperation::kWrite, "out"},
      {FileOperation::kDelete, "old"},
      {FileOperation::kCreateDirectory, "directory"},
  };
  EXPECT_EQ(seen, expected);
}

TEST_F(FileHook, WhatItThrowsTheOperationThrows) {
  mDirectory.Write("file", "content");
  struct Row {
    FileOperation mOperation;
    std::function<void()> mRun;
  };
  const Row rows[] = {
      {FileOperation::kCreate, [&] { FileAt(At("new")).Create(); }},
      {FileOperation::kOpenForReading, [&] { IPlatformByteStream stream(FileAt(At("file"))); }},
      {FileOperation::kRead, [&] { (void)IPlatformByteStream(FileAt(At("file"))).ReadAll(); }},
      {FileOperation::kOpenForWriting, [&] { OPlatformByteStream stream(FileAt(At("file"))); }},
      {FileOperation::kWrite, [&] { OPlatformByteStream(FileAt(At("new"))).Write("x"); }},
      {FileOperation::kDelete, [&] { FileAt(At("file")).Delete(); }},
      {FileOperation::kCreateDirectory, [&] { DirAt(At("directory")).Create(); }},
  };
  for (const Row& row : rows) {
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
      if (operation == row.mOperation) {
        throw std::system_error(std::make_error_code(std::errc::io_error), path);
      }
    });
    EXPECT_THROW(row.mRun(), std::system_error) << static_cast<int>(row.mOperation);
    EXPECT_EQ(mDirectory.Read("file"), "content") << static_cast<int>(row.mOperation);
    EXPECT_FALSE(DirAt(At("directory")).Exists());
  }
}

}  // namespace
