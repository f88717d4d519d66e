// Safe saves in a directory of their own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

class SafeSaves : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path At(const std::string& name) const { return mDirectory.Path() / name; }
  [[nodiscard]] qelcore::filesupport::File FileAt(const std::string& name) const {
    return qelcore::filesupport::File(qelcore::string::UTF8to16(At(name).string()));
  }

  /// Saves in one go.
  void Save(const std::string& name, const std::string& content) const {
    qelcore::filesupport::SafeSave save(FileAt(name));
    save.Write(content);
    save.Commit();
  }

  /// The names in the directory, sorted.
  [[nodiscard]] std::vector<std::string> NamesInDirectory() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(mDirectory.Path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  TemporaryDirectory mDirectory;
};

}  // namespace testsupport
