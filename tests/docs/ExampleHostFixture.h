// The example application of the guide for hosts, with directories of its own.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/ProgramRun.h"
#include "tests/support/SystemName.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

/// A server root at which nobody listens.
inline constexpr const char* kNobody = "http://127.0.0.1:1";

/// A list that verifies, with one rule about the system that the tests run on.
inline std::string VerifiedBlocklist(const std::string& level, const std::string& message) {
  std::string defaults;
  for (const char* const kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    defaults += std::string(defaults.empty() ? "" : ", ") + "\"" + kind +
                R"(": {"info_message": "About it.", "info_url": "https://example.com/"})";
  }
  return R"({"blocklist_version": 1, "default_info": {)" + defaults +
         R"(}, "blocklist": [{"type": "OS", "name": ")" + kSystemName + R"(", "error_level": ")" + level +
         R"(", "info_message": ")" + message + R"("}]})";
}

class ExampleHostFixture : public testing::Test {
 protected:
  ExampleHostFixture() {
    mFiles.Write("preferences/DebugDatabase.json",
                 R"({"qelsystemcompatibilityreport.download_delay_secs": "0"})");
  }

  /// Runs the example with the test's directories.
  ProgramResult Run(const std::string& serverRoot, const std::vector<std::string>& commands,
                    const std::string& program = QELSCR_EXAMPLE_HOST) {
    std::vector<std::string> arguments = {Path("preferences"), Path("application"), serverRoot};
    arguments.insert(arguments.end(), commands.begin(), commands.end());
    ProgramResult result = RunProgram(program, arguments, mEnvironment, mFiles.Path(), mFiles.Path());
    // The example leaves the ends of lines to the system.
    std::erase(result.mOutput, '\r');
    std::erase(result.mErrors, '\r');
    return result;
  }

  /// The example, from now on with the libraries that do nothing.
  std::string ProgramWithLibrariesThatDoNothing() {
    std::filesystem::path program = QELSCR_EXAMPLE_HOST;
#if defined(_WIN32)
    // A program's own directory comes first, so these must stand there.
    const std::filesystem::path directory = mFiles.Path() / "without-operations";
    std::filesystem::create_directory(directory);
    for (const auto& file : std::filesystem::directory_iterator(program.parent_path())) {
      if (file.path().extension() == ".dll") std::filesystem::copy(file.path(), directory);
    }
    for (const auto& file : std::filesystem::directory_iterator(QELSCR_NO_OPERATIONS)) {
      std::filesystem::copy(file.path(), directory, std::filesystem::copy_options::overwrite_existing);
    }
    std::filesystem::copy(program, directory);
    program = directory / program.filename();
#else
    mEnvironment["LD_LIBRARY_PATH"] = QELSCR_NO_OPERATIONS;
#endif
    return program.string();
  }

  [[nodiscard]] std::string Path(const std::string& relativePath) const {
    return (mFiles.Path() / relativePath).string();
  }
  [[nodiscard]] bool Exists(const std::string& relativePath) const {
    return std::filesystem::exists(mFiles.Path() / relativePath);
  }
  [[nodiscard]] std::ptrdiff_t CountLines(const std::string& relativePath) const {
    const std::string text = mFiles.Read(relativePath);
    return std::count(text.begin(), text.end(), '\n');
  }

  TemporaryDirectory mFiles;
  std::map<std::string, std::string> mEnvironment{{"no_proxy", "*"}, {"HOME", mFiles.Path().string()}};
};

}  // namespace testsupport
