#include <optional>
#include <system_error>
#include <utility>

#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/files/Paths.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Text.h"

namespace qelcore::filesupport {

namespace {

/// A name that nobody else uses, beside the target, so that the final move stays within one file system.
std::string TemporaryPathBeside(const std::string& target) {
  const std::u16string directory = host::ParentPath(string::UTF8to16(target));
  const std::string name = ".save-" + Guid::CreateUnique().AsUTF8String() + ".tmp";
  return string::UTF16to8(host::JoinPath(directory, string::UTF8to16(name)));
}

}  // namespace

/// The hook sees the target's path in every operation: the temporary name means nothing to anybody.
struct SafeSave::Implementation {
  explicit Implementation(const File& target)
      : mTarget(host::ResolveSaveTarget(string::UTF16to8(target.GetFullPath()))),
        mTemporary(TemporaryPathBeside(mTarget)) {
    host::AnnounceFileOperation(host::FileOperation::kOpenForWriting, mTarget);
    mHandle = host::FileHandle::CreateForOwner(mTemporary);
  }

  std::string mTarget;
  std::string mTemporary;
  std::optional<host::FileHandle> mHandle;
  bool mIsCommitted = false;
};

SafeSave::SafeSave(const File& target) : mImplementation(std::make_unique<Implementation>(target)) {}

SafeSave::~SafeSave() {
  if (mImplementation->mIsCommitted) {
    return;
  }
  mImplementation->mHandle.reset();
  try {
    host::RemoveFile(mImplementation->mTemporary);
  } catch (const std::system_error&) {
    // A leftover that cannot be removed harms nobody, and a destructor has nobody to tell.
  }
}

void SafeSave::Write(std::string_view bytes) {
  host::AnnounceFileOperation(host::FileOperation::kWrite, mImplementation->mTarget);
  mImplementation->mHandle->Write(bytes);
}

void SafeSave::Commit() {
  Implementation& save = *mImplementation;
  host::AnnounceFileOperation(host::FileOperation::kFlush, save.mTarget);
  save.mHandle->TakeAccessRightsOf(save.mTarget);
  save.mHandle->Flush();
  save.mHandle->Close();
  host::AnnounceFileOperation(host::FileOperation::kReplace, save.mTarget);
  host::MoveInPlace(save.mTemporary, save.mTarget);
  save.mIsCommitted = true;
}

}  // namespace qelcore::filesupport
