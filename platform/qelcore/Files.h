// Files, directories and byte streams.
//
// Paths are UTF-16. Objects are plain values that hold a path and touch the disk only in the operations that
// say so. Operations that fail throw `std::system_error`, whose message names the path and the reason, unless
// they say otherwise. Any thread may call; two threads must not share one object.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/qelcore/Export.h"

namespace qelcore::filesupport {

/// A directory's path.
class QELCORE_EXPORT Dir {
 public:
  Dir() = default;
  explicit Dir(std::u16string path);

  /// Whether the path names a directory. Does not throw: a path that cannot be examined does not exist.
  [[nodiscard]] bool Exists() const;

  /// Creates the directory and every missing one above it; an existing directory is fine. Throws.
  void Create() const;

  /// The last name of the path; empty for a root and for an empty path.
  [[nodiscard]] std::u16string GetName() const;

  /// The directory above; a root's parent is the root itself.
  [[nodiscard]] Dir GetParent() const;

  /// Whether the path is a root, so that there is nothing above it.
  [[nodiscard]] bool IsTopLevelDir() const;

  [[nodiscard]] const std::u16string& GetFullPath() const { return mPath; }

  /// The directory of that name inside this one.
  [[nodiscard]] Dir operator/(std::u16string_view name) const;

  /// The user's preferences directory of this application. Created, readable by its owner only, when missing;
  /// throws when that fails.
  [[nodiscard]] static Dir PrefDir();

  /// The user's documents directory. Need not exist.
  [[nodiscard]] static Dir UserDocsDir();

 private:
  std::u16string mPath;
};

/// The directory of the application's installed data. Need not exist.
[[nodiscard]] QELCORE_EXPORT Dir AppDir();

/// A file's path. A default-constructed file is empty: it has no name and does not exist.
class QELCORE_EXPORT File {
 public:
  File() = default;
  explicit File(std::u16string path);

  /// The file of that name inside a directory.
  File(const Dir& directory, std::u16string_view name);

  /// Whether the path names a file of any kind that is not a directory. Does not throw: a path that cannot be
  /// examined does not exist.
  [[nodiscard]] bool Exists() const;

  /// Creates the file, empty, and leaves the content of an existing one alone. With `mustBeNew` an existing
  /// file is an error. Throws when the file cannot be made or cannot be written to.
  void Create(bool mustBeNew = false) const;

  /// Deletes the file; a missing one is fine. Throws when it cannot be deleted.
  void Delete() const;

  /// The last name of the path; empty for an empty file.
  [[nodiscard]] std::u16string GetName() const;

  /// The directory that holds the file.
  [[nodiscard]] Dir GetParent() const;

  [[nodiscard]] const std::u16string& GetFullPath() const { return mPath; }

 private:
  std::u16string mPath;
};

/// Reads a regular file from its beginning. The constructor opens the file and throws when it cannot, or when
/// the path names something else, such as a directory, a device or a named pipe, which might never end; it
/// does not wait. What the process was handed open may be of any kind when it is read under the system's name
/// for it, such as "/dev/stdin" or "/dev/fd/63".
class QELCORE_EXPORT IPlatformByteStream {
 public:
  explicit IPlatformByteStream(const File& file);
  ~IPlatformByteStream();
  IPlatformByteStream(const IPlatformByteStream&) = delete;
  IPlatformByteStream& operator=(const IPlatformByteStream&) = delete;

  /// The file's length in bytes; 0 for what has no length, such as a pipe.
  [[nodiscard]] std::uint64_t GetLength() const;

  /// Everything from the current place to the end, as it stands. Throws when reading fails, and with
  /// `std::errc::file_too_large` when there are more than 64 MiB.
  [[nodiscard]] std::string ReadAll();

 private:
  struct Implementation;
  std::unique_ptr<Implementation> mImplementation;
};

/// What an output stream is opened for.
enum class OpenFlags : std::uint32_t {
  kWrite = 1,  ///< make the file when missing and empty it
};

/// Writes a file. The constructor opens it, empties it, and throws when it cannot.
class QELCORE_EXPORT OPlatformByteStream {
 public:
  explicit OPlatformByteStream(const File& file, OpenFlags flags = OpenFlags::kWrite);

  /// Closes the stream if `Close` was not called; an error then goes unnoticed.
  ~OPlatformByteStream();
  OPlatformByteStream(const OPlatformByteStream&) = delete;
  OPlatformByteStream& operator=(const OPlatformByteStream&) = delete;

  /// Writes one block whole. Throws when not all of it could be written.
  void Write(std::string_view bytes);

  /// Closes the stream. Throws when the system reports a write error only now.
  void Close();

 private:
  struct Implementation;
  std::unique_ptr<Implementation> mImplementation;
};

/// Replaces a file in one step: the new content goes to a temporary file in the same directory, readable by
/// its owner only, and takes the target's place in `Commit`. Whatever happens before, a crash included, the
/// target is left as it was.
class QELCORE_EXPORT SafeSave {
 public:
  /// Opens the temporary file. Throws when it cannot.
  explicit SafeSave(const File& target);

  /// Removes the temporary file if `Commit` did not succeed.
  ~SafeSave();
  SafeSave(const SafeSave&) = delete;
  SafeSave& operator=(const SafeSave&) = delete;

  /// Appends to the temporary file. Throws when not all of it could be written.
  void Write(std::string_view bytes);

  /// Flushes the temporary file to the disk and puts it in the target's place. Throws when that fails; the
  /// target then still holds its old content.
  void Commit();

 private:
  struct Implementation;
  std::unique_ptr<Implementation> mImplementation;
};

}  // namespace qelcore::filesupport
