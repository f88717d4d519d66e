// Saving the report from its dialog.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "platform/qelcore/Text.h"
#include "tests/dialogs/DialogFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::RecordedDialog;

class SCRDialogExportTest : public testsupport::DialogFixture {
 protected:
  SCRDialogExportTest() { Answer("report.txt"); }

  void Answer(const char* name) {
    mToolkit.mSaveAsAnswer = qelcore::string::UTF8to16((mHost.Files().Path() / name).string());
  }

  void Export() {
    Show({VideoIssue("INFO")}, [this](RecordedDialog& dialog) {
      dialog.Press(u"Export Report...");
      EXPECT_TRUE(dialog.mIsOpen);
      // What comes up stands over the dialog.
      EXPECT_EQ(mToolkit.mSaveAsParents.back(), &dialog);
      for (const auto& message : mToolkit.mErrorMessages) EXPECT_EQ(message.mParent, dialog.AsWindow());
    });
  }
};

TEST_F(SCRDialogExportTest, TheReportIsWrittenWhereTheUserSays) {
  Export();
  EXPECT_EQ(mHost.Files().Read("report.txt"), "the report");
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 1U);
  ASSERT_THAT(mHost.mEvents, SizeIs(1));
  EXPECT_THAT(testsupport::Lines(mHost.mEvents[0]),
              ElementsAre("OPERATIONAL|Stability|success|export-system-compatibility-report"));
  ASSERT_THAT(mToolkit.mSaveAsDialogs, SizeIs(1));
  const qelui::OS_FileSaveAsDialog& asked = mToolkit.mSaveAsDialogs[0];
  EXPECT_EQ(asked.GetTitle(), u"Save System Compatibility Report As");
  EXPECT_EQ(asked.GetFileType().mDescription, u"Text File");
  EXPECT_EQ(asked.GetFileType().mExtension, u"txt");
  EXPECT_EQ(asked.GetDefaultName(), u"SystemCompatibilityReport.txt");
  EXPECT_EQ(asked.GetStartDirectory(),
            qelcore::string::UTF8to16((mHost.Files().Path() / "documents").string()));
  EXPECT_THAT(mToolkit.mErrorMessages, IsEmpty());
}

TEST_F(SCRDialogExportTest, CancellingChangesNothing) {
  mToolkit.mSaveAsAnswer = u"";
  Export();
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 0U);
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mToolkit.mErrorMessages, IsEmpty());
}

TEST_F(SCRDialogExportTest, EverySaveCounts) {
  Export();
  Export();
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 2U);
}

TEST_F(SCRDialogExportTest, AFailureIsToldAndDoesNotCount) {
  Answer("missing/report.txt");
  Export();
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 0U);
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::SCRDialog::Export"));
  ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
  EXPECT_EQ(mToolkit.mErrorMessages[0].mTitle, u"System Compatibility Report");
  EXPECT_EQ(
      mToolkit.mErrorMessages[0].mMessage,
      u"The report could not be saved as " + mToolkit.mSaveAsAnswer + u". Choose another place or name.");
}

TEST_F(SCRDialogExportTest, AWriterThatRemovesTheFileDoesNotCount) {
  mWrite = [](const qelcore::filesupport::File& file) { file.Delete(); };
  Export();
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 0U);
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  EXPECT_THAT(mToolkit.mErrorMessages, SizeIs(1));
}

TEST_F(SCRDialogExportTest, AWriterThatThrowsDoesNotCount) {
  mWrite = [](const qelcore::filesupport::File&) { throw std::runtime_error("disk full"); };
  Export();
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 0U);
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("disk full"));
  EXPECT_THAT(mToolkit.mErrorMessages, SizeIs(1));
}

TEST_F(SCRDialogExportTest, WithoutAWriterThereIsNothingToExport) {
  mToolkit.mWhileDialogIsUp = [](RecordedDialog& dialog) {
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"OK"));
  };
  qelsystemcompatibilityreport::RunReportDialog(nullptr, u"Example", {}, {}, false);
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

}  // namespace
