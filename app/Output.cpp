#include "app/Output.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace app {

void Print(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    const std::string problem = "standard output: " + std::generic_category().message(errno);
    if (errno == EPIPE) throw OutputClosed(problem);
    throw UserError(problem);
  }
}

void PrintDiagnostic(std::string_view text) {
  const std::string line = "scr: " + Printable(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

std::string Printable(std::string_view text) {
  std::string result = PrintableLines(text);
  for (char& character : result) {
    if (character == '\n' || character == '\t') character = ' ';
    if (character == '\r') character = '?';
  }
  return result;
}

std::string PrintableLines(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t place = 0; place < text.size(); ++place) {
    const auto byte = static_cast<unsigned char>(text[place]);
    const bool isSecondControlSet = byte == 0xC2 && place + 1 < text.size() &&
                                    static_cast<unsigned char>(text[place + 1]) < 0xA0;  // U+0080 to U+009F
    const bool isLineEnd = byte == '\n' || text.substr(place).starts_with("\r\n");
    if (isSecondControlSet) {
      result.push_back('?');
      ++place;
    } else if ((byte < 0x20 && !isLineEnd && byte != '\t') || byte == 0x7F) {
      result.push_back('?');
    } else {
      result.push_back(text[place]);
    }
  }
  return result;
}

}  // namespace app
