// The fenced blocks of the documentation.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

inline const std::filesystem::path kRoot = QELSCR_SOURCE_DIR;

/// A fenced block of a page.
struct Block {
  std::string mPage;
  std::string mLanguage;
  std::string mText;
};

inline std::vector<std::filesystem::path> Pages() {
  std::vector<std::filesystem::path> pages;
  for (const auto& entry : std::filesystem::directory_iterator(kRoot)) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(kRoot / "docs")) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  return pages;
}

inline std::vector<Block> Blocks() {
  std::vector<Block> blocks;
  for (const std::filesystem::path& page : Pages()) {
    std::istringstream lines(ReadWholeFile(page));
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("```", 0) != 0) {
        if (isInside) blocks.back().mText += line + "\n";
        continue;
      }
      isInside = !isInside;
      if (isInside) blocks.push_back({page.filename().string(), line.substr(3), ""});
    }
    EXPECT_FALSE(isInside) << page << " leaves a block open";
  }
  return blocks;
}

}  // namespace testsupport
