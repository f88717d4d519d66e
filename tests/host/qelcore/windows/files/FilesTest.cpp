// What is different about files on this system.
#include "platform/qelcore/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileLock.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TemporaryDirectory.h"
// Need the system's header before them.
#include <aclapi.h>

namespace qelcore::host {
namespace {

using filesupport::Dir;
using filesupport::File;
using filesupport::IPlatformByteStream;
using filesupport::OPlatformByteStream;
using filesupport::SafeSave;
using string::UTF16to8;
using string::UTF8to16;

/// What the operation's error says, and which one it is.
void ExpectError(const std::function<void()>& operation, std::errc condition, const std::string& message) {
  try {
    operation();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::system_error& error) {
    EXPECT_TRUE(error.code() == condition) << error.what();
    EXPECT_EQ(std::string(error.what()), message);
  }
}

class WindowsFiles : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const {
    return mDirectory.Path().string() + "\\" + name;
  }

  static void Save(const std::string& path, const std::string& content) {
    SafeSave save{File(UTF8to16(path))};
    save.Write(content);
    save.Commit();
  }

  static std::string Load(const std::string& path) {
    return IPlatformByteStream(File(UTF8to16(path))).ReadAll();
  }

  [[nodiscard]] std::size_t CountEntries() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(mDirectory.Path())) ++count;
    return count;
  }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(WindowsFiles, NamesAreNotBoundToAnyCodePage) {
  for (const char* const name :
       {"\xC3\xA9t\xC3\xA9.txt", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E.txt", "\xF0\x9F\x98\x80.txt",
        "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82.txt"}) {
    Save(At(name), name);
    EXPECT_EQ(Load(At(name)), name);
    EXPECT_TRUE(File(UTF8to16(At(name))).Exists()) << name;
    File(UTF8to16(At(name))).Delete();
    EXPECT_FALSE(File(UTF8to16(At(name))).Exists()) << name;
  }
}

TEST_F(WindowsFiles, PathsMayBeLongerThanTheOldLimit) {
  std::string directory = At("deep");
  for (int depth = 0; depth < 10; ++depth) directory += "\\" + std::string(100, 'd');
  Dir(UTF8to16(directory)).Create();
  EXPECT_TRUE(Dir(UTF8to16(directory)).Exists());
  const std::string path = directory + "/file.txt";
  Save(path, "old");
  Save(path, "new");
  EXPECT_EQ(Load(path), "new");
  { const FileLock lock(directory + "\\lock", std::chrono::milliseconds(0)); }
  File(UTF8to16(path)).Delete();
  EXPECT_FALSE(File(UTF8to16(path)).Exists());
  File(UTF8to16(directory + "\\lock")).Delete();
  // The standard library that tidies up afterwards has the old limit.
  for (; directory.size() > At("deep").size(); directory.resize(directory.rfind('\\'))) {
    EXPECT_NE(::RemoveDirectoryW((L"\\\\?\\" + std::filesystem::path(directory).wstring()).c_str()), 0);
  }
}

TEST_F(WindowsFiles, SeparatorsOfBothKindsServe) {
  mDirectory.Write("a/b.txt", "x");
  EXPECT_TRUE(IsFile(At("a\\b.txt")));
  EXPECT_TRUE(IsFile(At("a/b.txt")));
  EXPECT_TRUE(IsDirectory(At("a/")));
  EXPECT_TRUE(IsDirectory(At("a\\")));
}

TEST_F(WindowsFiles, ErrorsAreThoseOfOtherSystems) {
  mDirectory.Write("file", "x");
  std::filesystem::create_directory(mDirectory.Path() / "directory");
  ExpectError([&] { static_cast<void>(Load(At("absent"))); }, std::errc::no_such_file_or_directory,
              At("absent") + ": No such file or directory");
  ExpectError([&] { static_cast<void>(Load(At("absent\\file"))); }, std::errc::no_such_file_or_directory,
              At("absent\\file") + ": No such file or directory");
  ExpectError([&] { static_cast<void>(Load(At("directory"))); }, std::errc::is_a_directory,
              At("directory") + ": Is a directory");
  ExpectError([&] { static_cast<void>(Load(At("file\\below"))); }, std::errc::not_a_directory,
              At("file\\below") + ": Not a directory");
  ExpectError([&] { File(UTF8to16(At("file"))).Create(true); }, std::errc::file_exists,
              At("file") + ": File exists");
  ExpectError([&] { File(UTF8to16(At("directory"))).Delete(); }, std::errc::is_a_directory,
              At("directory") + ": Is a directory");
  ExpectError([&] { File(UTF8to16(At("a?b"))).Create(); }, std::errc::invalid_argument,
              At("a?b") + ": Not a name that a file can have");
  ExpectError([&] { static_cast<void>(FileHandle::OpenForReading(At("\xFF"))); },
              std::errc::illegal_byte_sequence, At("\xFF") + ": The path is not valid UTF-8");
  ExpectError([&] { MakeDirectories(At("file"), DirectoryAccess::kUsual); }, std::errc::not_a_directory,
              At("file") + ": Not a directory");
}

