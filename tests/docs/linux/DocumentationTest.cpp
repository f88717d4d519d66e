// Every command in the documentation works.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>

#include "tests/docs/DocumentationPages.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using testsupport::Block;
using testsupport::Blocks;
using testsupport::kRoot;

/// A directory that looks like the checkout to a command, and keeps what the command writes out of it.
class Workplace {
 public:
  Workplace() {
    for (const char* const folder : {"data", "docs"}) {
      std::filesystem::create_directory_symlink(kRoot / folder, mFiles.Path() / folder);
    }
  }

  [[nodiscard]] testsupport::ProgramResult Run(const std::string& line) const {
    return testsupport::RunProgram("/bin/bash", {"-c", "scr() { " QELSCR_SCR " \"$@\"; }\n" + line},
                                   {{"XDG_CONFIG_HOME", mFiles.Path() / "config"},
                                    {"XDG_STATE_HOME", mFiles.Path() / "state"},
                                    {"TMPDIR", mFiles.Path()}},
                                   mFiles.Path(), mStreams.Path());
  }

 private:
  testsupport::TemporaryDirectory mFiles;
  testsupport::TemporaryDirectory mStreams;
};

/// Commands of `scr`, and those that make a folder for them, run as they stand, one after the other, in a
/// fresh directory for each block. What follows in a block of its own marked "output" is what the last of
/// them printed. Scripts are run by `.ci/run` or by hand, the compiler by the tests of packaging.
TEST(DocumentationTest, CommandsRun) {
  const std::set<std::string> scripts = {"./run",
                                         "./test",
                                         ".ci/run",
                                         ".ci/check-clang-tidy",
                                         ".ci/check-memory",
                                         ".ci/check-threads",
                                         ".ci/fuzz",
                                         "benchmarks/first-paint",
                                         "benchmarks/peers",
                                         "benchmarks/processes",
                                         "c++",
                                         "cmake",
                                         "QELSCR_PRESET=sanitizers"};
  int ran = 0;
  std::string output;
  for (const Block& block : Blocks()) {
    if (block.mLanguage == "output") {
      EXPECT_EQ(block.mText, output) << block.mPage;
    }
    if (block.mLanguage != "sh") continue;
    const Workplace workplace;
    std::istringstream lines(block.mText);
    for (std::string line; std::getline(lines, line);) {
      if (line.empty() || line[0] == '#') continue;
      const std::string command = line.substr(0, line.find_last_not_of(' ', line.find('#') - 1) + 1);
      const bool runsVerb = command.rfind("./run ", 0) == 0;
      const bool makesFolder = command.rfind("mkdir ", 0) == 0;
      if (!runsVerb && !makesFolder && command.rfind("scr ", 0) != 0) {
        EXPECT_EQ(scripts.count(command.substr(0, command.find(' '))), 1U) << block.mPage << ": " << line;
        continue;
      }
      const auto result = workplace.Run(runsVerb ? "scr" + command.substr(5) : command);
      const bool mayFindIssues = command.find(" check ") != std::string::npos ||
                                 command.find(" lint ") != std::string::npos ||
                                 command.find(" diff ") != std::string::npos;
      EXPECT_TRUE(result.mExitCode == 0 || (mayFindIssues && result.mExitCode == 2))
          << block.mPage << ": " << line << "\n"
          << result.mErrors;
      output = result.mOutput;
      if (!makesFolder) ++ran;
    }
  }
  EXPECT_GT(ran, 10);
}

}  // namespace
