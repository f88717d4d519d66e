// An open file. One implementation for each system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qelcore::host {

/// An open file, closed at the latest when the object goes. Operations that fail throw `std::system_error`,
/// whose message is the path and the reason. Paths are UTF-8.
class FileHandle {
 public:
  /// Opens an existing regular file for reading. Anything else, such as a directory, a device or a named
  /// pipe, is an error and nothing is waited for, unless the path is a name that the system gives to a file
  /// which the process was handed open, such as "/dev/stdin" or "/dev/fd/63": whoever writes such a name
  /// means it.
  [[nodiscard]] static FileHandle OpenForReading(const std::string& path);

  /// Opens a file for writing: makes it when missing and empties it.
  [[nodiscard]] static FileHandle OpenForWriting(const std::string& path);

  /// Opens a file for writing without emptying it: makes it when missing, on Linux for its owner only. With
  /// `mustBeNew` an existing file is an error. Does not wait for a reader of a pipe.
  [[nodiscard]] static FileHandle OpenOrCreate(const std::string& path, bool mustBeNew);

  /// Opens an existing regular file for reading and for writing at its end, wherever that is by then.
  /// Anything else is an error, a symbolic link too, which on Windows is looked for before the file is
  /// opened.
  [[nodiscard]] static FileHandle OpenForAppending(const std::string& path);

  /// Makes a new file for writing that only its owner can use. An existing file is an error.
  [[nodiscard]] static FileHandle CreateForOwner(const std::string& path);

  FileHandle(FileHandle&& other) noexcept;
  FileHandle& operator=(FileHandle&& other) noexcept;
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  /// Closes the file; an error goes unnoticed.
  ~FileHandle();

  /// The length in bytes; 0 for what has none.
  [[nodiscard]] std::uint64_t Length() const;

  /// Reads up to `size` bytes; returns how many, 0 at the end.
  [[nodiscard]] std::size_t Read(char* buffer, std::size_t size);

  /// Reads the byte at `place`, which is less than the length of the regular file. Where `Read` goes on
  /// afterwards differs between systems.
  [[nodiscard]] char ReadByte(std::uint64_t place) const;

  /// Writes all bytes.
  void Write(std::string_view bytes);

  /// Waits until what was written is on the disk.
  void Flush();

  /// Gives the file the access rights of the regular file at `path`, if there is one.
  void TakeAccessRightsOf(const std::string& path);

  /// Closes the file. Throws when the system reports a write error only now.
  void Close();

 private:
  FileHandle(std::string path, std::intptr_t handle) noexcept;

  static constexpr std::intptr_t kNoHandle = -1;

  std::string mPath;
  std::intptr_t mHandle = kNoHandle;
};

}  // namespace qelcore::host
