#include "host/qelcore/files/FileHandle.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/windows/AccessRights.h"
#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/OwnerOnly.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/SystemPath.h"

namespace qelcore::host {

namespace {

/// Nobody is kept away from an open file: it can be read, replaced and deleted meanwhile.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// The most that one call reads or writes.
constexpr std::size_t kLargestBlock = std::size_t{1} << 30;

std::intptr_t Open(const std::string& path, DWORD access, DWORD disposition, void* descriptor = nullptr) {
  const std::wstring systemPath = SystemPath(path);
  if (NamesDevice(systemPath)) {
    ThrowNotRegular(path);
  }
  SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), descriptor, FALSE};
  const HANDLE handle = ::CreateFileW(systemPath.c_str(), access, kShareAll, &attributes, disposition,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    ThrowOpenError(::GetLastError(), path);
  }
  return reinterpret_cast<std::intptr_t>(handle);
}

HANDLE SystemHandle(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

bool IsOnDisk(std::intptr_t handle) {
  return ::GetFileType(SystemHandle(handle)) == FILE_TYPE_DISK;
}

}  // namespace

FileHandle FileHandle::OpenForReading(const std::string& path) {
  FileHandle file(path, Open(path, GENERIC_READ, OPEN_EXISTING));
  if (!IsOnDisk(file.mHandle)) {
    ThrowNotRegular(path);
  }
  return file;
}

FileHandle FileHandle::OpenForWriting(const std::string& path) {
  FileHandle file(path, Open(path, GENERIC_WRITE, OPEN_ALWAYS));
  // The system's own way to open and empty a file fails when the file is hidden.
  if (IsOnDisk(file.mHandle) && ::SetEndOfFile(SystemHandle(file.mHandle)) == 0) {
    ThrowFileError(::GetLastError(), path);
  }
  return file;
}

FileHandle FileHandle::OpenOrCreate(const std::string& path, bool mustBeNew) {
  return {path, Open(path, GENERIC_WRITE, mustBeNew ? CREATE_NEW : OPEN_ALWAYS)};
}

FileHandle FileHandle::OpenForAppending(const std::string& path) {
  if (IsSymbolicLink(path)) {
    throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels), path);
  }
  FileHandle file(path, Open(path, GENERIC_READ | FILE_APPEND_DATA, OPEN_EXISTING));
  if (!IsOnDisk(file.mHandle)) {
    ThrowNotRegular(path);
  }
  return file;
}

FileHandle FileHandle::CreateForOwner(const std::string& path) {
  const OwnerOnly rights(OwnerOnly::Kind::kFile);
  return {path, Open(path, GENERIC_WRITE, CREATE_NEW, rights.Descriptor())};
}

FileHandle::FileHandle(std::string path, std::intptr_t handle) noexcept
    : mPath(std::move(path)), mHandle(handle) {}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : mPath(std::move(other.mPath)), mHandle(std::exchange(other.mHandle, kNoHandle)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
  std::swap(mPath, other.mPath);
  std::swap(mHandle, other.mHandle);
  return *this;
}

FileHandle::~FileHandle() {
  if (mHandle != kNoHandle) {
    ::CloseHandle(SystemHandle(mHandle));
  }
}

std::uint64_t FileHandle::Length() const {
  if (!IsOnDisk(mHandle)) {
    return 0;
  }
  LARGE_INTEGER size{};
  if (::GetFileSizeEx(SystemHandle(mHandle), &size) == 0) {
    ThrowFileError(::GetLastError(), mPath);
  }
  return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t FileHandle::Read(char* buffer, std::size_t size) {
  DWORD count = 0;
  const DWORD wanted = static_cast<DWORD>(std::min(size, kLargestBlock));
  if (::ReadFile(SystemHandle(mHandle), buffer, wanted, &count, nullptr) == 0) {
    ThrowFileError(::GetLastError(), mPath);
  }
  return count;
}

char FileHandle::ReadByte(std::uint64_t place) const {
  char byte = 0;
  DWORD count = 0;
  OVERLAPPED position{};
  position.Offset = static_cast<DWORD>(place);
  position.OffsetHigh = static_cast<DWORD>(place >> 32U);
  if (::ReadFile(SystemHandle(mHandle), &byte, 1, &count, &position) == 0) {
    ThrowFileError(::GetLastError(), mPath);
  }
  return byte;
}

void FileHandle::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(bytes.size(), kLargestBlock));
    if (::WriteFile(SystemHandle(mHandle), bytes.data(), wanted, &count, nullptr) == 0) {
      ThrowFileError(::GetLastError(), mPath);
    }
    bytes.remove_prefix(count);
  }
}

void FileHandle::Flush() {
  // A pipe's flush would wait for whoever reads it.
  if (IsOnDisk(mHandle) && ::FlushFileBuffers(SystemHandle(mHandle)) == 0) {
    ThrowFileError(::GetLastError(), mPath);
  }
}

void FileHandle::TakeAccessRightsOf(const std::string& path) {
  if (IsRegularFile(path)) {
    CopyAccessRights(path, mPath);
  }
}

void FileHandle::Close() {
  if (mHandle == kNoHandle) {
    return;
  }
  if (::CloseHandle(SystemHandle(std::exchange(mHandle, kNoHandle))) == 0) {
    ThrowFileError(::GetLastError(), mPath);
  }
}

}  // namespace qelcore::host
