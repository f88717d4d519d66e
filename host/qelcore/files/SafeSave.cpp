#include <chrono>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/files/Paths.h"
#include "host/qelcore/files/WayOut.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Text.h"

namespace qelcore::filesupport {

namespace {

constexpr std::string_view kTemporaryPrefix = ".save-";
constexpr std::string_view kTemporarySuffix = ".tmp";

/// No save takes so long.
constexpr std::chrono::hours kLeftoverAge{1};

/// A name that nobody else uses, beside the target, so that the final move stays within one file system.
std::string TemporaryPathBeside(const std::string& target) {
  const std::u16string directory = host::ParentPath(string::UTF8to16(target));
  std::string name(kTemporaryPrefix);
  name.append(Guid::CreateUnique().AsUTF8String()).append(kTemporarySuffix);
  return string::UTF16to8(host::JoinPath(directory, string::UTF8to16(name)));
}

/// Removes what processes that were killed in the middle of a save left beside the file that was just saved.
/// Ages are told by the files' own times, so that a clock that was set does not count.
void RemoveLeftoversBeside(const std::filesystem::path& saved) {
  const std::filesystem::path::string_type prefix(kTemporaryPrefix.begin(), kTemporaryPrefix.end());
  std::error_code error;
  const auto now = std::filesystem::last_write_time(saved, error);
  if (error) return;
  std::filesystem::directory_iterator entry(saved.parent_path(), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    // Compared as the system has it: not every name can be written in UTF-8.
    const std::filesystem::path name = entry->path().filename();
    if (!name.native().starts_with(prefix) || name.extension() != kTemporarySuffix) continue;
    std::error_code entryError;
    const auto written = entry->last_write_time(entryError);
    // A leftover of the future is one, too: the clock was set back, and nothing waits until it has come
    // round.
    if (!entryError && std::chrono::abs(now - written) > kLeftoverAge)
      std::filesystem::remove(entry->path(), entryError);
  }
}

}  // namespace

/// The hook sees the target's path in every operation: the temporary name means nothing to anybody.
struct SafeSave::Implementation {
  explicit Implementation(const File& target)
      : mTarget(host::ResolveSaveTarget(string::UTF16to8(target.GetFullPath()))),
        mTemporary(TemporaryPathBeside(mTarget)) {
    host::AnnounceFileOperation(host::FileOperation::kOpenForWriting, mTarget);
    host::RefuseWayOutOfPreferences(mTarget);
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
  RemoveLeftoversBeside(std::u8string(save.mTarget.begin(), save.mTarget.end()));
}

}  // namespace qelcore::filesupport
