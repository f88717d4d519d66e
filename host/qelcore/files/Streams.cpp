#include <algorithm>
#include <cstddef>
#include <memory>
#include <system_error>

#include "host/qelcore/files/FileContent.h"
#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelcore {

namespace host {

std::string ReadToEnd(FileHandle& file, const std::string& path, std::size_t largestSize) {
  constexpr std::size_t kBlockLength = 65'536;
  const auto check = [&](std::uint64_t size) {
    if (size > largestSize) throw std::system_error(std::make_error_code(std::errc::file_too_large), path);
  };
  // The length is a hint only: a file may grow while it is read, and some have no length at all.
  const std::uint64_t length = file.Length();
  check(length);
  std::string content;
  content.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(length, kLargestContent)));
  // Block by block, since room in a string would have to be cleared before it can be read into.
  const auto block = std::make_unique_for_overwrite<char[]>(kBlockLength);
  for (;;) {
    // One byte more than there may be is asked for, to see that there is more.
    const std::size_t count =
        file.Read(block.get(), std::min(kBlockLength, largestSize + 1 - content.size()));
    if (count == 0) return content;
    content.append(block.get(), count);
    check(content.size());
  }
}

std::string ReadContent(const std::string& path, std::size_t largestSize) {
  AnnounceFileOperation(FileOperation::kOpenForReading, path);
  FileHandle file = FileHandle::OpenForReading(path);
  AnnounceFileOperation(FileOperation::kRead, path);
  return ReadToEnd(file, path, largestSize);
}

}  // namespace host

namespace filesupport {

namespace {

std::string Announced(host::FileOperation operation, const File& file) {
  std::string path = string::UTF16to8(file.GetFullPath());
  host::AnnounceFileOperation(operation, path);
  return path;
}

}  // namespace

struct IPlatformByteStream::Implementation {
  explicit Implementation(const File& file)
      : mPath(Announced(host::FileOperation::kOpenForReading, file)),
        mHandle(host::FileHandle::OpenForReading(mPath)) {}

  std::string mPath;
  host::FileHandle mHandle;
};

IPlatformByteStream::IPlatformByteStream(const File& file)
    : mImplementation(std::make_unique<Implementation>(file)) {}

IPlatformByteStream::~IPlatformByteStream() = default;

std::uint64_t IPlatformByteStream::GetLength() const {
  return mImplementation->mHandle.Length();
}

std::string IPlatformByteStream::ReadAll() {
  host::AnnounceFileOperation(host::FileOperation::kRead, mImplementation->mPath);
  return host::ReadToEnd(mImplementation->mHandle, mImplementation->mPath, host::kLargestContent);
}

struct OPlatformByteStream::Implementation {
  explicit Implementation(const File& file)
      : mPath(Announced(host::FileOperation::kOpenForWriting, file)),
        mHandle(host::FileHandle::OpenForWriting(mPath)) {}

  std::string mPath;
  host::FileHandle mHandle;
};

OPlatformByteStream::OPlatformByteStream(const File& file, OpenFlags /*flags*/)
    : mImplementation(std::make_unique<Implementation>(file)) {}

OPlatformByteStream::~OPlatformByteStream() = default;

void OPlatformByteStream::Write(std::string_view bytes) {
  host::AnnounceFileOperation(host::FileOperation::kWrite, mImplementation->mPath);
  mImplementation->mHandle.Write(bytes);
}

void OPlatformByteStream::Close() {
  mImplementation->mHandle.Close();
}

}  // namespace filesupport
}  // namespace qelcore
