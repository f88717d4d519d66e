// The usual places after the XDG base directory rules.
#include <filesystem>
#include <sstream>
#include <system_error>

#include "host/qelcore/System.h"
#include "host/qelcore/files/FileContent.h"
#include "host/qelcore/linux/UserAccount.h"

namespace qelcore::host {

namespace {

constexpr const char* kFolderName = "scr";
constexpr const char* kDataFolder = "data";
constexpr const char* kDataMark = "SystemCompatibilityReport";

/// Stands for a home that nobody has; not even the superuser can make anything there.
constexpr const char* kNoHome = "/proc/no-home-directory";

std::filesystem::path Home() {
  const std::string home = HomeDirectory();
  return home.empty() ? kNoHome : home;
}

/// A base directory: of the environment, where only absolute paths count, else below the home directory.
std::filesystem::path BaseDirectory(const char* variable, const char* belowHome) {
  const std::string value = EnvironmentValue(variable);
  return value.starts_with('/') ? std::filesystem::path(value) : Home() / belowHome;
}

std::filesystem::path ConfigurationDirectory() {
  return BaseDirectory("XDG_CONFIG_HOME", ".config");
}

/// The directory that holds the running program; empty when the system does not say.
std::filesystem::path ProgramDirectory() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::path() : program.parent_path();
}

/// The `data` directory of the source tree that the program was built in; empty when it is not in one.
std::filesystem::path FindSourceData(std::filesystem::path directory) {
  while (!directory.empty()) {
    std::filesystem::path data = directory / kDataFolder;
    std::error_code error;
    if (std::filesystem::is_directory(data / kDataMark, error)) {
      return data;
    }
    if (!directory.has_relative_path()) {
      break;
    }
    directory = directory.parent_path();
  }
  return {};
}

/// The value of a line `XDG_DOCUMENTS_DIR="$HOME/Documents"`; empty for every other line and for a path that
/// is not absolute.
std::string ReadDocumentsLine(std::string_view line, const std::string& home) {
  constexpr std::string_view kName = "XDG_DOCUMENTS_DIR=\"";
  constexpr std::string_view kHomeVariable = "$HOME";
  const std::size_t begin = line.find_first_not_of(" \t");
  if (begin == std::string_view::npos || !line.substr(begin).starts_with(kName)) {
    return {};
  }
  std::string_view value = line.substr(begin + kName.size());
  const std::size_t end = value.find('"');
  if (end == std::string_view::npos) {
    return {};
  }
  value = value.substr(0, end);
  std::string path;
  if (value.starts_with(kHomeVariable)) {
    path = home;
    value.remove_prefix(kHomeVariable.size());
  }
  for (std::size_t index = 0; index < value.size(); ++index) {
    // A backslash takes the meaning from the next character.
    if (value[index] == '\\' && index + 1 < value.size()) {
      ++index;
    }
    path += value[index];
  }
  return path.starts_with('/') ? path : std::string();
}

/// The list of the user's directories; empty when there is none to read.
std::string ReadUserDirectories() {
  constexpr std::size_t kLargestList = 1'048'576;
  const std::string path = (ConfigurationDirectory() / "user-dirs.dirs").string();
  try {
    FileHandle file = FileHandle::OpenForReading(path);
    return ReadToEnd(file, path, kLargestList);
  } catch (const std::system_error&) {
    return {};
  }
}

std::string WithoutSlashAtEnd(std::string path) {
  while (path.size() > 1 && path.back() == '/') {
    path.pop_back();
  }
  return path;
}

}  // namespace

std::string UsualPreferencesDirectory() {
  return (ConfigurationDirectory() / kFolderName).string();
}

std::string UsualStateDirectory() {
  return (BaseDirectory("XDG_STATE_HOME", ".local/state") / kFolderName).string();
}

std::string UsualApplicationDirectory() {
  const std::filesystem::path program = ProgramDirectory();
  const std::filesystem::path installed = (program / ".." / "share" / kFolderName).lexically_normal();
  std::error_code error;
  if (!std::filesystem::is_directory(installed, error)) {
    if (const std::filesystem::path data = FindSourceData(program); !data.empty()) {
      return data.string();
    }
  }
  return installed.string();
}

std::string UsualDocumentsDirectory() {
  const std::string home = Home().string();
  std::istringstream stream(ReadUserDirectories());
  std::string line;
  while (std::getline(stream, line)) {
    if (const std::string path = ReadDocumentsLine(line, home); !path.empty()) {
      return WithoutSlashAtEnd(path);
    }
  }
  std::error_code error;
  const std::filesystem::path documents = Home() / "Documents";
  return std::filesystem::is_directory(documents, error) ? documents.string() : home;
}

}  // namespace qelcore::host
