// Every example in the documentation works.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/PriorState.h"
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

std::vector<Block> Blocks(const std::string& language) {
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
  std::erase_if(blocks, [&](const Block& block) { return block.mLanguage != language; });
  return blocks;
}

TEST(DocumentationTest, JSONExamplesAreWhatTheySay) {
  const testsupport::TestHost host;
  std::set<std::string> seen;
  for (const Block& block : Blocks("json")) {
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

/// Commands that begin with `scr` or `./run` run as they stand, one after the other on each page, with the
/// checkout as the working directory. The scripts themselves are run by `.ci/run`.
TEST(DocumentationTest, CommandsRun) {
  const std::set<std::string> scripts = {
      "./run", "./test", ".ci/run", "QELSCR_PRESET=sanitizers", "cmake", ".ci/check-clang-tidy", "git", "cd"};
  int ran = 0;
  for (const Block& block : Blocks("sh")) {
    const testsupport::TemporaryDirectory files;
    std::istringstream lines(block.mText);
    for (std::string line; std::getline(lines, line);) {
      const std::string first = line.substr(0, line.find_first_of(" \n"));
      if (first.empty() || first == "#") continue;
      if (first == "./run" && line.size() > 6 && line[6] != '#' && line[6] != ' ')
        line = "scr" + line.substr(5);
      if (line.rfind("scr ", 0) != 0) {
        EXPECT_EQ(scripts.count(first), 1U) << block.mPage << ": " << line;
        continue;
      }
      const std::string command = "scr() { " QELSCR_SCR " \"$@\"; }\n" + line;
      const auto result = testsupport::RunProgram("/bin/bash", {"-c", command},
                                                  {{"XDG_CONFIG_HOME", files.Path() / "config"},
                                                   {"XDG_STATE_HOME", files.Path() / "state"},
                                                   {"TMPDIR", files.Path()}},
                                                  kRoot, files.Path());
      EXPECT_TRUE(result.mExitCode == 0 || result.mExitCode == 2) << block.mPage << ": " << line << "\n"
                                                                  << result.mErrors;
      ++ran;
    }
  }
  EXPECT_GT(ran, 10);
}

}  // namespace
