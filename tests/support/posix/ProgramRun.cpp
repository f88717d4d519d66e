#include "tests/support/ProgramRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

namespace {

constexpr int kCouldNotStart = 127;

void Redirect(int descriptor, const std::filesystem::path& path, int flags) {
  const int file = open(path.c_str(), flags, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(kCouldNotStart);
}

}  // namespace

ProgramResult RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment,
                         const std::filesystem::path& workingDirectory,
                         const std::filesystem::path& scratch) {
  const std::filesystem::path output = scratch / "output.txt";
  const std::filesystem::path errors = scratch / "errors.txt";
  std::string programPath = program.string();
  std::vector<std::string> copies = arguments;
  std::vector<char*> pointers{programPath.data()};
  for (std::string& copy : copies) pointers.push_back(copy.data());
  pointers.push_back(nullptr);

  const pid_t child = fork();
  if (child == 0) {
    Redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
    Redirect(STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC);
    Redirect(STDERR_FILENO, errors, O_WRONLY | O_CREAT | O_TRUNC);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    if (chdir(workingDirectory.c_str()) != 0) _exit(kCouldNotStart);
    execv(programPath.c_str(), pointers.data());
    _exit(kCouldNotStart);
  }
  EXPECT_GT(child, 0);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  const int exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return {exitCode, ReadWholeFile(output), ReadWholeFile(errors)};
}

}  // namespace testsupport
