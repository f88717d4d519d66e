// The program's windows on Windows: what they show, what presses do, and what is left when they are closed.
#include <gmock/gmock.h>

#include "tests/app/ScrTest.h"
#include "tests/screen/windows/Screen.h"

namespace {

using testing::HasSubstr;
using testsupport::Blocklist;
using testsupport::ScreenProgram;
using testsupport::ScreenWindow;
using testsupport::SystemRule;
using testsupport::WaitUntil;

constexpr const char* kInstalled = "application/SystemCompatibilityReport/blocklist.en_US.json";
constexpr const char* kState = "preferences/SCRPriorState.json";
constexpr const char* kReport = "System Compatibility Report";
constexpr const char* kContinue = "Continue with known issues...";

class WindowsScreenTest : public testsupport::ScrTest {
 protected:
  [[nodiscard]] std::vector<std::string> Arguments(const std::string& verb) const {
    return {"--pref-dir", Path("preferences"), "--app-dir", Path("application"), "--language", "en_US", verb};
  }
};

TEST_F(WindowsScreenTest, ASeriousReportIsClosedThroughTheContinueControl) {
  Write(kInstalled,
        Blocklist(SystemRule(R"("error_level": "ERROR", "info_message": "It may end early. ß 保")") + ", " +
                  SystemRule(R"("error_level": "INFO", "info_message": "Good to know.")")));
  ScreenProgram program(QELSCR_SCR, Arguments("show"));
  const ScreenWindow report = program.WaitForWindow(kReport);
  EXPECT_TRUE(WaitUntil([&] { return report.Shows("It may end early. ß 保"); }));
  for (const char* const text :
       {kReport, "ERROR – Unsupported Operating System", "INFO – Unsupported Operating System",
        "Good to know.", "Fix...", "Info...", "Export Report...", kContinue,
        "If you continue with known issues, you may experience performance degradation, instability and data "
        "loss."}) {
    EXPECT_TRUE(report.Shows(text)) << text;
  }
  EXPECT_FALSE(report.Shows("OK"));

  report.Press(kContinue);
  EXPECT_EQ(program.WaitForEnd(), 0);
  EXPECT_THAT(mFiles.Read(kState), HasSubstr("error_matches"));
}

TEST_F(WindowsScreenTest, AReportOfInformationIsClosedWithOK) {
  Write(kInstalled, Blocklist(SystemRule(R"("error_level": "INFO", "info_message": "Good to know.")")));
  ScreenProgram program(QELSCR_SCR, Arguments("show"));
  const ScreenWindow report = program.WaitForWindow(kReport);
  EXPECT_TRUE(WaitUntil([&] { return report.Shows("OK"); }));
  EXPECT_TRUE(report.Shows("Good to know."));
  EXPECT_FALSE(report.Shows(kContinue));
  report.Press("OK");
  EXPECT_EQ(program.WaitForEnd(), 0);
}

TEST_F(WindowsScreenTest, TheCloseBoxClosesTheReport) {
  ScreenProgram program(QELSCR_SCR, Arguments("show"));
  const ScreenWindow report = program.WaitForWindow(kReport);
  EXPECT_TRUE(WaitUntil([&] { return report.Shows("Blocklist not present."); }));
  report.Close();
  EXPECT_EQ(program.WaitForEnd(), 0);
}

TEST_F(WindowsScreenTest, TheOptimizerCountsWhatIsSelectedAndIsLeftWithIgnore) {
  ScreenProgram program(QELSCR_SCR, Arguments("optimize"));
  const ScreenWindow optimizer = program.WaitForWindow("Application Optimizer");
  EXPECT_TRUE(WaitUntil([&] { return optimizer.Shows("3 of 3 selected"); }));
  EXPECT_TRUE(optimizer.Shows("Optimize"));
  EXPECT_TRUE(optimizer.Shows("Restore system defaults"));
  optimizer.Press("Ignore");
  EXPECT_EQ(program.WaitForEnd(), 0);
}

TEST_F(WindowsScreenTest, OptimizingEndsTheOptimizer) {
  ScreenProgram program(QELSCR_SCR, Arguments("optimize"));
  const ScreenWindow optimizer = program.WaitForWindow("Application Optimizer");
  EXPECT_TRUE(WaitUntil([&] { return optimizer.Shows("3 of 3 selected"); }));
  optimizer.Press("Optimize");
  EXPECT_EQ(program.WaitForEnd(), 0);
}

TEST_F(WindowsScreenTest, TheDesktopShowsTheReportFromItsMenuAboveItself) {
  Write(kInstalled, Blocklist(SystemRule(R"("error_level": "INFO", "info_message": "Good to know.")")));
  ScreenProgram program(QELSCR_SCR, Arguments("desktop"));
  ASSERT_TRUE(WaitUntil([&] { return !program.Titles().empty(); }));
  const std::string title = program.Titles().front();
  const ScreenWindow desktop = program.WaitForWindow(title);
  constexpr int kHelp = 1;
  desktop.ChooseMenuLine(kHelp, 0);
  ASSERT_TRUE(WaitUntil([&] { return program.Titles().size() == 2; }));
  EXPECT_FALSE(desktop.IsEnabled()) << "the report is modal";
  const ScreenWindow report = program.WaitForWindow(kReport);
  EXPECT_TRUE(WaitUntil([&] { return report.Shows("Good to know."); }));
  report.Press("OK");
  ASSERT_TRUE(WaitUntil([&] { return program.Titles().size() == 1; }));
  EXPECT_TRUE(desktop.IsEnabled());
  desktop.Close();
  EXPECT_EQ(program.WaitForEnd(), 0);
}

}  // namespace
