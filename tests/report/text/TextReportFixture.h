// What the tests of the text report's layout have in common.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace testsupport {

/// The section that every report ends with.
inline constexpr const char* kDebugSection =
    "\n"
    "____________________________________________________________________________\n"
    "\n"
    "    Debug database settings:\n"
    "        All settings default value\n";

class TextReportFixture : public ::testing::Test {
 protected:
  /// The report without its last section, which is checked.
  static std::string TextOf(const Components& machine,
                            const std::vector<qelsystemcompatibilityreport::SCRIssue>& issues) {
    qelcore::UTF8StringStream stream;
    qelsystemcompatibilityreport::WriteTextReport(stream, qelcore::utility::OSComponentRegistry(machine),
                                                  issues, {});
    std::string text = stream.Text();
    EXPECT_TRUE(text.ends_with(kDebugSection)) << text;
    return text.substr(0, text.size() - std::string(kDebugSection).size());
  }

  TestHost mHost;
};

}  // namespace testsupport
