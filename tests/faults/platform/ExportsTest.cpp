// Every function that the library exports is called in some scenario, so that none goes without faults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "tests/faults/platform/Scenarios.h"

namespace {

constexpr std::string_view kNamespace = "qelsystemcompatibilityreport::";

/// Exported with their classes, and called by other functions of these alone.
constexpr const char* kPrivate =
    "SCRBlocklist::Read SCRBlocklist::ReadDirectly SCRBlocklist::ReadFromDictionary "
    "SCRBlocklist::ReadDocument SCRBlocklist::Rules "
    "SCRBlocklist::ReadDefaults SCRBlocklist::GetDefaultInfoAndURL SCRBlocklist::IdentifyMatch "
    "SCRBlocklist::FindIssues SCRRule::Clear SCRRule::Explain SCRRule::ReadRule SCRRule::ReadFields "
    "SCRRule::FindMatchingCandidates "
    "SCRRule::AdoptInfoIfNeeded SCRRule::DeserializeVersionFieldsFromJSON "
    "SCRRule::DeserializeProprtyFieldsFromJSON SCRRule::FindMatchingFileComponent VersionRange::WriteTo";

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
  std::string output;
  std::array<char, 4096> block{};
  std::size_t count = 0;
  while (pipe && (count = std::fread(block.data(), 1, block.size(), pipe.get())) > 0)
    output.append(block.data(), count);
  return output;
}

/// The library's functions, as their declarations name them; destructors are called with every object.
std::set<std::string> ExportedFunctions() {
  std::istringstream lines(OutputOf("nm -D -C --defined-only '" QELSCR_LIBRARY_FILE "'"));
  std::set<std::string> functions;
  for (std::string line; std::getline(lines, line);) {
    constexpr std::string_view kCode = " T ";
    const std::size_t place = line.find(kCode);
    if (place == std::string::npos) continue;
    std::string name = line.substr(place + kCode.size());
    name = name.substr(0, name.find('('));
    name = name.substr(0, name.find('['));
    if (!name.starts_with(kNamespace) || name.find('~') != std::string::npos) continue;
    functions.insert(name.substr(kNamespace.size()));
  }
  return functions;
}

TEST(ExportsTest, EachIsCalledInSomeScenario) {
  std::set<std::string> called;
  for (const testsupport::Scenario& scenario : testsupport::Scenarios()) {
    for (const std::string& function : testsupport::CalledFunctions(scenario))
      called.insert(function.substr(kNamespace.size()));
  }
  std::istringstream words(kPrivate);
  for (std::string word; words >> word;) called.insert(word);
  EXPECT_THAT(ExportedFunctions(), testing::UnorderedElementsAreArray(called));
}

}  // namespace
