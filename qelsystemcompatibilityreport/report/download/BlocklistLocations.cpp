#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"

#include <string_view>

#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/TraceSite.h"
#include "qelsystemcompatibilityreport/report/download/ApplicationVersion.h"

namespace qelsystemcompatibilityreport {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;
using qelcore::string::UTF16to8;
using qelcore::string::UTF8to16;

namespace {

constexpr std::u16string_view kDirectoryName = u"SystemCompatibilityReport";
constexpr std::string_view kFallbackLanguage = "en_US";

template <typename FileOrDir>
std::string Quoted(const FileOrDir& place) {
  return "\"" + UTF16to8(place.GetFullPath()) + "\"";
}

std::u16string BlocklistFileName(const Language& language) {
  return UTF8to16("blocklist." + language.value_or(qelcore::Locale::ApplicationLanguage()) + ".json");
}

void CreateIfMissing(const Dir& directory) {
  if (directory.Exists()) return;
  static TraceSite site(TraceSite::kDetail);
  site.Write(
      [&] { return "System Compatibility Report creating download sub directory " + Quoted(directory); });
  directory.Create();
}

std::u16string VersionedDirectoryName() {
  const ApplicationVersion version = GetApplicationVersion();
  return UTF8to16(std::to_string(version.mMajor) + "." + std::to_string(version.mMinor));
}

/// The directory of downloaded files below `directory`.
Dir DownloadDirectory(const Dir& directory) {
  const Dir deployed = directory / u"Deployed";
  if (deployed.Exists()) {
    static TraceSite site(TraceSite::kDetail);
    // The last word is misspelt and stays so.
    site.Write([&] {
      return "System Compatibility Report will use Deployed directory, " + Quoted(deployed) +
             " for all resricted_lists";
    });
    return deployed;
  }
  const Dir versioned = directory / VersionedDirectoryName();
  CreateIfMissing(versioned);
  const Dir platform = versioned / u"win";
  CreateIfMissing(platform);
  return platform;
}

bool MustUseInstalledBlocklist() {
  return qelcore::DebugDatabase::Instance().GetEntry(kUseInstalledBlocklist.mKey,
                                                     kUseInstalledBlocklist.mDefaultValue) == "true";
}

}  // namespace

File GetAppBlocklistFileLocation(const Language& language) {
  File file;
  AtBoundary("qelsystemcompatibilityreport::GetAppBlocklistFileLocation", [&] {
    file = File(qelcore::filesupport::AppDir() / kDirectoryName, BlocklistFileName(language));
    static TraceSite site(TraceSite::kDetail);
    site.Write([&] { return "App Restricted list File Location: " + Quoted(file); });
  });
  return file;
}

File GetDownloadBlocklistFileLocation(const Language& language) {
  File file;
  AtBoundary("qelsystemcompatibilityreport::GetDownloadBlocklistFileLocation", [&] {
    const Dir directory = Dir::PrefDir() / kDirectoryName;
    CreateIfMissing(directory);

    const Dir testDirectory = directory / u"test";
    const File testFile(testDirectory, u"blocklist.json");
    if (testDirectory.Exists() && testFile.Exists()) {
      static TraceSite site(TraceSite::kDetail);
      site.Write([&] {
        return "System Compatibility Report will use test blocklist file " + Quoted(testFile) +
               " for blocklists";
      });
      file = testFile;
      return;
    }

    file = File(DownloadDirectory(directory), BlocklistFileName(language));
    static TraceSite site(TraceSite::kDetail);
    site.Write([&] { return "Download Restricted list File Location: " + Quoted(file); });
  });
  return file;
}

File SelectBlocklistFile(const Language& language) {
  // What a failure leaves here is what the caller gets.
  File selected;
  AtBoundary("qelsystemcompatibilityreport::SelectBlocklistFile", [&] {
    const bool useInstalled = MustUseInstalledBlocklist();
    const auto find = [&](const Language& candidate) {
      if (!useInstalled) {
        const File downloaded = GetDownloadBlocklistFileLocation(candidate);
        if (downloaded.Exists()) {
          selected = downloaded;
          return true;
        }
      }
      selected = GetAppBlocklistFileLocation(candidate);
      return selected.Exists();
    };

    const std::string requested = language.value_or(std::string(kFallbackLanguage));
    for (const Language& candidate : {Language(), Language(requested), Language(kFallbackLanguage)}) {
      if (find(candidate) || candidate == kFallbackLanguage) break;
    }
  });
  return selected;
}

}  // namespace qelsystemcompatibilityreport
