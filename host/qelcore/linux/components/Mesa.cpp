#include "host/qelcore/linux/components/Mesa.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Versions.h"

namespace qelcore::host::components {
namespace {

using utility::OSComponentVersion;

constexpr std::size_t kLongestPackageList = std::size_t{64} << 20;

/// The directories that hold libraries, those of 64-bit systems first: a 32-bit library beside a 64-bit one
/// serves older programs only.
std::vector<std::string> LibraryDirectories(const RootedFiles& files) {
  std::vector<std::string> wide;
  std::vector<std::string> narrow;
  for (const std::string& name : files.List("usr/lib")) {
    if (name.find("-linux-gnu") == std::string::npos) continue;
    const bool isWide = name.find("64") != std::string::npos || name.starts_with("s390x");
    (isWide ? wide : narrow).push_back("usr/lib/" + name);
  }
  wide.emplace_back("usr/lib64");
  wide.emplace_back("usr/lib");
  wide.insert(wide.end(), narrow.begin(), narrow.end());
  return wide;
}

/// From "libgallium-25.0.7-2.so", whose name carries the version since 24.2.
OSComponentVersion VersionOfLibrary(const RootedFiles& files) {
  constexpr std::string_view kBegin = "libgallium-";
  constexpr std::string_view kEnd = ".so";
  for (const std::string& directory : LibraryDirectories(files)) {
    OSComponentVersion found;
    for (const std::string_view name : files.List(directory)) {
      if (!name.starts_with(kBegin) || !name.ends_with(kEnd)) continue;
      const std::string_view version = name.substr(kBegin.size(), name.size() - kBegin.size() - kEnd.size());
      if (const auto read = ReadVersion(UpstreamVersion(version)); read && read >= found) found = read;
    }
    if (found) return found;
  }
  return {};
}

/// From the directory that pacman keeps for each installed package, such as "mesa-1:24.3.4-1".
OSComponentVersion VersionOfPacman(const RootedFiles& files) {
  constexpr std::string_view kBegin = "mesa-";
  for (const std::string_view name : files.List("var/lib/pacman/local")) {
    if (!name.starts_with(kBegin)) continue;
    // Other packages, such as "mesa-utils", have a letter there.
    if (const auto version = ReadVersion(UpstreamVersion(name.substr(kBegin.size())))) return version;
  }
  return {};
}

/// The version of a package in dpkg's list, which has a paragraph of fields for each package. Empty when the
/// package is not installed.
OSComponentVersion VersionInPackageList(std::string_view list, const std::string& package) {
  const std::string start = "Package: " + package + "\n";
  for (std::size_t place = list.find(start); place != std::string_view::npos;
       place = list.find(start, place + 1)) {
    if (place != 0 && list[place - 1] != '\n') continue;
    const std::size_t end = list.find("\n\n", place);
    bool isInstalled = false;
    OSComponentVersion version;
    ForEachLine(list.substr(place, end == std::string_view::npos ? end : end - place),
                [&](std::string_view line) {
                  constexpr std::string_view kStatus = "Status: ";
                  constexpr std::string_view kVersion = "Version: ";
                  if (line.starts_with(kStatus)) isInstalled = line.ends_with(" installed");
                  if (line.starts_with(kVersion))
                    version = ReadVersion(UpstreamVersion(line.substr(kVersion.size())));
                  return true;
                });
    if (isInstalled && version) return version;
  }
  return {};
}

OSComponentVersion VersionOfDpkg(const RootedFiles& files) {
  const std::optional<std::string> list = files.Read("var/lib/dpkg/status", kLongestPackageList);
  if (!list) return {};
  // Releases since 2024 have the drivers in the first package, older ones in the second.
  if (const auto version = VersionInPackageList(*list, "mesa-libgallium")) return version;
  return VersionInPackageList(*list, "libgl1-mesa-dri");
}

}  // namespace

utility::OSComponentVersion MesaVersion(const RootedFiles& files) {
  if (const auto version = VersionOfLibrary(files)) return version;
  if (const auto version = VersionOfPacman(files)) return version;
  return VersionOfDpkg(files);
}

}  // namespace qelcore::host::components
