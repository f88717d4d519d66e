// The three ways to a verdict that the benchmarks compare: they must agree byte for byte, or their times
// would say nothing. That makes them a test of matching, too.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "benchmarks/GeneratedData.h"
#include "benchmarks/Judge.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using benchmarks::Judge;
using benchmarks::Machine;
using benchmarks::Verdict;

constexpr const char* kOtherID = "00000000-0000-0000-0000-000000000001";

/// Asks a judge everything; the identifiers are compared by a second judge of the process.
Verdict Ask(std::unique_ptr<Judge> (*make)(const Machine&), const Machine& machine,
            const std::string& blocklist) {
  const std::unique_ptr<Judge> judge = make(machine);
  const Verdict verdict = judge->JudgeMachine(blocklist);
  // The first question of a process may be answered apart from all others.
  static_cast<void>(judge->IsUnchanged(blocklist, verdict.mMatchID));
  EXPECT_TRUE(judge->IsUnchanged(blocklist, verdict.mMatchID));
  EXPECT_FALSE(judge->IsUnchanged(blocklist, kOtherID));
  return verdict;
}

Verdict ExpectAgreement(const std::string& machinePath, const std::string& blocklist) {
  const Machine machine = benchmarks::ReadMachine(machinePath);
  const Verdict literal = Ask(benchmarks::MakeLiteralJudge, machine, blocklist);
  for (const auto make : {benchmarks::MakeFloorJudge, benchmarks::MakeLibraryJudge}) {
    const Verdict other = Ask(make, machine, blocklist);
    EXPECT_EQ(other.mMatchID, literal.mMatchID);
    EXPECT_EQ(other.mReport, literal.mReport);
    EXPECT_EQ(other.mTimesLogged, literal.mTimesLogged);
  }
  return literal;
}

std::vector<std::string> FilesIn(const std::filesystem::path& folder) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    paths.push_back(entry.path().string());
  std::sort(paths.begin(), paths.end());
  return paths;
}

class RecordedDataTest : public testing::TestWithParam<const char*> {};

TEST_P(RecordedDataTest, TheThreeAgreeOnEveryMachine) {
  const std::filesystem::path folder =
      std::filesystem::path(QELSCR_SOURCE_DIR).parent_path() / "shared" / "data";
  if (!std::filesystem::is_directory(folder)) {
    std::cout << "There are no recordings in " << folder << ", nothing was compared.\n";
    return;
  }
  const std::string blocklist = (folder / "blocklists" / (GetParam() + std::string(".json"))).string();
  for (const std::string& machine : FilesIn(folder / "machines")) {
    SCOPED_TRACE(machine);
    ExpectAgreement(machine, blocklist);
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Blocklists, RecordedDataTest,
                         testing::Values("chromium_driver_bugs", "chromium_software_rendering",
                                         "field_census", "mozilla_gfx_items"),
                         [](const auto& blocklist) { return std::string(blocklist.param); });

struct Size {
  std::size_t mRules;
  std::size_t mComponents;
};

class GeneratedDataTest : public testing::TestWithParam<Size> {
 protected:
  std::string Write(const char* name, const std::string& text) const {
    const std::filesystem::path path = mDirectory.Path() / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_P(GeneratedDataTest, TheThreeAgree) {
  const auto [ruleCount, componentCount] = GetParam();
  std::size_t timesLogged = 0;
  for (std::uint64_t seed = 1; seed < 6; ++seed) {
    SCOPED_TRACE(seed);
    const std::string machine = Write("machine.json", benchmarks::GenerateMachine(componentCount, seed));
    const std::string blocklist =
        Write("blocklist.json", benchmarks::GenerateBlocklist(ruleCount, seed, true));
    const Verdict verdict = ExpectAgreement(machine, blocklist);
    // What agrees on nothing would prove nothing.
    EXPECT_NE(verdict.mReport.find("\nISSUES:\n"), std::string::npos);
    timesLogged += verdict.mTimesLogged;
  }
  EXPECT_GT(timesLogged, 0u);
}

INSTANTIATE_TEST_SUITE_P(Sizes, GeneratedDataTest,
                         testing::Values(Size{100, 50}, Size{400, 20}, Size{50, 300}), [](const auto& size) {
                           return std::to_string(size.param.mRules) + "RulesOn" +
                                  std::to_string(size.param.mComponents);
                         });

}  // namespace
