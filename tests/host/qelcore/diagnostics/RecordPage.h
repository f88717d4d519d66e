// The examples and tables of a page that describes a file of records.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "platform/qelcore/Json.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

class RecordPage {
 public:
  /// `name` is the page's in `docs/formats`.
  explicit RecordPage(const std::string& name) {
    std::istringstream page(
        ReadWholeFile(std::filesystem::path(QELSCR_SOURCE_DIR) / "docs" / "formats" / name));
    for (std::string line; std::getline(page, line);) mLines.push_back(line);
  }

  /// The blocks marked "json", each as one line that ends with a line feed.
  [[nodiscard]] std::vector<std::string> Examples() const {
    std::vector<std::string> examples;
    bool isInside = false;
    for (const std::string& line : mLines) {
      if (line == "```json") {
        examples.emplace_back();
        isInside = true;
      } else if (line == "```") {
        if (isInside) examples.back() += '\n';
        isInside = false;
      } else if (isInside) {
        examples.back() += line + ' ';
      }
    }
    return examples;
  }

  /// The rows of the first table after the line that begins so, without its head, as the texts of their
  /// cells.
  [[nodiscard]] std::vector<std::vector<std::string>> TableAfter(const std::string& beginning) const {
    std::vector<std::vector<std::string>> rows;
    bool isReached = false;
    for (const std::string& line : mLines) {
      if (isReached && line.starts_with('|')) {
        rows.push_back(Cells(line));
      } else if (!rows.empty()) {
        break;
      }
      isReached = isReached || line.starts_with(beginning);
    }
    EXPECT_GT(rows.size(), 2U) << beginning;
    if (rows.size() > 2) rows.erase(rows.begin(), rows.begin() + 2);
    return rows;
  }

  /// The texts between single backquotes.
  [[nodiscard]] static std::vector<std::string> Quoted(const std::string& text) {
    std::vector<std::string> quoted;
    for (std::size_t begin = text.find('`'); begin != std::string::npos;) {
      const std::size_t end = text.find('`', begin + 1);
      if (end == std::string::npos) break;
      quoted.push_back(text.substr(begin + 1, end - begin - 1));
      begin = text.find('`', end + 1);
    }
    return quoted;
  }

 private:
  static std::vector<std::string> Cells(const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
      const std::size_t begin = cell.find_first_not_of(' ');
      cells.push_back(
          begin == std::string::npos ? "" : cell.substr(begin, cell.find_last_not_of(' ') - begin + 1));
    }
    return cells;
  }

  std::vector<std::string> mLines;
};

/// The record, compactly and with its "time" replaced; fails the test when the text is no object.
[[nodiscard]] inline std::string WithTime(const std::string& text, const std::string& time) {
  const std::any value = qelcore::json::Parse(text);
  EXPECT_TRUE(value.has_value()) << text;
  qelcore::json::Dictionary object = qelcore::json::AsDictionary(value);
  qelcore::json::Set(object, "time", time);
  return qelcore::json::Serialise(object);
}

}  // namespace testsupport
