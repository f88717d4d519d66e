#include "host/qelcore/files/RecordedFiles.h"

#include <map>
#include <utility>

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

namespace {

using VersionsByPath = std::map<std::string, std::string, std::less<>>;

/// Owned by the scope that set it.
thread_local const VersionsByPath* tRecording = nullptr;

}  // namespace

RecordedFilesScope::RecordedFilesScope(VersionsByPath versionsByPath)
    : mVersionsByPath(std::move(versionsByPath)) {
  tRecording = &mVersionsByPath;
}

RecordedFilesScope::~RecordedFilesScope() {
  tRecording = nullptr;
}

std::optional<RecordedFile> FindRecordedFile(const std::string& path) {
  if (tRecording == nullptr) {
    return std::nullopt;
  }
  const auto place = tRecording->find(path);
  return place != tRecording->end() ? RecordedFile{true, place->second} : RecordedFile{};
}

bool AreFilesRecorded() {
  return tRecording != nullptr;
}

}  // namespace qelcore::host
