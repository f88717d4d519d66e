#include "qelsystemcompatibilityreport/report/download/BlocklistURL.h"

#include <algorithm>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/TraceSite.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"

namespace qelsystemcompatibilityreport {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;
using qelcore::string::UTF16to8;

namespace {

/// ASCII letters only; other bytes stay.
std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  });
  return text;
}

std::string Quoted(const File& file) {
  return "\"" + UTF16to8(file.GetFullPath()) + "\"";
}

/// The names of the directories from the file's own up to "systemcompatibilityreport", in lower case; none
/// when the file's place has no URL, which is traced.
std::vector<std::string> NamesUpwards(const File& file) {
  std::vector<std::string> names;
  names.reserve(3);
  for (Dir directory = file.GetParent();;) {
    names.push_back(LowerCase(UTF16to8(directory.GetName())));
    if (names.back() == "test") {
      static TraceSite site(TraceSite::kDetail);
      site.Write([&] { return "Download disabled because using test directory at " + Quoted(file); });
      return {};
    }
    if (names.back() == "systemcompatibilityreport") return names;
    directory = directory.GetParent();
    if (directory.IsTopLevelDir()) {
      static TraceSite site(TraceSite::kError);
      site.Write([&] {
        return R"(Download disabled because no "SystemCompatibilityReport" directory found in )" +
               Quoted(file);
      });
      return {};
    }
  }
}

}  // namespace

std::string BlocklistURL(const std::string& base, const File& file) {
  const std::vector<std::string> names = NamesUpwards(file);
  if (names.empty()) return {};
  std::string url = base;
  if (!url.ends_with('/')) url += '/';
  std::for_each(names.rbegin(), names.rend(), [&](const std::string& name) { url += name + '/'; });
  url += UTF16to8(file.GetName());
  static TraceSite site(TraceSite::kDetail);
  site.Write([&] { return "Download will use URL: \"" + url + "\""; });
  return url;
}

std::string GetDownloadBlocklistURL(const std::string& base) {
  return AtBoundary("qelsystemcompatibilityreport::GetDownloadBlocklistURL", std::string(), [&] {
    if (const auto registry = qelcore::utility::OSComponentRegistry::Get(false)) registry->LogToAnalytics();
    const File file = GetDownloadBlocklistFileLocation();
    return file.GetParent().Exists() ? BlocklistURL(base, file) : std::string();
  });
}

}  // namespace qelsystemcompatibilityreport
