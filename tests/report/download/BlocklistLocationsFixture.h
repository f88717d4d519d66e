// What the tests of the places of blocklists have in common.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TestHost.h"

namespace testsupport {

class BlocklistLocationsFixture : public ::testing::Test {
 protected:
  ~BlocklistLocationsFixture() override { qelcore::host::SetFileOperationHook({}); }

  /// The file's path below the test's directory; its whole path when it lies elsewhere.
  [[nodiscard]] std::string Place(const qelcore::filesupport::File& file) const {
    const std::filesystem::path path(file.GetFullPath());
    const std::string root = mHost.Files().Path().generic_string() + "/";
    const std::string text = path.generic_string();
    return text.starts_with(root) ? text.substr(root.size()) : PathText(path);
  }

  /// A whole path in quotation marks, as the trace has it.
  [[nodiscard]] std::string Quoted(const std::string& relativePath) const {
    return '"' + PathText(mHost.Files().Path() / relativePath) + '"';
  }

  static void UseInstalled(const char* value) {
    qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.use_installed_blocklist", value);
  }

  TestHost mHost;
};

}  // namespace testsupport
