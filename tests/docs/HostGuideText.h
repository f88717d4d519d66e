// The text of the guide for hosts.
#pragma once

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

inline const std::filesystem::path kRoot = QELSCR_SOURCE_DIR;

using Lines = std::vector<std::string>;

inline Lines ReadLines(const std::filesystem::path& path) {
  Lines lines;
  std::istringstream stream(ReadWholeFile(path));
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The guide's fenced blocks of a language.
inline std::vector<Lines> Blocks(const std::string& language) {
  std::vector<Lines> blocks;
  std::optional<std::string> current;
  for (const std::string& line : ReadLines(kRoot / "docs/host-guide.md")) {
    if (line.starts_with("```")) {
      current = current ? std::nullopt : std::optional(line.substr(3));
      if (current == language) blocks.emplace_back();
    } else if (current == language) {
      blocks.back().push_back(line);
    }
  }
  return blocks;
}

inline std::string Join(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace testsupport
