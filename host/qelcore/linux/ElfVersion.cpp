#include <array>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/qelcore/System.h"

namespace qelcore::host {

namespace {

constexpr std::string_view kBeginning =
    "\x7F"
    "ELF";
constexpr std::string_view kMark = ".so.";

bool BeginsAsElf(const std::filesystem::path& path) {
  std::array<char, 4> bytes{};
  std::ifstream stream(path, std::ios::binary);
  stream.read(bytes.data(), bytes.size());
  return stream && std::string_view(bytes.data(), bytes.size()) == kBeginning;
}

/// Whether the text is decimal numbers joined by points.
bool IsDotted(std::string_view text) {
  bool isDigitBefore = false;
  for (const char character : text) {
    const bool isDigit = character >= '0' && character <= '9';
    if (!isDigit && !(character == '.' && isDigitBefore)) {
      return false;
    }
    isDigitBefore = isDigit;
  }
  return isDigitBefore;
}

}  // namespace

std::string NativeFileVersion(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  if (error || !BeginsAsElf(real)) {
    return {};
  }
  const std::string name = real.filename().string();
  const std::size_t mark = name.rfind(kMark);
  if (mark == std::string::npos) {
    return {};
  }
  std::string version = name.substr(mark + kMark.size());
  return IsDotted(version) ? version : std::string();
}

}  // namespace qelcore::host
