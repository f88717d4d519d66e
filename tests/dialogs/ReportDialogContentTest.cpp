// What the dialog says, without a window.
#include "qelsystemcompatibilityreport/dialogs/ReportDialogContent.h"

#include <gmock/gmock.h>

#include "tests/dialogs/DialogFixture.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponentType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::Component;
using testsupport::Issue;
using testsupport::Property;
using testsupport::RuleText;

class ReportDialogContentTest : public testsupport::DialogFixture {
 protected:
  static ReportDialogContent Make(const std::vector<SCRIssue>& issues, bool blocklistIsMissing = false) {
    return MakeReportDialogContent(u"Example", issues, blocklistIsMissing);
  }
};

TEST_F(ReportDialogContentTest, TheTextsThatAlwaysStandThere) {
  const ReportDialogContent content = Make({});
  EXPECT_EQ(content.mCaption, u"Example");
  EXPECT_EQ(content.mTitle, u"System Compatibility Report");
  EXPECT_EQ(content.mNote,
            u"If you continue with known issues, you may experience performance degradation, instability and "
            u"data loss.");
  EXPECT_EQ(content.mExportCaption, u"Export Report...");
  EXPECT_EQ(content.mOkCaption, u"OK");
  EXPECT_EQ(content.mContinueCaption, u"Continue with known issues...");
  EXPECT_THAT(content.mActionCaptions, ElementsAre(u"Fix...", u"Info..."));
}

TEST_F(ReportDialogContentTest, ANamelessApplicationHasTheTitleAsCaption) {
  EXPECT_EQ(MakeReportDialogContent(u"", {}, false).mCaption, u"System Compatibility Report");
}

TEST_F(ReportDialogContentTest, WhatStandsInPlaceOfRows) {
  EXPECT_EQ(Make({}).mInstead, u"No conflicts to report.");
  EXPECT_EQ(Make({}, true).mInstead, u"Blocklist not present.");
  EXPECT_EQ(Make({VideoIssue("WARN")}).mInstead, u"");
  const ReportDialogContent missing = Make({VideoIssue("WARN")}, true);
  EXPECT_EQ(missing.mInstead, u"Blocklist not present.");
  EXPECT_THAT(missing.mRows, IsEmpty());
  EXPECT_FALSE(missing.mIsSerious);
}

TEST_F(ReportDialogContentTest, EveryKind) {
  const struct {
    SCRIssue mIssue;
    const char16_t* mHeading;
    const char16_t* mComponent;
  } rows[] = {
      {Issue(Component(OSComponentType::kOS, "Example OS", "10.0.1"),
             RuleText("OS", "Example OS", "WARN", "m")),
       u"Unsupported Operating System", u"[Operating System] Example OS v.10.0.1.0"},
      {Issue(Component(OSComponentType::kVideo, "Card", "1.2.3.4"), RuleText("Video", "Card", "WARN", "m")),
       u"Unsupported Video Driver", u"[Video] Card v.1.2.3.4"},
      {Issue(Component(OSComponentType::kAudio, "Speakers", "5"), RuleText("Audio", "Speakers", "WARN", "m")),
       u"Unsupported Audio Driver", u"[Audio] Speakers v.5.0.0.0"},
      {Issue(Component(OSComponentType::kNetwork, "Net", ""), RuleText("Network", "Net", "WARN", "m")),
       u"Unsupported Network Driver", u"[Network] Net"},
      {Issue(Component(OSComponentType::kFile, "/opt/a", "2.0"), RuleText("File", "/opt/a", "WARN", "m")),
       u"Unsupported File or Directory", u"[File System] /opt/a v.2.0.0.0"},
      {Issue(Property("memory.mb", "2048"), RuleText("Property", "memory.mb", "WARN", "m")),
       u"Unsupported System Property", u"[Property] memory.mb : 2048"},
      {Issue(Component(OSComponentType::kInvalid, "What", "1"), RuleText("Video", "What", "WARN", "m")),
       u"Unsupported Driver", u"[Unknown] What v.1.0.0.0"},
  };
  for (const auto& row : rows) {
    const ReportDialogContent content = Make({row.mIssue});
    ASSERT_THAT(content.mRows, SizeIs(1));
    EXPECT_EQ(content.mRows[0].mHeading, row.mHeading);
    EXPECT_EQ(content.mRows[0].mComponent, row.mComponent);
  }
}

TEST_F(ReportDialogContentTest, EveryLevel) {
  const struct {
    const char* mLevel;
    const char16_t* mText;
    qelui::IconKind mIcon;
    const char16_t* mAction;
    bool mIsSerious;
  } rows[] = {{"INFO", u"INFO", qelui::IconKind::kInformation, u"Info...", false},
              {"WARN", u"WARN", qelui::IconKind::kWarning, u"Fix...", true},
              {"ERROR", u"ERROR", qelui::IconKind::kError, u"Fix...", true},
              {"FATAL", u"FATAL", qelui::IconKind::kError, u"Fix...", true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mLevel);
    const ReportDialogContent content = Make({VideoIssue("INFO"), VideoIssue(row.mLevel)});
    EXPECT_EQ(content.mRows[1].mLevel, row.mText);
    EXPECT_EQ(content.mRows[1].mIcon, row.mIcon);
    EXPECT_EQ(content.mRows[1].mActionCaption, row.mAction);
    EXPECT_EQ(content.mIsSerious, row.mIsSerious);
  }
}

TEST_F(ReportDialogContentTest, TextsOfABlocklistAreTexts) {
  const ReportDialogContent content =
      Make({VideoIssue("WARN", "", "<b>100 %s</b> &amp; M\xc3\xbcller\\nsecond line \xf0\x9f\x98\x80")});
  EXPECT_EQ(content.mRows[0].mMessage, u"<b>100 %s</b> &amp; M\u00fcller\nsecond line \U0001F600");
}

TEST_F(ReportDialogContentTest, TheApplicationsLanguage) {
  qelcore::host::SetDirectories({.mPreferences = mHost.Preferences().string(),
                                 .mApplication = std::string(QELSCR_SOURCE_DIR) + "/data",
                                 .mDocuments = {},
                                 .mState = mHost.Preferences().string()});
  qelcore::host::SetApplicationLanguage("de_DE");
  const ReportDialogContent content = Make({VideoIssue("WARN")});
  EXPECT_EQ(content.mTitle, u"Systemkompatibilit\u00e4tsbericht");
  EXPECT_EQ(content.mRows[0].mHeading, u"Nicht unterst\u00fctzter Grafiktreiber");
  EXPECT_EQ(content.mRows[0].mActionCaption, u"Beheben ...");
}

}  // namespace
