// Runs a fuzz target on files, for builds without a fuzzer: each argument is a file, or a directory whose
// files are all taken.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/fuzz/support/QuietHost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::size_t count = 0;
  for (int index = 1; index < argumentCount; ++index) {
    for (const std::filesystem::path& file : FilesOf(arguments[index])) {
      // Before the run: after a crash the last line names the input.
      std::printf("%s\n", file.string().c_str());
      std::fflush(stdout);
      // A block of exactly that size, so that a sanitizer sees a read beyond its end.
      const std::string content = fuzz::ReadFile(file);
      const std::vector<std::uint8_t> bytes(content.begin(), content.end());
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++count;
    }
  }
  std::printf("%zu inputs\n", count);
  return count > 0 ? 0 : 1;
}
