// Every example in the documentation works.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;

const std::filesystem::path kRoot = QELSCR_SOURCE_DIR;

/// A fenced block of a page.
struct Block {
  std::string mPage;
  std::string mLanguage;
  std::string mText;
};

std::vector<std::filesystem::path> Pages() {
  std::vector<std::filesystem::path> pages;
  for (const auto& entry : std::filesystem::directory_iterator(kRoot)) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(kRoot / "docs")) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  return pages;
}

std::vector<Block> Blocks() {
  std::vector<Block> blocks;
  for (const std::filesystem::path& page : Pages()) {
    std::istringstream lines(testsupport::ReadWholeFile(page));
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("```", 0) != 0) {
        if (isInside) blocks.back().mText += line + "\n";
        continue;
      }
      isInside = !isInside;
      if (isInside) blocks.push_back({page.filename().string(), line.substr(3), ""});
    }
    EXPECT_FALSE(isInside) << page << " leaves a block open";
  }
  return blocks;
}

/// A directory that looks like the checkout to a command, and keeps what the command writes out of it.
class Workplace {
 public:
  Workplace() {
    for (const char* const folder : {"data", "docs"}) {
      std::filesystem::create_directory_symlink(kRoot / folder, mFiles.Path() / folder);
    }
    std::filesystem::create_directory(mFiles.Path() / "scratch");
  }

  [[nodiscard]] testsupport::ProgramResult Run(const std::string& line) const {
    return testsupport::RunProgram("/bin/bash", {"-c", "scr() { " QELSCR_SCR " \"$@\"; }\n" + line},
                                   {{"XDG_CONFIG_HOME", mFiles.Path() / "config"},
                                    {"XDG_STATE_HOME", mFiles.Path() / "state"},
                                    {"TMPDIR", mFiles.Path()}},
                                   mFiles.Path(), mFiles.Path() / "scratch");
  }

 private:
  testsupport::TemporaryDirectory mFiles;
};

TEST(DocumentationTest, JSONExamplesAreWhatTheySay) {
  const testsupport::TestHost host;
  std::set<std::string> seen;
  for (const Block& block : Blocks()) {
    if (block.mLanguage != "json") continue;
    json::ParseError error;
    const std::any value = json::Parse(block.mText, &error);
    ASSERT_TRUE(value.has_value()) << block.mPage << ": " << error.mMessage << "\n" << block.mText;
    const json::Dictionary& object = json::AsDictionary(value);
    if (json::Has(object, "blocklist_version")) {
      seen.insert("blocklist");
      EXPECT_TRUE(qelsystemcompatibilityreport::SCRBlocklist(block.mText).Verify()) << block.mPage;
    } else if (json::Has(object, "last_match_job")) {
      seen.insert("state");
      EXPECT_NO_THROW(static_cast<void>(qelsystemcompatibilityreport::PriorStateFromJSON(value)))
          << block.mPage;
    } else if (json::Has(object, "components")) {
      seen.insert("snapshot");
      for (const std::any& element : *json::FindArray(object, "components")) {
        qelcore::utility::OSComponent component;
        EXPECT_TRUE(component.FromJSON(element)) << block.mPage << ": " << json::Serialise(element);
      }
    } else if (json::Has(object, "type")) {
      seen.insert("rule");
      qelsystemcompatibilityreport::SCRRule rule;
      EXPECT_TRUE(rule.FromJSON(value)) << block.mPage << ": " << block.mText;
    }
  }
  EXPECT_TRUE(host.mExceptionTexts.empty()) << host.mExceptionTexts.front();
  for (const char* const kind : {"blocklist", "state", "snapshot"}) EXPECT_EQ(seen.count(kind), 1U) << kind;
}

/// Commands of `scr` run as they stand, one after the other, in a fresh directory for each block. What
/// follows in a block of its own marked "output" is what the last of them printed. Scripts are run by
/// `.ci/run`.
TEST(DocumentationTest, CommandsRun) {
  const std::set<std::string> scripts = {
      "./run", "./test", ".ci/run", ".ci/check-clang-tidy", "cmake", "QELSCR_PRESET=sanitizers"};
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
      if (!runsVerb && command.rfind("scr ", 0) != 0) {
        EXPECT_EQ(scripts.count(command.substr(0, command.find(' '))), 1U) << block.mPage << ": " << line;
        continue;
      }
      const auto result = workplace.Run(runsVerb ? "scr" + command.substr(5) : command);
      const bool mayFindIssues = command.find(" check ") != std::string::npos;
      EXPECT_TRUE(result.mExitCode == 0 || (mayFindIssues && result.mExitCode == 2))
          << block.mPage << ": " << line << "\n"
          << result.mErrors;
      output = result.mOutput;
      ++ran;
    }
  }
  EXPECT_GT(ran, 10);
}

}  // namespace
