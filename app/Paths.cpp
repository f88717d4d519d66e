#include "app/Paths.h"

namespace app {

std::filesystem::path ToPath(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::string ToUTF8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string AbsolutePath(const std::string& utf8) {
  return ToUTF8(std::filesystem::absolute(ToPath(utf8)));
}

}  // namespace app
