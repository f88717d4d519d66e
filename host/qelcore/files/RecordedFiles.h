// The files of a recorded machine that stand for the file system.
#pragma once

#include <optional>
#include <string>

namespace qelcore::host {

/// What the recorded machine says about a file.
struct RecordedFile {
  bool mExists = false;
  std::string mVersion;
};

/// The recorded file at a path, compared as written; nothing when no recorded machine is in force.
[[nodiscard]] std::optional<RecordedFile> FindRecordedFile(const std::string& path);

/// Whether a recorded machine stands for the file system.
[[nodiscard]] bool AreFilesRecorded();

}  // namespace qelcore::host
