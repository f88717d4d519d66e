// A log in a preferences directory of its own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/qelcore/diagnostics/JsonLinesLog.h"
#include "tests/support/TestHost.h"

namespace testsupport {

class JsonLinesLogs : public testing::Test {
 protected:
  static qelcore::json::Dictionary Entry(const std::string& text) {
    qelcore::json::Dictionary entry;
    qelcore::json::Set(entry, "text", text);
    return entry;
  }

  /// A text whose entry makes a line of this many bytes.
  static std::string TextForLine(std::size_t bytes) {
    return std::string(bytes - std::string("{\"text\":\"\"}\n").size(), 'x');
  }

  [[nodiscard]] std::filesystem::path At(const std::string& name) const { return mHost.Preferences() / name; }

  [[nodiscard]] std::string Content(const std::string& name) const { return ReadWholeFile(At(name)); }

  /// The texts of all entries, oldest first.
  [[nodiscard]] std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const qelcore::json::Dictionary& entry : mLog.Read().mObjects) {
      texts.push_back(*qelcore::json::FindText(entry, "text"));
    }
    return texts;
  }

  TestHost mHost;
  const qelcore::host::JsonLinesLog mLog{"log.jsonl", "the log"};
};

}  // namespace testsupport
