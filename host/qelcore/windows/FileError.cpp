#include "host/qelcore/windows/FileError.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"

namespace qelcore::host {

namespace {

// Codes that not every header of the system has.
constexpr DWORD kDirectoryNotSupported = 336;
constexpr DWORD kDiskQuotaExceeded = 1295;

/// What a code means to everybody else, and how it reads.
struct Meaning {
  DWORD mCode;
  std::errc mCondition;
  const char* mMessage;
};

constexpr std::array<Meaning, 37> kMeanings{
    {{ERROR_FILE_NOT_FOUND, std::errc::no_such_file_or_directory, "No such file or directory"},
     {ERROR_PATH_NOT_FOUND, std::errc::no_such_file_or_directory, "No such file or directory"},
     {ERROR_INVALID_DRIVE, std::errc::no_such_file_or_directory, "No such file or directory"},
     {ERROR_BAD_NETPATH, std::errc::no_such_file_or_directory, "No such network place"},
     {ERROR_BAD_NET_NAME, std::errc::no_such_file_or_directory, "No such network place"},
     {ERROR_INVALID_NAME, std::errc::invalid_argument, "Not a name that a file can have"},
     {ERROR_BAD_PATHNAME, std::errc::invalid_argument, "Not a name that a file can have"},
     {ERROR_NO_UNICODE_TRANSLATION, std::errc::illegal_byte_sequence, "The path is not valid UTF-8"},
     {ERROR_INVALID_PARAMETER, std::errc::invalid_argument, "Invalid argument"},
     {ERROR_INVALID_HANDLE, std::errc::bad_file_descriptor, "Bad file descriptor"},
     {ERROR_FILENAME_EXCED_RANGE, std::errc::filename_too_long, "File name too long"},
     {ERROR_BUFFER_OVERFLOW, std::errc::filename_too_long, "File name too long"},
     {ERROR_ACCESS_DENIED, std::errc::permission_denied, "Permission denied"},
     {ERROR_PRIVILEGE_NOT_HELD, std::errc::permission_denied, "Permission denied"},
     {ERROR_WRITE_PROTECT, std::errc::read_only_file_system, "Read-only file system"},
     {ERROR_SHARING_VIOLATION, std::errc::device_or_resource_busy, "Another program is using the file"},
     {ERROR_LOCK_VIOLATION, std::errc::device_or_resource_busy, "Another program is using the file"},
     {ERROR_USER_MAPPED_FILE, std::errc::device_or_resource_busy, "Another program is using the file"},
     {ERROR_BUSY, std::errc::device_or_resource_busy, "Device or resource busy"},
     {ERROR_DELETE_PENDING, std::errc::device_or_resource_busy, "Another program is using the file"},
     {ERROR_FILE_EXISTS, std::errc::file_exists, "File exists"},
     {ERROR_ALREADY_EXISTS, std::errc::file_exists, "File exists"},
     {ERROR_DIRECTORY, std::errc::not_a_directory, "Not a directory"},
     {kDirectoryNotSupported, std::errc::is_a_directory, "Is a directory"},
     {ERROR_DIR_NOT_EMPTY, std::errc::directory_not_empty, "Directory not empty"},
     {ERROR_DISK_FULL, std::errc::no_space_on_device, "No space left on device"},
     {ERROR_HANDLE_DISK_FULL, std::errc::no_space_on_device, "No space left on device"},
     {kDiskQuotaExceeded, std::errc::no_space_on_device, "No space left on device"},
     {ERROR_FILE_TOO_LARGE, std::errc::file_too_large, "File too large"},
     {ERROR_TOO_MANY_OPEN_FILES, std::errc::too_many_files_open, "Too many open files"},
     {ERROR_NOT_ENOUGH_MEMORY, std::errc::not_enough_memory, "Cannot allocate memory"},
     {ERROR_OUTOFMEMORY, std::errc::not_enough_memory, "Cannot allocate memory"},
     {ERROR_BROKEN_PIPE, std::errc::broken_pipe, "Broken pipe"},
     {ERROR_NO_DATA, std::errc::broken_pipe, "Broken pipe"},
     {ERROR_NOT_SUPPORTED, std::errc::not_supported, "Operation not supported"},
     {ERROR_NOT_READY, std::errc::no_such_device_or_address, "The drive is not ready"},
     {ERROR_NO_ASSOCIATION, std::errc::not_supported, "No program is set up to open it"}}};

const Meaning* FindMeaning(int code) {
  const auto place = std::find_if(kMeanings.begin(), kMeanings.end(), [code](const Meaning& meaning) {
    return meaning.mCode == static_cast<DWORD>(code);
  });
  return place != kMeanings.end() ? &*place : nullptr;
}

class SystemErrorCategory : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "windows"; }

  [[nodiscard]] std::string message(int code) const override {
    const Meaning* const meaning = FindMeaning(code);
    return meaning != nullptr ? meaning->mMessage : "Windows error " + std::to_string(code);
  }

  [[nodiscard]] std::error_condition default_error_condition(int code) const noexcept override {
    const Meaning* const meaning = FindMeaning(code);
    return meaning != nullptr ? std::make_error_condition(meaning->mCondition)
                              : std::error_condition(code, *this);
  }
};

/// Whether a file stands where the path needs a directory.
bool GoesThroughFile(const std::string& path) {
  std::filesystem::path above = std::filesystem::path(ToWide(path)).parent_path();
  while (above.has_relative_path()) {
    if (IsFile(ToNarrow(above.wstring()))) {
      return true;
    }
    above = above.parent_path();
  }
  return false;
}

}  // namespace

const std::error_category& SystemErrors() noexcept {
  // Never destroyed, because errors may outlive static objects.
  static const SystemErrorCategory& category = *new SystemErrorCategory;
  return category;
}

void ThrowFileError(unsigned long code, const std::string& path) {
  throw std::system_error(std::error_code(static_cast<int>(code), SystemErrors()), path);
}

void ThrowOpenError(unsigned long code, const std::string& path) {
  if (code == ERROR_ACCESS_DENIED && IsDirectory(path)) {
    code = kDirectoryNotSupported;
  } else if (code == ERROR_PATH_NOT_FOUND && GoesThroughFile(path)) {
    code = ERROR_DIRECTORY;
  }
  ThrowFileError(code, path);
}

void ThrowNotRegular(const std::string& path) {
  ThrowFileError(ERROR_NOT_SUPPORTED, path + ": not a regular file");
}

bool SaysAbsent(unsigned long code) noexcept {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
      return true;
    default:
      return false;
  }
}

}  // namespace qelcore::host
