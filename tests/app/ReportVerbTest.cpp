#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

class ReportVerbTest : public testsupport::ScrTest {};

constexpr const char* kListPath = "application/SystemCompatibilityReport/blocklist.en_US.json";
const std::string kSystemRule = SystemRule(R"("error_level": "WARN", "info_message": "A kernel.")");

void ExpectReport(const std::string& text) {
  EXPECT_EQ(text.rfind("System Components:\n\n[Operating System] ", 0), 0U) << text;
  const std::string end =
      "\n" + std::string(76, '_') + "\n\n    Debug database settings:\n        All settings default value\n";
  ASSERT_GE(text.size(), end.size());
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

TEST_F(ReportVerbTest, ReportOnStandardOutput) {
  Write(kListPath, Blocklist(kSystemRule));
  const auto result = Scr({"report"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mErrors, "");
  ExpectReport(result.mOutput);
  EXPECT_NE(result.mOutput.find("\nISSUES:\n1.\tA kernel.\n\tID:  HASH:"), std::string::npos)
      << result.mOutput;
  EXPECT_NE(result.mOutput.find("[Property] cpu.logical_processors : "), std::string::npos) << result.mOutput;
  EXPECT_NE(mFiles.Read("preferences/SCRPriorState.json").find("\"warn_matches\":[\"HASH:"),
            std::string::npos);
}

TEST_F(ReportVerbTest, ReportIntoAFile) {
  Write(kListPath, Blocklist(kSystemRule));
  Write("report.txt", std::string(100'000, 'x'));
  const auto result = Scr({"report", "--output", "report.txt"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput + result.mErrors, "");
  ExpectReport(mFiles.Read("report.txt"));
}

TEST_F(ReportVerbTest, NamesOfFilesAreOfAnyLanguage) {
  const std::string directory = "Préférences 日本 😀";
  Write(directory + "/SystemCompatibilityReport/blocklist.en_US.json", Blocklist(kSystemRule));
  const auto result = Run({"--pref-dir", Path(directory), "--app-dir", Path(directory), "report", "--output",
                           "Bericht für Jürgen 報告.txt"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput + result.mErrors, "");
  ExpectReport(mFiles.Read("Bericht für Jürgen 報告.txt"));
  EXPECT_TRUE(Exists(directory + "/SCRPriorState.json"));
}

TEST_F(ReportVerbTest, ReportWithoutABlocklistListsTheComponents) {
  const auto result = Scr({"report"});
  EXPECT_EQ(result.mExitCode, 0);
  ExpectReport(result.mOutput);
  EXPECT_FALSE(Exists("preferences/SCRPriorState.json"));
}

TEST_F(ReportVerbTest, ReportInGerman) {
  Write("application/translations/de_DE.json", R"({"$$$/qel/scr/kSystemComponentsText": "Teile:\n"})");
  const auto result = Scr({"--language", "de_DE", "report"});
  EXPECT_EQ(result.mOutput.rfind("Teile:\n[Operating System] ", 0), 0U) << result.mOutput;
}

TEST_F(ReportVerbTest, ReportShowsADebugSettingOfThisRun) {
  const auto result = Scr({"--set", "qelsystemcompatibilityreport.use_installed_blocklist=true", "report"});
  EXPECT_NE(result.mOutput.find(
                "        qelsystemcompatibilityreport.use_installed_blocklist: \t\t\t Current: true "
                "Default: false\n"),
            std::string::npos)
      << result.mOutput;
  EXPECT_EQ(Scr({"report"}).mOutput.find("Current: true"), std::string::npos);
}

TEST_F(ReportVerbTest, ReportThatCannotBeMadeSaysWhy) {
  ExpectError(Scr({"report", "--output", Path("no/such/directory/report.txt")}),
              "no/such/directory/report.txt");
  ExpectError(Scr({"report", "--output", Path(".")}), Path("."));
  Write(kListPath, "");
  ExpectError(Scr({"report"}), "the blocklist file is empty");
}

TEST_F(ReportVerbTest, ReportWarnsOfABrokenBlocklist) {
  Write(kListPath, "{\"blocklist_version\": 1,");
  const auto result = Scr({"report"});
  EXPECT_EQ(result.mExitCode, 0);
  ExpectReport(result.mOutput);
  EXPECT_EQ(result.mErrors.rfind("scr: warning: the blocklist is not JSON, line 1, column ", 0), 0U)
      << result.mErrors;
}

TEST_F(ReportVerbTest, ReportThatCannotBeRememberedSaysSo) {
  Write(kListPath, Blocklist(kSystemRule));
  Write("preferences/SCRPriorState.json/in-the-way", "");
  const auto result = Scr({"report"});
  EXPECT_EQ(result.mExitCode, 0);
  ExpectReport(result.mOutput);
  EXPECT_NE(result.mErrors.find("scr: warning: the issues could not be remembered: "), std::string::npos)
      << result.mErrors;
}

TEST_F(ReportVerbTest, ReportTracesWhenAsked) {
  const auto result = Scr({"--trace", "6", "report"});
  EXPECT_NE(result.mErrors.find("App Restricted list File Location: \"" +
                                testsupport::PathText(Path(kListPath)) + "\""),
            std::string::npos)
      << result.mErrors;
}

}  // namespace
