#include <utility>

#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/files/Paths.h"
#include "host/qelcore/files/RecordedFiles.h"
#include "host/qelcore/files/WayOut.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelcore::filesupport {

File::File(std::u16string path) : mPath(std::move(path)) {}

File::File(const Dir& directory, std::u16string_view name)
    : mPath(host::JoinPath(directory.GetFullPath(), name)) {}

bool File::Exists() const {
  const std::string path = string::UTF16to8(mPath);
  if (const std::optional<host::RecordedFile> recorded = host::FindRecordedFile(path)) {
    return recorded->mExists;
  }
  return host::IsFile(path);
}

void File::Create(bool mustBeNew) const {
  const std::string path = string::UTF16to8(mPath);
  host::AnnounceFileOperation(host::FileOperation::kCreate, path);
  host::RefuseWayOutOfPreferences(path);
  host::FileHandle::OpenOrCreate(path, mustBeNew).Close();
}

void File::Delete() const {
  const std::string path = string::UTF16to8(mPath);
  host::AnnounceFileOperation(host::FileOperation::kDelete, path);
  host::RemoveFile(path);
}

std::u16string File::GetName() const {
  return host::LastName(mPath);
}

Dir File::GetParent() const {
  return Dir(host::ParentPath(mPath));
}

}  // namespace qelcore::filesupport
