// What the dialog says, without a window.
#include "qelsystemcompatibilityreport/dialogs/ReportDialogContent.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/qelcore/Text.h"
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

TEST_F(ReportDialogContentTest, WhatAScreenReaderSays) {
  const ReportDialogContent content = Make({VideoIssue("FATAL"), VideoIssue("INFO")});
  EXPECT_EQ(content.mIconName, u"Warning");
  EXPECT_EQ(content.mRows[0].mAccessibleName, u"1. FATAL: Unsupported Video Driver, [Video] Card v.1.2.3.4");
  EXPECT_EQ(content.mRows[0].mActionAccessibleName, u"Fix... 1. [Video] Card v.1.2.3.4");
  EXPECT_EQ(content.mRows[1].mAccessibleName, u"2. INFO: Unsupported Video Driver, [Video] Card v.1.2.3.4");
  EXPECT_EQ(content.mRows[1].mActionAccessibleName, u"Info... 2. [Video] Card v.1.2.3.4");
}

// ---- Keys
//
// The catalogue of these tests translates every key to its own path, so that the text shows where it came
// from.

class ReportDialogKeysTest : public ReportDialogContentTest {
 protected:
  ReportDialogKeysTest() {
    std::string catalogue;
    for (const char* const name : {"kTitleText",
                                   "kWarningIconText",
                                   "kNoConflictsText",
                                   "kNoBlocklistText",
                                   "kConflictNoteText",
                                   "kExportReportText",
                                   "kOKButtonText",
                                   "kContinueHotText",
                                   "kSaveAsText",
                                   "kFileDescription",
                                   "kCTAFix",
                                   "kCTAInfo",
                                   "kUnsupportedOS",
                                   "kUnsupportedVideoDriver",
                                   "kUnsupportedAudioDriver",
                                   "kUnsupportedNetworkDriver",
                                   "kUnsupportedFile",
                                   "kUnsupportedPropertyText",
                                   "kUnsupportedUnknownDriver",
                                   "kMatchOSText",
                                   "kMatchVideoText",
                                   "kMatchAudioText",
                                   "kMatchNetworkText",
                                   "kMatchFileText",
                                   "kMatchPropertyText",
                                   "kMatchUnknownText",
                                   "kVersionPrefixText",
                                   "kPropertyValueSeparatorText",
                                   "kExportFailedText"}) {
      const std::string path = std::string("$$$/qel/scr/") + name;
      catalogue += (catalogue.empty() ? "" : ",") + ("\"" + path + "\":\"" + path + "\"");
    }
    mHost.Files().Write("application/translations/en_US.json", "{" + catalogue + "}");
  }
};

TEST_F(ReportDialogKeysTest, TextsOfTheDialog) {
  const ReportDialogContent content = Make({});
  EXPECT_EQ(content.mTitle, u"$$$/qel/scr/kTitleText");
  EXPECT_EQ(content.mIconName, u"$$$/qel/scr/kWarningIconText");
  EXPECT_EQ(content.mNote, u"$$$/qel/scr/kConflictNoteText");
  EXPECT_EQ(content.mInstead, u"$$$/qel/scr/kNoConflictsText");
  EXPECT_EQ(Make({}, true).mInstead, u"$$$/qel/scr/kNoBlocklistText");
  EXPECT_EQ(content.mExportCaption, u"$$$/qel/scr/kExportReportText");
  EXPECT_EQ(content.mOkCaption, u"$$$/qel/scr/kOKButtonText");
  EXPECT_EQ(content.mContinueCaption, u"$$$/qel/scr/kContinueHotText");
  EXPECT_THAT(content.mActionCaptions, ElementsAre(u"$$$/qel/scr/kCTAFix", u"$$$/qel/scr/kCTAInfo"));
}

TEST_F(ReportDialogKeysTest, TextsOfEveryKind) {
  const struct {
    OSComponentType mType;
    std::u16string mHeading;
    std::u16string mLabel;
  } rows[] = {{OSComponentType::kOS, u"kUnsupportedOS", u"kMatchOSText"},
              {OSComponentType::kVideo, u"kUnsupportedVideoDriver", u"kMatchVideoText"},
              {OSComponentType::kAudio, u"kUnsupportedAudioDriver", u"kMatchAudioText"},
              {OSComponentType::kNetwork, u"kUnsupportedNetworkDriver", u"kMatchNetworkText"},
              {OSComponentType::kFile, u"kUnsupportedFile", u"kMatchFileText"},
              {OSComponentType::kInvalid, u"kUnsupportedUnknownDriver", u"kMatchUnknownText"}};
  for (const auto& row : rows) {
    const ReportDialogContent content =
        Make({Issue(Component(row.mType, "name", "1"), RuleText("Video", "name", "WARN", "m"))});
    EXPECT_EQ(content.mRows.at(0).mHeading, u"$$$/qel/scr/" + row.mHeading);
    EXPECT_EQ(content.mRows.at(0).mComponent,
              u"[$$$/qel/scr/" + row.mLabel + u"] name$$$/qel/scr/kVersionPrefixText1.0.0.0");
  }
  const ReportDialogContent content =
      Make({Issue(Property("name", "2"), RuleText("Property", "name", "WARN", "m"))});
  EXPECT_EQ(content.mRows.at(0).mHeading, u"$$$/qel/scr/kUnsupportedPropertyText");
  EXPECT_EQ(content.mRows.at(0).mComponent,
            u"[$$$/qel/scr/kMatchPropertyText] name$$$/qel/scr/kPropertyValueSeparatorText2");
}

TEST_F(ReportDialogKeysTest, TextsOfTheExport) {
  mToolkit.mSaveAsAnswer = qelcore::string::UTF8to16((mHost.Files().Path() / "missing/report.txt").string());
  Show({}, [](testsupport::RecordedDialog& dialog) { dialog.Press(u"$$$/qel/scr/kExportReportText"); });
  ASSERT_THAT(mToolkit.mSaveAsDialogs, SizeIs(1));
  EXPECT_EQ(mToolkit.mSaveAsDialogs[0].GetTitle(), u"$$$/qel/scr/kSaveAsText");
  EXPECT_EQ(mToolkit.mSaveAsDialogs[0].GetFileType().mDescription, u"$$$/qel/scr/kFileDescription");
  ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
  EXPECT_EQ(mToolkit.mErrorMessages[0].mTitle, u"$$$/qel/scr/kTitleText");
  EXPECT_EQ(mToolkit.mErrorMessages[0].mMessage, u"$$$/qel/scr/kExportFailedText");
}

// ---- Languages

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
