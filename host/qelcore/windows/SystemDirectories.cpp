// The usual places: the user's application data, and the program's own directory.
#include <filesystem>
#include <string>
#include <system_error>

#include "host/qelcore/System.h"
#include "host/qelcore/windows/KnownFolders.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"

namespace qelcore::host {

namespace {

constexpr const wchar_t* kFolderName = L"scr";
constexpr const wchar_t* kDataFolder = L"data";
constexpr const wchar_t* kDataMark = L"SystemCompatibilityReport";

/// Stands for a folder that the user does not have: no name may hold a question mark.
constexpr const char* kNoFolder = "C:\\?no known folder";

std::filesystem::path FolderPath(KnownFolder folder) {
  const std::string path = PathOf(folder);
  return ToWide(path.empty() ? kNoFolder : path);
}

std::string Text(const std::filesystem::path& path) {
  return ToNarrow(path.wstring());
}

/// The directory that holds the running program; empty when the system does not say.
std::filesystem::path ProgramDirectory() {
  constexpr std::size_t kLongestPath = 32'768;
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return std::filesystem::path(path).parent_path();
    }
    if (path.size() >= kLongestPath) {
      return {};
    }
    path.resize(path.size() * 2);
  }
}

bool HoldsData(const std::filesystem::path& directory) {
  std::error_code error;
  return std::filesystem::is_directory(directory / kDataMark, error);
}

/// The `data` directory of the source tree that the program was built in; empty when it is not in one.
std::filesystem::path FindSourceData(std::filesystem::path directory) {
  while (!directory.empty()) {
    std::filesystem::path data = directory / kDataFolder;
    if (HoldsData(data)) {
      return data;
    }
    if (!directory.has_relative_path()) {
      break;
    }
    directory = directory.parent_path();
  }
  return {};
}

}  // namespace

std::string UsualPreferencesDirectory() {
  return Text(FolderPath(KnownFolder::kRoamingData) / kFolderName);
}

std::string UsualStateDirectory() {
  return Text(FolderPath(KnownFolder::kLocalData) / kFolderName);
}

std::string UsualApplicationDirectory() {
  const std::filesystem::path program = ProgramDirectory();
  std::filesystem::path beside = program / kDataFolder;
  const std::filesystem::path installed = (program / L".." / L"share" / kFolderName).lexically_normal();
  if (!HoldsData(beside)) {
    std::error_code error;
    if (std::filesystem::is_directory(installed, error)) {
      return Text(installed);
    }
    if (const std::filesystem::path data = FindSourceData(program); !data.empty()) {
      return Text(data);
    }
  }
  return Text(beside.make_preferred());
}

std::string UsualDocumentsDirectory() {
  return Text(FolderPath(KnownFolder::kDocuments));
}

}  // namespace qelcore::host
