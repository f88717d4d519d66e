// The paths of file rules.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "authoring/checks/Checks.h"
#include "authoring/model/ControlCharacters.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

constexpr std::array<std::string_view, 28> kWindowsNames = {"SystemRoot",
                                                            "windir",
                                                            "SystemDrive",
                                                            "ProgramFiles",
                                                            "ProgramFiles(x86)",
                                                            "ProgramW6432",
                                                            "ProgramData",
                                                            "ALLUSERSPROFILE",
                                                            "APPDATA",
                                                            "LOCALAPPDATA",
                                                            "USERPROFILE",
                                                            "PUBLIC",
                                                            "TEMP",
                                                            "TMP",
                                                            "HOMEDRIVE",
                                                            "HOMEPATH",
                                                            "CommonProgramFiles",
                                                            "CommonProgramFiles(x86)",
                                                            "CommonProgramW6432",
                                                            "ComSpec",
                                                            "DriverData",
                                                            "OneDrive",
                                                            "USERNAME",
                                                            "COMPUTERNAME",
                                                            "USERDOMAIN",
                                                            "LOGONSERVER",
                                                            "PROCESSOR_ARCHITECTURE",
                                                            "NUMBER_OF_PROCESSORS"};
constexpr std::array<std::string_view, 13> kLinuxNames = {
    "HOME",           "USER",           "LOGNAME",         "XDG_CONFIG_HOME", "XDG_DATA_HOME",
    "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "XDG_DATA_DIRS",   "XDG_CONFIG_DIRS",
    "TMPDIR",         "SNAP",           "APPDIR"};

class PathCheck {
 public:
  PathCheck(Document& document, std::size_t index, const JsonNode& name)
      : mDocument(document), mIndex(index), mName(name), mPath(name.mText) {}

  void Run() {
    const bool isLinux =
        mPath.starts_with('/') || mPath.starts_with('$') || mPath == "~" || mPath.starts_with("~/");
    if (isLinux) {
      CheckLinuxPlaceholders();
    } else {
      CheckWindowsPlaceholders();
    }
    const bool hasDrive = mPath.size() > 2 && mPath[1] == ':' && (mPath[2] == '\\' || mPath[2] == '/');
    if (!isLinux && !hasDrive && !mPath.starts_with('%') && !mPath.starts_with("\\\\")) {
      Add(Code::kRelativePath,
          "the path " + Quoted(mPath) + " is relative to wherever the host happens to run",
          "Begin it with a placeholder, a drive or \"/\", such as \"%SystemRoot%\\\\System32\" or "
          "\"$HOME\".");
    }
    const bool hasPattern = mPath.find('*') != std::string_view::npos || mPath.starts_with('^') ||
                            mPath.find('?') != std::string_view::npos;
    if (hasPattern) {
      Add(Code::kPatternInPath,
          "the path " + Quoted(mPath) + " holds the signs of a pattern, and is compared as it stands",
          "Write a rule for each path.");
    }
  }

 private:
  void Add(Code code, std::string what, std::string mend) {
    mDocument.AddToRule(mIndex, code, mName.mOffset, std::move(what), std::move(mend));
  }

  void TellUnknown(std::string_view name, std::span<const std::string_view> known) {
    const auto nearest = NearestWord(known, name);
    Add(Code::kUnknownPlaceholder,
        "the placeholder " + Quoted(name) +
            " is not one that systems set, and where it is not set nothing is found",
        nearest ? "Did you mean " + Quoted(*nearest) + "?"
                : "Begin the path with one that is always set, such as " + Quoted(known.front()) + '.');
  }

  void CheckLinuxPlaceholders() {
    for (std::size_t place = mPath.find('$'); place != std::string_view::npos;
         place = mPath.find('$', place + 1)) {
      std::string_view rest = mPath.substr(place + 1);
      const bool hasBraces = rest.starts_with('{');
      if (hasBraces) rest.remove_prefix(1);
      const std::size_t length =
          std::min(rest.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_"),
                   rest.size());
      const std::string_view name = rest.substr(0, length);
      if (hasBraces && (name.empty() || !rest.substr(length).starts_with('}'))) {
        Add(Code::kOpenPlaceholder,
            "the placeholder that begins with \"${\" is not a name in braces, so nothing is found",
            "Write it as \"${HOME}\".");
        return;
      }
      if (!name.empty() && !Contains(kLinuxNames, name)) TellUnknown(name, kLinuxNames);
    }
  }

  void CheckWindowsPlaceholders() {
    std::size_t place = 0;
    while ((place = mPath.find('%', place)) != std::string_view::npos) {
      const std::size_t end = mPath.find('%', place + 1);
      if (end == std::string_view::npos) {
        Add(Code::kOpenPlaceholder,
            "the path " + Quoted(mPath) +
                " has a \"%\" that begins a placeholder and none that ends it, so nothing is found",
            "Close it, or write \"%%\" for the sign itself.");
        return;
      }
      const std::string_view name = mPath.substr(place + 1, end - place - 1);
      const bool isKnown = name.empty() || std::any_of(kWindowsNames.begin(), kWindowsNames.end(),
                                                       [&](std::string_view known) {
                                                         return EqualsIgnoringCase(known, name);
                                                       });
      if (!isKnown) TellUnknown(name, kWindowsNames);
      place = end + 1;
    }
  }

  Document& mDocument;
  std::size_t mIndex;
  const JsonNode& mName;
  std::string_view mPath;
};

}  // namespace

void CheckPaths(Document& document) {
  ForEachRule(document, [&](std::size_t index, const RuleElement& rule) {
    // Of a path with a control character nothing is as it was meant; that is told elsewhere.
    if (rule.IsFile() && !rule.mName.empty() && !FindControlCharacter(rule.mName))
      PathCheck(document, index, *rule.mNode->Find("name")).Run();
  });
}

}  // namespace authoring
