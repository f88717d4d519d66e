#include "host/qelcore/files/FileSystem.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>

#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/OwnerOnly.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/SystemPath.h"
#include "host/qelcore/windows/WideText.h"

namespace qelcore::host {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens a file or directory to ask about it, following links.
Handle OpenToAsk(const std::wstring& path) {
  return Handle(::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

/// The attributes of what a path leads to, or in `error` the code that says why there are none.
std::optional<DWORD> AttributesOf(const std::wstring& path, DWORD& error) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  error = attributes == INVALID_FILE_ATTRIBUTES ? ::GetLastError() : ERROR_SUCCESS;
  if (error == ERROR_SHARING_VIOLATION) {
    // A file that the system itself keeps open, such as its page file.
    error = ERROR_SUCCESS;
    return FILE_ATTRIBUTE_SYSTEM;
  }
  if (error != ERROR_SUCCESS) {
    return std::nullopt;
  }
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return attributes;
  }
  const Handle target = OpenToAsk(path);
  FILE_BASIC_INFO information{};
  if (target.IsValid() &&
      ::GetFileInformationByHandleEx(target.Get(), FileBasicInfo, &information, sizeof information) != 0) {
    return information.FileAttributes;
  }
  error = ::GetLastError();
  // Such a mark is no link: it stands for a file that only its own program can open.
  if (error == ERROR_CANT_ACCESS_FILE) {
    error = ERROR_SUCCESS;
    return attributes;
  }
  return std::nullopt;
}

bool IsDirectoryMark(DWORD attributes) {
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::optional<DWORD> AttributesOf(const std::string& path) {
  const std::optional<std::wstring> systemPath = TrySystemPath(path);
  DWORD error = ERROR_SUCCESS;
  return systemPath ? AttributesOf(*systemPath, error) : std::nullopt;
}

std::string ParentOf(const std::string& path) {
  return ToNarrow(std::filesystem::path(ToWide(path)).parent_path().wstring());
}

void MakeDirectory(const std::string& path, DirectoryAccess access, DWORD& error) {
  const std::wstring systemPath = SystemPath(path);
  std::optional<OwnerOnly> rights;
  if (access == DirectoryAccess::kOwnerOnly) {
    rights.emplace(OwnerOnly::Kind::kDirectory);
  }
  SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), rights ? rights->Descriptor() : nullptr, FALSE};
  error = ::CreateDirectoryW(systemPath.c_str(), &attributes) != 0 ? ERROR_SUCCESS : ::GetLastError();
}

/// The path of what an open handle stands for, without any links; empty when the system does not tell.
std::wstring FinalPath(const Handle& file) {
  std::wstring result(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetFinalPathNameByHandleW(
        file.Get(), result.data(), static_cast<DWORD>(result.size()), FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
    const bool hadRoom = length < result.size();
    result.resize(length);
    if (hadRoom || length == 0) {
      return result;
    }
  }
}

bool IsLink(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// Whether somebody who has the file open, such as a virus scanner, may be all that is in the way.
bool MayPass(DWORD error, const std::wstring& target) {
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
    return true;
  }
  const DWORD attributes = ::GetFileAttributesW(target.c_str());
  return error == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

}  // namespace

bool IsDirectory(const std::string& path) {
  const std::optional<DWORD> attributes = AttributesOf(path);
  return attributes && IsDirectoryMark(*attributes);
}

bool IsFile(const std::string& path) {
  const std::optional<DWORD> attributes = AttributesOf(path);
  return attributes && !IsDirectoryMark(*attributes);
}

bool IsRegularFile(const std::string& path) {
  const std::optional<std::wstring> systemPath = TrySystemPath(path);
  return systemPath && !NamesDevice(*systemPath) && IsFile(path);
}

bool HasRegularFile(const std::string& path) {
  const std::wstring systemPath = SystemPath(path);
  if (NamesDevice(systemPath)) {
    ThrowNotRegular(path);
  }
  DWORD error = ERROR_SUCCESS;
  const std::optional<DWORD> attributes = AttributesOf(systemPath, error);
  if (!attributes) {
    if (SaysAbsent(error)) {
      return false;
    }
    ThrowFileError(error, path);
  }
  if (IsDirectoryMark(*attributes)) {
    ThrowNotRegular(path);
  }
  return true;
}

bool IsSymbolicLink(const std::string& path) {
  const std::optional<std::wstring> systemPath = TrySystemPath(path);
  if (!systemPath) {
    return false;
  }
  const Handle file(::CreateFileW(systemPath->c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                  nullptr));
  FILE_ATTRIBUTE_TAG_INFO information{};
  // Files that the system keeps elsewhere have other tags.
  return file.IsValid() &&
         ::GetFileInformationByHandleEx(file.Get(), FileAttributeTagInfo, &information, sizeof information) !=
             0 &&
         (information.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         information.ReparseTag == IO_REPARSE_TAG_SYMLINK;
}

void RemoveFile(const std::string& path) {
  if (::DeleteFileW(SystemPath(path).c_str()) == 0) {
    const DWORD error = ::GetLastError();
    if (!SaysAbsent(error)) {
      ThrowOpenError(error, path);
    }
  }
}

void MakeDirectories(const std::string& path, DirectoryAccess access) {
  if (IsDirectory(path)) {
    return;
  }
  DWORD error = ERROR_SUCCESS;
  MakeDirectory(path, access, error);
  const std::string parent = ParentOf(path);
  if (error == ERROR_PATH_NOT_FOUND && !parent.empty() && parent != path) {
    MakeDirectories(parent, access);
    MakeDirectory(path, access, error);
  }
  // Somebody else may have made it in the meantime.
  if (error != ERROR_SUCCESS && !IsDirectory(path)) {
    if (error == ERROR_ALREADY_EXISTS) {
      error = ERROR_DIRECTORY;
    }
    ThrowOpenError(error, path);
  }
}

void MoveInPlace(const std::string& from, const std::string& to) {
  constexpr int kMostTries = 50;
  constexpr DWORD kPause = 10;
  const std::wstring source = SystemPath(from);
  const std::wstring target = SystemPath(to);
  const DWORD attributes = ::GetFileAttributesW(target.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    // Not every file system sees to it by itself.
    ThrowOpenError(ERROR_ACCESS_DENIED, to);
  }
  for (int count = 1;; ++count) {
    if (::MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
        0) {
      return;
    }
    const DWORD error = ::GetLastError();
    if (count == kMostTries || !MayPass(error, target)) {
      ThrowOpenError(error, to);
    }
    ::Sleep(kPause);
  }
}

std::string ResolveSaveTarget(const std::string& path) {
  const std::wstring systemPath = SystemPath(path);
  if (!IsLink(systemPath)) {
    return path;
  }
  const std::filesystem::path directory = std::filesystem::path(systemPath).parent_path();
  const std::filesystem::path target = FinalPath(OpenToAsk(systemPath));
  const std::wstring place = FinalPath(OpenToAsk(directory.wstring()));
  if (!target.has_filename() || target.parent_path().wstring() != place) {
    return path;
  }
  return ToNarrow((directory / target.filename()).wstring());
}

}  // namespace qelcore::host
