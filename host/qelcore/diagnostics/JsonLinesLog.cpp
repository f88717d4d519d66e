#include "host/qelcore/diagnostics/JsonLinesLog.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/qelcore/application/Application.h"
#include "host/qelcore/files/FileContent.h"
#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileLock.h"
#include "host/qelcore/files/FileOperationHook.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/files/Paths.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Trace.h"

namespace qelcore::host {

namespace {

constexpr std::uintmax_t kLargestFile = 1'048'576;
constexpr const char* kOlderSuffix = ".1";
constexpr const char* kLockSuffix = ".lock";

std::filesystem::path ToPath(const std::string& path) {
  return {std::u8string(path.begin(), path.end())};
}

std::string PathIn(const std::u16string& directory, const std::string& fileName) {
  return string::UTF16to8(JoinPath(directory, string::UTF8to16(fileName)));
}

/// How long locks are waited for. Whoever keeps one for long, such as a process that was stopped, is waited
/// for once and not again with each entry, until a lock is free again. Any thread may call.
class LockPatience {
 public:
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& path) {
    try {
      auto lock = std::make_unique<FileLock>(path, mIsUsedUp ? std::chrono::milliseconds::zero() : kPatience);
      mIsUsedUp = false;
      return lock;
    } catch (const std::system_error& error) {
      mIsUsedUp = mIsUsedUp || error.code() == std::errc::device_or_resource_busy;
      throw;
    }
  }

 private:
  static constexpr std::chrono::milliseconds kPatience{200};

  std::atomic<bool> mIsUsedUp{false};
};

/// The file as it stands before a line is appended.
struct OpenFile {
  FileHandle mHandle;
  std::uint64_t mLength = 0;
  bool mIsWithinLine = false;  ///< a line was begun, by a process that died or by hand, and not ended
};

/// The file; nothing when there is none. A symbolic link is refused: it may lead to any file of the user,
/// which is nothing to write log lines into.
std::optional<OpenFile> OpenWhenThere(const std::string& path) {
  try {
    OpenFile file{FileHandle::OpenForAppending(path)};
    file.mLength = file.mHandle.Length();
    file.mIsWithinLine = file.mLength != 0 && file.mHandle.ReadByte(file.mLength - 1) != '\n';
    return file;
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::no_such_file_or_directory) {
      return std::nullopt;
    }
    throw;
  }
}

/// Whether `line` would make the file larger than it may be.
bool IsFull(const std::optional<OpenFile>& file, std::string_view line) {
  return file && file->mLength != 0 &&
         file->mLength + (file->mIsWithinLine ? 1 : 0) + line.size() > kLargestFile;
}

/// Writes the bytes to the end of the file in one call to the system. When that fails, the file is as it was.
void WriteAtEnd(const std::string& path, OpenFile& file, const std::string& bytes) {
  try {
    file.mHandle.Write(bytes);
    file.mHandle.Close();
  } catch (const std::system_error&) {
    std::error_code ignored;
    if (std::filesystem::file_size(ToPath(path), ignored) > file.mLength && !ignored) {
      std::filesystem::resize_file(ToPath(path), file.mLength, ignored);
    }
    throw;
  }
}

void AppendLine(const std::string& path, std::string line, LockPatience& patience) {
  // The hook is called before the file is locked: it may append itself.
  AnnounceFileOperation(FileOperation::kOpenForWriting, path);
  AnnounceFileOperation(FileOperation::kWrite, path);
  std::unique_ptr<FileLock> lock = patience.Lock(path + kLockSuffix);
  std::optional<OpenFile> file = OpenWhenThere(path);
  if (IsFull(file, line)) {
    file.reset();
    lock.reset();
    AnnounceFileOperation(FileOperation::kReplace, path + kOlderSuffix);
    lock = patience.Lock(path + kLockSuffix);
    // Somebody else may have put the full file aside in the meantime.
    file = OpenWhenThere(path);
    if (IsFull(file, line)) {
      file.reset();
      MoveInPlace(path, path + kOlderSuffix);
    }
  }
  if (!file) {
    file = OpenFile{FileHandle::CreateForOwner(path)};
  }
  if (file->mIsWithinLine) {
    line.insert(line.begin(), '\n');
  }
  WriteAtEnd(path, *file, line);
}

/// What the file holds; an empty text when there is none.
std::string ReadWhenThere(const std::string& path) {
  try {
    FileHandle file = FileHandle::OpenForReading(path);
    return ReadToEnd(file, path, kLargestContent);
  } catch (const std::system_error& error) {
    // Without the lock the file may move aside at any time.
    if (error.code() == std::errc::no_such_file_or_directory || error.code() == std::errc::not_a_directory) {
      return {};
    }
    throw;
  }
}

/// The lock, unless it cannot be had: somebody who may only read can do without.
std::unique_ptr<FileLock> LockForReading(const std::string& path, LockPatience& patience) {
  try {
    return patience.Lock(path);
  } catch (const std::system_error&) {
    return nullptr;
  }
}

void AddLines(std::string_view text, JsonLines& lines) {
  while (!text.empty()) {
    const std::size_t length = text.find('\n');
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
    if (line.empty() || line == "\r") {
      continue;
    }
    std::any value = json::Parse(line);
    if (auto* const object = std::any_cast<json::Dictionary>(&value)) {
      lines.mObjects.push_back(std::move(*object));
    } else {
      ++lines.mDamagedLines;
    }
  }
}

}  // namespace

struct JsonLinesLog::Implementation {
  std::string mFileName;
  std::string mContext;
  std::atomic<bool> mHasFailed{false};
  LockPatience mPatience;
};

JsonLinesLog::JsonLinesLog(std::string fileName, std::string context)
    : mImplementation(std::make_unique<Implementation>()) {
  mImplementation->mFileName = std::move(fileName);
  mImplementation->mContext = std::move(context);
}

JsonLinesLog::~JsonLinesLog() = default;

void JsonLinesLog::Append(const json::Dictionary& entry) const {
  try {
    const std::string path = PathIn(filesupport::Dir::PrefDir().GetFullPath(), mImplementation->mFileName);
    AppendLine(path, json::Serialise(entry) + '\n', mImplementation->mPatience);
  } catch (...) {
    // A disk that is full today would otherwise fill the trace log with the same message.
    if (!mImplementation->mHasFailed.exchange(true)) {
      LogException(std::current_exception(), mImplementation->mContext);
    }
  }
}

JsonLines JsonLinesLog::Read() const {
  const std::string path = GetPath();
  const std::array<std::string, 2> candidates = {path + kOlderSuffix, path};
  bool isAnyThere = false;
  for (const std::string& candidate : candidates) {
    if (HasRegularFile(candidate)) {
      // The hook is called before the files are locked: it may append itself.
      AnnounceFileOperation(FileOperation::kOpenForReading, candidate);
      AnnounceFileOperation(FileOperation::kRead, candidate);
      isAnyThere = true;
    }
  }
  std::string text;
  if (isAnyThere) {
    const std::unique_ptr<FileLock> lock = LockForReading(path + kLockSuffix, mImplementation->mPatience);
    for (const std::string& candidate : candidates) {
      text += ReadWhenThere(candidate);
      // The older file may end within a line.
      text += '\n';
    }
  }
  JsonLines lines;
  AddLines(text, lines);
  return lines;
}

std::string JsonLinesLog::GetPath() const {
  return PathIn(string::UTF8to16(PreferencesDirectory()), mImplementation->mFileName);
}

}  // namespace qelcore::host
