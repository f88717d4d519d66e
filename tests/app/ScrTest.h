// `scr` with directories of its own, for the tests of its verbs.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ProgramRun.h"
#include "tests/support/SystemName.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

class ScrTest : public testing::Test {
 protected:
  /// Runs `scr` with the test's preferences and application directory, in the test's directory.
  ProgramResult Scr(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"--pref-dir", Path("preferences"), "--app-dir", Path("application")};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return Run(all);
  }

  /// Runs `scr` with these arguments alone. Its usual directories are below the test's directory, and there
  /// is no display.
  ProgramResult Run(const std::vector<std::string>& arguments) {
    return RunProgram(QELSCR_SCR, arguments,
                      {{"HOME", Path("home")},
                       {"XDG_CONFIG_HOME", Path("home/.config")},
                       {"XDG_STATE_HOME", Path("home/.local/state")},
                       {"XDG_DATA_HOME", Path("home/.local/share")},
                       {"LANG", "en_US.UTF-8"},
                       {"LC_ALL", "en_US.UTF-8"},
                       {"LANGUAGE", ""},
                       {"DISPLAY", ""},
                       {"WAYLAND_DISPLAY", ""}},
                      mFiles.Path(), mFiles.Path());
  }

  /// With separators that every system takes, and that mean nothing else in JSON and scripts.
  [[nodiscard]] std::string Path(const std::string& relativePath) const {
    return (mFiles.Path() / PathFrom(relativePath)).generic_string();
  }

  /// Writes a file and returns its path.
  std::string Write(const std::string& relativePath, const std::string& content) {
    return mFiles.Write(relativePath, content).generic_string();
  }

  [[nodiscard]] bool Exists(const std::string& relativePath) const {
    return std::filesystem::exists(mFiles.Path() / PathFrom(relativePath));
  }

  /// The program ends with 1 and says one line on standard error that holds this text, and nothing else.
  static void ExpectError(const ProgramResult& result, const std::string& text) {
    EXPECT_EQ(result.mExitCode, 1) << result.mErrors;
    EXPECT_EQ(result.mOutput, "");
    EXPECT_EQ(result.mErrors.rfind("scr: ", 0), 0U) << result.mErrors;
    EXPECT_EQ(result.mErrors.find('\n'), result.mErrors.size() - 1) << result.mErrors;
    EXPECT_NE(result.mErrors.find(text), std::string::npos) << result.mErrors << "\nlacks: " << text;
  }

  TemporaryDirectory mFiles;
};

/// A rule about the system that the tests run on; `more` are its further members.
inline std::string SystemRule(const std::string& more = {}) {
  const std::string start = std::string(R"({"name": ")") + kSystemName + R"(", "type": "OS")";
  return start + (more.empty() ? "" : ", " + more) + "}";
}

/// All six defaults, so that a list verifies.
inline std::string Blocklist(const std::string& rules) {
  std::string defaults;
  for (const char* const kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    defaults += std::string(defaults.empty() ? "" : ", ") + "\"" + kind + "\": {\"info_message\": \"About " +
                kind + ".\", \"info_url\": \"https://example.com/" + kind + "\"}";
  }
  return "{\"blocklist_version\": 1, \"default_info\": {" + defaults + "}, \"blocklist\": [" + rules + "]}";
}

}  // namespace testsupport
