#include <utility>

#include "host/qelcore/application/Application.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/files/Paths.h"
#include "host/qelcore/files/RecordedFiles.h"
#include "host/qelcore/files/WayOut.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelcore::filesupport {

namespace {

void MakeWhenMissing(const std::string& path, host::DirectoryAccess access) {
  if (!host::IsDirectory(path)) {
    host::AnnounceFileOperation(host::FileOperation::kCreateDirectory, path);
    host::RefuseWayOutOfPreferences(path);
    host::MakeDirectories(path, access);
  }
}

}  // namespace

Dir::Dir(std::u16string path) : mPath(std::move(path)) {}

bool Dir::Exists() const {
  return !host::AreFilesRecorded() && host::IsDirectory(string::UTF16to8(mPath));
}

void Dir::Create() const {
  const std::string path = string::UTF16to8(mPath);
  MakeWhenMissing(
      path, host::IsInPreferences(path) ? host::DirectoryAccess::kOwnerOnly : host::DirectoryAccess::kUsual);
}

std::u16string Dir::GetName() const {
  return host::LastName(mPath);
}

Dir Dir::GetParent() const {
  return Dir(host::ParentPath(mPath));
}

bool Dir::IsTopLevelDir() const {
  return host::IsRootPath(mPath);
}

Dir Dir::operator/(std::u16string_view name) const {
  return Dir(host::JoinPath(mPath, name));
}

Dir Dir::PrefDir() {
  const std::string path = host::PreferencesDirectory();
  MakeWhenMissing(path, host::DirectoryAccess::kOwnerOnly);
  return Dir(string::UTF8to16(path));
}

Dir Dir::UserDocsDir() {
  return Dir(string::UTF8to16(host::DocumentsDirectory()));
}

Dir AppDir() {
  return Dir(string::UTF8to16(host::ApplicationDirectory()));
}

}  // namespace qelcore::filesupport
