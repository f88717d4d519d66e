// The public headers in the company of a system header that defines a macro named like an error level.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

#define ERROR 0

#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/Export.h"
#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/SeparateMatching.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReportObject.h"
#include "qelsystemcompatibilityreport/TextReport.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

#include "qelsystemcompatibilityreport/DebugSettings.h"

#ifndef ERROR
#error "a public header took a macro of the program away"
#endif

namespace {

constexpr int kValueOfTheMacro = ERROR;

TEST(PublicHeadersTest, TheMacroIsStillThere) {
  EXPECT_EQ(kValueOfTheMacro, 0);
}

#undef ERROR

TEST(PublicHeadersTest, TheLevelIsStillThere) {
  EXPECT_EQ(static_cast<int>(qelsystemcompatibilityreport::SCRRuleErrorLevel::ERROR), 2);
}

TEST(PublicHeadersTest, AllOfThemAreIncludedAbove) {
  const std::filesystem::path source(QELSCR_SOURCE_DIR);
  const std::string text = testsupport::ReadWholeFile(source / "tests/rules/PublicHeadersTest.cpp");
  const std::size_t macro = text.find("#define ERROR 0");
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(source / "qelsystemcompatibilityreport")) {
    if (entry.path().extension() != ".h") continue;
    ++count;
    const std::string line = "\n#include \"qelsystemcompatibilityreport/" + entry.path().filename().string();
    const std::size_t place = text.find(line);
    EXPECT_TRUE(place != std::string::npos && place > macro) << line;
  }
  EXPECT_GE(count, 9u);
}

}  // namespace
