#include <algorithm>
#include <cstddef>

#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelcore::filesupport {

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
  // The length is a hint only: a file may grow while it is read, and some have no length at all.
  constexpr std::size_t kSmallestBlock = 65'536;
  constexpr std::uint64_t kLargestHint = 67'108'864;
  const auto hint = static_cast<std::size_t>(std::min(GetLength(), kLargestHint));
  std::string content;
  std::size_t used = 0;
  for (;;) {
    if (used == content.size()) {
      content.resize(std::max({hint + 1, used * 2, kSmallestBlock}));
    }
    const std::size_t count = mImplementation->mHandle.Read(content.data() + used, content.size() - used);
    if (count == 0) {
      content.resize(used);
      return content;
    }
    used += count;
  }
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

}  // namespace qelcore::filesupport
