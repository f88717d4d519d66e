#include "app/Output.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace app {

void Print(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw UserError("standard output: " + std::generic_category().message(errno));
  }
}

void PrintDiagnostic(std::string_view text) {
  const std::string line = "scr: " + Printable(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

std::string Printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t place = 0; place < text.size(); ++place) {
    const auto byte = static_cast<unsigned char>(text[place]);
    const bool isSecondControlSet = byte == 0xC2 && place + 1 < text.size() &&
                                    static_cast<unsigned char>(text[place + 1]) < 0xA0;  // U+0080 to U+009F
    if (byte == '\n' || byte == '\t') {
      result.push_back(' ');
    } else if (byte < 0x20 || byte == 0x7F) {
      result.push_back('?');
    } else if (isSecondControlSet) {
      result.push_back('?');
      ++place;
    } else {
      result.push_back(text[place]);
    }
  }
  return result;
}

}  // namespace app
