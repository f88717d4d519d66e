// Writes a generated blocklist or machine to standard output.
//
//   generate_data blocklist 10000
//   generate_data machine 300
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "benchmarks/GeneratedData.h"

namespace {

constexpr std::uint64_t kSeed = 1;

std::string Generate(const std::vector<std::string>& arguments) {
  const std::size_t count = std::stoul(arguments.at(1));
  return arguments[0] == "machine" ? benchmarks::GenerateMachine(count, kSeed)
                                   : benchmarks::GenerateBlocklist(count, kSeed);
}

}  // namespace

int main(int count, char** texts) {
  try {
    const std::string text = Generate({texts + 1, texts + count});
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
  } catch (const std::exception&) {
    std::fputs("usage: generate_data blocklist|machine COUNT\n", stderr);
    return 2;
  }
}
