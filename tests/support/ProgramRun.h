// One run of a program, as a shell would start it.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace testsupport {

struct ProgramResult {
  /// On systems with signals 128 and the number of the signal for a program that a signal ended.
  int mExitCode = -1;
  std::string mOutput;
  std::string mErrors;
};

/// Runs the program with these arguments and waits for its end. Standard input is empty. `environment` is
/// added to the test's own. Standard output and standard error are collected in files of `scratch`.
[[nodiscard]] ProgramResult RunProgram(const std::filesystem::path& program,
                                       const std::vector<std::string>& arguments,
                                       const std::map<std::string, std::string>& environment,
                                       const std::filesystem::path& workingDirectory,
                                       const std::filesystem::path& scratch);

}  // namespace testsupport
