#include "platform/qelcore/FileUtils.h"

#include <filesystem>
#include <fstream>

#include "host/qelcore/System.h"
#include "host/qelcore/files/FileSystem.h"
#include "host/qelcore/files/PEVersion.h"
#include "host/qelcore/files/RecordedFiles.h"

namespace qelcore::utility::FileUtils {

namespace {

std::string ReadVersion(const std::string& path) {
  // Opening anything else, such as a pipe, could wait for ever.
  if (!host::IsRegularFile(path)) {
    return {};
  }
  if (std::string version = host::NativeFileVersion(path); !version.empty()) {
    return version;
  }
  std::ifstream stream(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
  return host::ReadPEFileVersion(stream);
}

}  // namespace

int ConvertEnvPath(std::string& path) {
  return host::AreFilesRecorded() ? 0 : host::ExpandEnvironment(path);
}

std::string GetFileVersion(const std::string& path) {
  if (const std::optional<host::RecordedFile> recorded = host::FindRecordedFile(path)) {
    return recorded->mVersion;
  }
  try {
    return ReadVersion(path);
  } catch (const std::exception&) {
    // A file that cannot be read has no version.
    return {};
  }
}

}  // namespace qelcore::utility::FileUtils