TEST_F(WindowsFiles, DevicesAndPipesAreNotOpened) {
  for (const std::string path : {"NUL", "CON", "\\\\.\\pipe\\qelscr-test"}) {
    ExpectError([&] { static_cast<void>(FileHandle::OpenForReading(path)); }, std::errc::not_supported,
                path + ": not a regular file: Operation not supported");
    ExpectError([&] { static_cast<void>(FileHandle::OpenForWriting(path)); }, std::errc::not_supported,
                path + ": not a regular file: Operation not supported");
    ExpectError([&] { static_cast<void>(HasRegularFile(path)); }, std::errc::not_supported,
                path + ": not a regular file: Operation not supported");
    EXPECT_FALSE(IsRegularFile(path)) << path;
  }
}

TEST_F(WindowsFiles, NamesThatNoFileCanHaveNameNothing) {
  for (const std::string& path :
       {At("a?b"), At("a*b"), At("<>|"), At("\xFF"), std::string("?:\\a"), std::string()}) {
    EXPECT_FALSE(IsFile(path)) << path;
    EXPECT_FALSE(IsDirectory(path)) << path;
    EXPECT_FALSE(IsRegularFile(path)) << path;
  }
  EXPECT_FALSE(HasRegularFile(At("a?b")));
}

TEST_F(WindowsFiles, OpeningForWritingEmptiesAHiddenFileToo) {
  const std::string path = At("hidden");
  mDirectory.Write("hidden", "a long old content");
  ASSERT_NE(::SetFileAttributesW(std::filesystem::path(path).c_str(), FILE_ATTRIBUTE_HIDDEN), 0);
  OPlatformByteStream output(File(UTF8to16(path)));
  output.Write("new");
  output.Close();
  EXPECT_EQ(Load(path), "new");
}

TEST_F(WindowsFiles, AnOpenFileCanBeReadReplacedAndDeleted) {
  const std::string path = At("file");
  mDirectory.Write("file", "old");
  OPlatformByteStream output(File(UTF8to16(path)));
  output.Write("written");
  EXPECT_EQ(Load(path), "written");
  EXPECT_NO_THROW(File(UTF8to16(path)).Delete());
  output.Close();
  EXPECT_FALSE(File(UTF8to16(path)).Exists());
}

// ---- Safe saving

TEST_F(WindowsFiles, SavingReplacesInOneStepAndLeavesNothingBehind) {
  const std::string path = At("file");
  Save(path, "old");
  Save(path, "new");
  EXPECT_EQ(Load(path), "new");
  EXPECT_EQ(CountEntries(), 1U);
}

TEST_F(WindowsFiles, AReadOnlyFileIsNotReplaced) {
  const std::string path = At("file");
  mDirectory.Write("file", "old");
  ASSERT_NE(::SetFileAttributesW(std::filesystem::path(path).c_str(), FILE_ATTRIBUTE_READONLY), 0);
  ExpectError([&] { Save(path, "new"); }, std::errc::permission_denied, path + ": Permission denied");
  EXPECT_EQ(Load(path), "old");
  EXPECT_EQ(CountEntries(), 1U);
  ASSERT_NE(::SetFileAttributesW(std::filesystem::path(path).c_str(), FILE_ATTRIBUTE_NORMAL), 0);
}

