#include "host/qelcore/files/WayOut.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/qelcore/application/Application.h"

namespace qelcore::host {

namespace {

std::filesystem::path ToPath(const std::string& path) {
  return {std::u8string(path.begin(), path.end())};
}

bool IsAtOrBelow(const std::filesystem::path& place, const std::filesystem::path& directory) {
  return std::mismatch(directory.begin(), directory.end(), place.begin(), place.end()).first ==
         directory.end();
}

std::filesystem::path Preferences() {
  // A separator at the end would count as a name.
  return (ToPath(PreferencesDirectory()) / ".").lexically_normal().parent_path();
}

}  // namespace

bool IsInPreferences(const std::string& path) {
  const std::filesystem::path place = ToPath(path).lexically_normal();
  return IsAtOrBelow(place.parent_path(), Preferences());
}

void RefuseWayOutOfPreferences(const std::string& path) {
  const std::filesystem::path preferences = Preferences();
  const std::filesystem::path directory = ToPath(path).lexically_normal().parent_path();
  if (directory == preferences || !IsAtOrBelow(directory, preferences)) {
    return;
  }
  if (!IsAtOrBelow(std::filesystem::weakly_canonical(directory),
                   std::filesystem::weakly_canonical(preferences))) {
    throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels),
                            path + ": a symbolic link leads out of the preferences directory");
  }
}

}  // namespace qelcore::host
