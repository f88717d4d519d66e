#include "host/qelcore/files/RecordedFiles.h"

#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

namespace {

using VersionsByPath = std::map<std::string, std::string, std::less<>>;

struct Recording {
  std::mutex mMutex;
  std::shared_ptr<const VersionsByPath> mVersionsByPath;
};

Recording& TheRecording() {
  // Never destroyed, because other libraries' static objects may still call while the process ends.
  static Recording& recording = *new Recording;
  return recording;
}

void SetRecording(std::shared_ptr<const VersionsByPath> versionsByPath) {
  Recording& recording = TheRecording();
  const std::lock_guard lock(recording.mMutex);
  recording.mVersionsByPath = std::move(versionsByPath);
}

std::shared_ptr<const VersionsByPath> GetRecording() {
  Recording& recording = TheRecording();
  const std::lock_guard lock(recording.mMutex);
  return recording.mVersionsByPath;
}

}  // namespace

RecordedFilesScope::RecordedFilesScope(VersionsByPath versionsByPath) {
  SetRecording(std::make_shared<const VersionsByPath>(std::move(versionsByPath)));
}

RecordedFilesScope::~RecordedFilesScope() {
  SetRecording(nullptr);
}

std::optional<RecordedFile> FindRecordedFile(const std::string& path) {
  const std::shared_ptr<const VersionsByPath> versionsByPath = GetRecording();
  if (!versionsByPath) {
    return std::nullopt;
  }
  const auto place = versionsByPath->find(path);
  return place != versionsByPath->end() ? RecordedFile{true, place->second} : RecordedFile{};
}

bool AreFilesRecorded() {
  return GetRecording() != nullptr;
}

}  // namespace qelcore::host