TEST_F(WindowsFiles, AFileThatAnotherProgramKeepsForItselfIsLeftAlone) {
  const std::string path = At("file");
  mDirectory.Write("file", "old");
  {
    const Handle keeper(::CreateFileW(std::filesystem::path(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(keeper.IsValid());
    EXPECT_THROW(Save(path, "new"), std::system_error);
    EXPECT_EQ(Load(path), "old");
  }
  Save(path, "new");
  EXPECT_EQ(Load(path), "new");
  EXPECT_EQ(CountEntries(), 1U);
}

TEST_F(WindowsFiles, ADirectoryIsNotReplaced) {
  std::filesystem::create_directory(mDirectory.Path() / "directory");
  ExpectError([&] { Save(At("directory"), "new"); }, std::errc::is_a_directory,
              At("directory") + ": Is a directory");
  EXPECT_TRUE(IsDirectory(At("directory")));
  EXPECT_EQ(CountEntries(), 1U);
}

// ---- Access rights

/// The number of entries in the access list of a file or directory, and whether it shuts out what the
/// directory above grants.
struct AccessList {
  explicit AccessList(const std::string& path) {
    PACL entries = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    std::wstring name = std::filesystem::path(path).wstring();
    EXPECT_EQ(::GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                      nullptr, &entries, nullptr, &descriptor),
              static_cast<DWORD>(ERROR_SUCCESS))
        << path;
    mHasEveryone = Grants(entries, WinWorldSid);
    ::LocalFree(descriptor);
  }

  static bool Grants(PACL entries, WELL_KNOWN_SID_TYPE kind) {
    if (entries == nullptr) return true;
    for (DWORD index = 0; index < entries->AceCount; ++index) {
      void* entry = nullptr;
      if (::GetAce(entries, index, &entry) == 0) continue;
      auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
      if (allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
          ::IsWellKnownSid(&allowed->SidStart, kind) != 0 && allowed->Mask != 0) {
        return true;
      }
    }
    return false;
  }

  bool mHasEveryone = false;
};

TEST_F(WindowsFiles, WhatIsForTheOwnerGrantsNothingToEverybody) {
  FileHandle::CreateForOwner(At("private")).Close();
  EXPECT_FALSE(AccessList(At("private")).mHasEveryone);
  MakeDirectories(At("own\\place"), DirectoryAccess::kOwnerOnly);
  EXPECT_FALSE(AccessList(At("own")).mHasEveryone);
  EXPECT_FALSE(AccessList(At("own\\place")).mHasEveryone);
  { const FileLock lock(At("lock"), std::chrono::milliseconds(0)); }
  EXPECT_FALSE(AccessList(At("lock")).mHasEveryone);
}

TEST_F(WindowsFiles, SavingKeepsTheAccessRightsOfTheFile) {
  const std::string shared = At("shared");
  mDirectory.Write("shared", "old");
  // A list of rights that lets everybody read.
  std::wstring name = std::filesystem::path(shared).wstring();
  EXPLICIT_ACCESSW everybody{};
  everybody.grfAccessPermissions = GENERIC_READ | GENERIC_WRITE;
  everybody.grfAccessMode = SET_ACCESS;
  std::wstring group = L"EVERYONE";
  everybody.Trustee.TrusteeForm = TRUSTEE_IS_NAME;
  everybody.Trustee.TrusteeType = TRUSTEE_IS_WELL_KNOWN_GROUP;
  everybody.Trustee.ptstrName = group.data();
  PACL entries = nullptr;
  ASSERT_EQ(::SetEntriesInAclW(1, &everybody, nullptr, &entries), static_cast<DWORD>(ERROR_SUCCESS));
  ASSERT_EQ(::SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                    entries, nullptr),
            static_cast<DWORD>(ERROR_SUCCESS));
  ::LocalFree(entries);
  ASSERT_TRUE(AccessList(shared).mHasEveryone);

  Save(shared, "new");
  EXPECT_EQ(Load(shared), "new");
  EXPECT_TRUE(AccessList(shared).mHasEveryone);
}

// ---- Locks

TEST_F(WindowsFiles, ALockKeepsEverybodyElseAway) {
  const std::string path = At("lock");
  {
    const FileLock lock(path, std::chrono::milliseconds(0));
    ExpectError([&] { FileLock other(path, std::chrono::milliseconds(0)); },
                std::errc::device_or_resource_busy, path + ": Device or resource busy");
    ExpectError([&] { FileLock other(path, std::chrono::milliseconds(40)); },
                std::errc::device_or_resource_busy, path + ": Device or resource busy");
  }
  EXPECT_NO_THROW(FileLock(path, std::chrono::milliseconds(0)));
  EXPECT_TRUE(IsRegularFile(path));
}

TEST_F(WindowsFiles, ALockThatCannotBeMadeSaysWhy) {
  ExpectError([&] { FileLock lock(At("absent\\lock"), std::chrono::milliseconds(0)); },
              std::errc::no_such_file_or_directory, At("absent\\lock") + ": No such file or directory");
  ExpectError([&] { FileLock lock("NUL", std::chrono::milliseconds(0)); }, std::errc::not_supported,
              "NUL: not a regular file: Operation not supported");
}

}  // namespace
}  // namespace qelcore::host
