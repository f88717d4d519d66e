// A log in the preferences directory: one JSON object per line, appended to, with one older file.
//
//   const JsonLinesLog log("usage-statistics.jsonl", "qelcore::config::UsageLogger");
//   json::Dictionary entry;
//   json::Set(entry, "time", TimeText(std::chrono::system_clock::now()));
//   log.Append(entry);
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Json.h"

namespace qelcore::host {

/// What was read back.
struct JsonLines {
  std::vector<json::Dictionary> mObjects;  ///< oldest first
  std::size_t mDamagedLines = 0;           ///< lines that hold no JSON object; empty ones do not count
};

/// The log of one name. Any number of threads and processes may append and read at a time: a line is there
/// whole or not at all. Before a line would make the file larger than 1 MiB, the file takes the name with
/// ".1" added, in place of the one that had it; a single line above that size has a file of its own. A file
/// with ".lock" added holds nothing; whoever holds its lock is waited for at most 200 ms.
class QELCORE_EXPORT JsonLinesLog {
 public:
  /// `fileName` is the file's name in the preferences directory in force at each call, `context` what stands
  /// beside failures in the exception log. Nothing is touched.
  JsonLinesLog(std::string fileName, std::string context);
  ~JsonLinesLog();
  JsonLinesLog(const JsonLinesLog&) = delete;
  JsonLinesLog& operator=(const JsonLinesLog&) = delete;

  /// Appends the object as one line; makes the directory and the file, readable by their owner only, when
  /// missing. Does not throw: an entry that cannot be written, because another process keeps the lock for
  /// example, is lost, and the first one of this object is logged.
  void Append(const json::Dictionary& entry) const;

  /// The entries of the older file and the file. Missing files hold none, and nothing is made. When the lock
  /// cannot be had, they are read without it. Throws `std::system_error` when a file that is there cannot be
  /// read, something else than a regular file is in its place, or the system does not tell whether it is
  /// there.
  [[nodiscard]] JsonLines Read() const;

  /// The file's UTF-8 path. It need not exist.
  [[nodiscard]] std::string GetPath() const;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> mImplementation;
};

}  // namespace qelcore::host
