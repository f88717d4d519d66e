// What every process of `scr` pays before it does anything: starts, loads the libraries that `scr` loads, and
// reads one file.
//
//   yardstick FILE
#include <cstdio>
#include <memory>
#include <vector>

int main(int count, char** texts) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      count == 2 ? std::fopen(texts[1], "rb") : nullptr, std::fclose);
  if (!file) {
    std::fputs("usage: yardstick FILE\n", stderr);
    return 2;
  }
  std::fseek(file.get(), 0, SEEK_END);
  std::vector<char> content(static_cast<std::size_t>(std::ftell(file.get())));
  std::rewind(file.get());
  return std::fread(content.data(), 1, content.size(), file.get()) == content.size() ? 0 : 1;
}
