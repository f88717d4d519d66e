// One report dialog at a time, from the service's entry points.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/dialogs/DialogFixture.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponentType;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::EventSummaries;
using testsupport::RecordedDialog;

class ReportDialogTest : public testsupport::DialogFixture {
 protected:
  ReportDialogTest() {
    mHost.SetComponents({testsupport::Component(OSComponentType::kVideo, "Card", "1.2.3.4")});
  }

  void Install(const std::vector<std::string>& rules, const std::string& secondWarning = {}) {
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json",
                        BlocklistText(rules, secondWarning));
  }
};

TEST_F(ReportDialogTest, AHelpRunShowsTheIssues) {
  Install(CardRules("WARN", 2));
  mToolkit.mWhileDialogIsUp = [](RecordedDialog& dialog) {
    EXPECT_EQ(dialog.mTitle, u"Example");
    EXPECT_EQ(dialog.mParent, testsupport::SomeWindow());
    EXPECT_THAT(dialog.VisibleTexts(), testing::Contains(u"WARN 2"));
  };
  RunReportForHelp(u"Example", testsupport::SomeWindow());
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(ReportDialogTest, AHelpRunWithoutBlocklistSaysSo) {
  mToolkit.mWhileDialogIsUp = [](RecordedDialog& dialog) {
    EXPECT_THAT(dialog.VisibleTexts(), testing::Contains(u"Blocklist not present."));
  };
  RunReportForHelp(u"Example", nullptr);
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(ReportDialogTest, TheExportedReportIsThatOfTheRun) {
  Install(CardRules("WARN", 1));
  mToolkit.mSaveAsAnswer = (mHost.Files().Path() / "exported.txt").u16string();
  mToolkit.mWhileDialogIsUp = [](RecordedDialog& dialog) { dialog.Press(u"Export Report..."); };
  RunReportForHelp(u"Example", nullptr);
  EXPECT_THAT(mHost.Files().Read("exported.txt"), HasSubstr("[Video] Card v.1.2.3.4\nISSUES:\n1.\tWARN 1\n"));
}

TEST_F(ReportDialogTest, TheSecondWarningFollowsTheDialog) {
  Install(CardRules("WARN", 1), "Careful.");
  mToolkit.mWhileDialogIsUp = [&](RecordedDialog&) { EXPECT_THAT(mToolkit.mErrorMessages, IsEmpty()); };
  RunReportForStartup(u"Example", nullptr);
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
  EXPECT_EQ(mToolkit.mErrorMessages.size(), 1U);
}

TEST_F(ReportDialogTest, ASecondRequestBringsTheOpenOneToTheFront) {
  Install(CardRules("WARN", 1));
  mToolkit.mWhileDialogIsUp = [&](RecordedDialog& dialog) {
    RunReportForHelp(u"Example", nullptr);
    EXPECT_EQ(mToolkit.mTimesBroughtToFront, 1);
    EXPECT_TRUE(dialog.mIsOpen);
  };
  RunReportForHelp(u"Example", nullptr);
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
  // Both were runs, and the first one remembers its issues only when its dialog is closed.
  EXPECT_THAT(EventSummaries(mHost),
              ElementsAre("new WARN", "new WARN", "click:unknown-value ui-displayed 1 0",
                          "click:unknown-value ui-displayed 1 0"));
  // Once it is closed the next request opens a new one.
  mToolkit.mWhileDialogIsUp = {};
  RunReportForHelp(u"Example", nullptr);
  EXPECT_EQ(mToolkit.mDialogsShown, 2);
}

TEST_F(ReportDialogTest, WithoutAToolkitThatCanDrawNothingIsShownAndNothingFails) {
  Install(CardRules("WARN", 1));
  mToolkit.mCanDraw = false;
  RunReportForHelp(u"Example", nullptr);
  EXPECT_EQ(mToolkit.mDialogsShown, 0);
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

TEST_F(ReportDialogTest, AnExceptionFromTheDialogGoesToTheDriver) {
  Install(CardRules("WARN", 1));
  mToolkit.mWhileDialogIsUp = [](RecordedDialog&) { throw std::runtime_error("toolkit"); };
  EXPECT_NO_THROW(RunReportForHelp(u"Example", nullptr));
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::`anonymous-namespace'::RunReport"));
  EXPECT_FALSE(std::filesystem::exists(mHost.Preferences() / "SCRPriorState.json"));
  // The next request is not taken for a second one.
  mToolkit.mWhileDialogIsUp = {};
  RunReportForHelp(u"Example", nullptr);
  EXPECT_EQ(mToolkit.mDialogsShown, 2);
}

}  // namespace
