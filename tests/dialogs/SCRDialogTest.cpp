// The report dialog as its user meets it.
#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/dialogs/DialogFixture.h"

namespace {

using namespace qelsystemcompatibilityreport;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testsupport::RecordedButton;
using testsupport::RecordedDialog;
using testsupport::RecordedIcon;
using testsupport::RecordedScrollView;
using testsupport::RecordedText;
using testsupport::RecordedView;

using SCRDialogTest = testsupport::DialogFixture;

constexpr const char16_t* kNote =
    u"If you continue with known issues, you may experience performance degradation, instability and data "
    u"loss.";

const RecordedText& TitleOf(const RecordedDialog& dialog) {
  return *dialog.All<RecordedText>().front();
}

/// The hot text or button with that caption, whether it is seen or not.
const RecordedButton& ButtonOf(const RecordedDialog& dialog, const std::u16string& caption) {
  for (const RecordedButton* const button : dialog.All<RecordedButton>()) {
    if (button->mCaption == caption) return *button;
  }
  throw std::out_of_range("there is no such button");
}

/// OK is there to be chosen, and the acknowledgement is not.
void ExpectNothingToAcknowledge(const RecordedDialog& dialog) {
  const RecordedButton& goOn = ButtonOf(dialog, u"Continue with known issues...");
  EXPECT_FALSE(goOn.mIsVisible);
  EXPECT_FALSE(goOn.mIsActive);
  const RecordedButton& ok = ButtonOf(dialog, u"OK");
  EXPECT_TRUE(ok.mIsVisible);
  EXPECT_TRUE(ok.mIsActive);
}

// ---- What is shown

TEST_F(SCRDialogTest, WithoutBlocklist) {
  Show(
      {},
      [&](RecordedDialog& dialog) {
        EXPECT_THAT(dialog.VisibleTexts(),
                    ElementsAre(u"System Compatibility Report", u"Blocklist not present."));
        EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"Export Report...", u"OK"));
        EXPECT_THAT(dialog.All<RecordedScrollView>(), IsEmpty());
        ExpectNothingToAcknowledge(dialog);
        EXPECT_EQ(dialog.mTitle, u"Example");
        EXPECT_EQ(dialog.mParent, testsupport::SomeWindow());
        dialog.Press(u"OK");
        EXPECT_FALSE(dialog.mIsOpen);
      },
      true);
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(SCRDialogTest, WithoutIssues) {
  Show({}, [&](RecordedDialog& dialog) {
    EXPECT_THAT(dialog.VisibleTexts(),
                ElementsAre(u"System Compatibility Report", u"No conflicts to report."));
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"Export Report...", u"OK"));
    ExpectNothingToAcknowledge(dialog);
    EXPECT_FALSE(TitleOf(dialog).mColor.has_value());
  });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(SCRDialogTest, InfosAloneAreClosedWithOK) {
  Show({VideoIssue("INFO"), VideoIssue("INFO")}, [&](RecordedDialog& dialog) {
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"Info...", u"Info...", u"Export Report...", u"OK"));
    ExpectNothingToAcknowledge(dialog);
    EXPECT_THAT(dialog.VisibleTexts(), Not(Contains(kNote)));
    EXPECT_FALSE(TitleOf(dialog).mColor.has_value());
    EXPECT_FALSE(dialog.All<RecordedIcon>().front()->mIsVisible);
    dialog.Press(u"OK");
    EXPECT_FALSE(dialog.mIsOpen);
  });
}

TEST_F(SCRDialogTest, OneSeriousIssueHasToBeAcknowledged) {
  for (const char* const level : {"WARN", "ERROR", "FATAL"}) {
    SCOPED_TRACE(level);
    Show({VideoIssue(level), VideoIssue("INFO")}, [&](RecordedDialog& dialog) {
      EXPECT_THAT(dialog.VisibleButtons(),
                  ElementsAre(u"Fix...", u"Info...", u"Export Report...", u"Continue with known issues..."));
      EXPECT_THAT(dialog.VisibleTexts(), Contains(kNote));
      EXPECT_EQ(TitleOf(dialog).mText, u"System Compatibility Report");
      EXPECT_EQ(TitleOf(dialog).mColor, (qelui::Color{0.9607843, 0.2352941, 0.2352941, 1.0}));
      EXPECT_TRUE(dialog.All<RecordedIcon>().front()->mIsVisible);
      // The hidden button cannot be chosen either.
      EXPECT_FALSE(dialog.mOkButton->mIsVisible);
      EXPECT_FALSE(dialog.mOkButton->mIsActive);
      dialog.Press(u"Continue with known issues...");
      EXPECT_FALSE(dialog.mIsOpen);
    });
  }
}

TEST_F(SCRDialogTest, AcknowledgingLooksLikeALink) {
  Show({VideoIssue("WARN"), VideoIssue("INFO")}, [&](RecordedDialog& dialog) {
    for (const RecordedButton* const button : dialog.All<RecordedButton>())
      EXPECT_EQ(button->mIsHotText, button->mCaption == u"Continue with known issues...");
  });
}

TEST_F(SCRDialogTest, EscapeActsAsTheClosingControlThatIsSeen) {
  Show({VideoIssue("INFO")},
       [&](RecordedDialog& dialog) { EXPECT_EQ(dialog.mCloseControl, dialog.mOkButton); });
  Show({VideoIssue("WARN")}, [&](RecordedDialog& dialog) {
    EXPECT_EQ(dialog.mCloseControl->mCaption, u"Continue with known issues...");
    dialog.PressEscape();
    EXPECT_FALSE(dialog.mIsOpen);
  });
}

TEST_F(SCRDialogTest, RowsAreInTheOrderOfTheIssues) {
  Show({VideoIssue("FATAL", "", "first"), VideoIssue("WARN", "", "second"), VideoIssue("INFO", "", "third")},
       [&](RecordedDialog& dialog) {
         EXPECT_THAT(
             dialog.VisibleTexts(),
             ElementsAre(u"System Compatibility Report", kNote, u"FATAL \u2013 Unsupported Video Driver",
                         u"[Video] Card v.1.2.3.4", u"first", u"WARN \u2013 Unsupported Video Driver",
                         u"[Video] Card v.1.2.3.4", u"second", u"INFO \u2013 Unsupported Video Driver",
                         u"[Video] Card v.1.2.3.4", u"third"));
       });
}

TEST_F(SCRDialogTest, TheListAndEveryRowHaveABorder) {
  const auto borders = [](const RecordedDialog& dialog) {
    const auto views = dialog.All<RecordedView>();
    return std::count_if(views.begin(), views.end(),
                         [](const RecordedView* view) { return view->mHasBorder; });
  };
  Show({VideoIssue("WARN"), VideoIssue("INFO")}, [&](RecordedDialog& dialog) {
    EXPECT_EQ(borders(dialog), 3);
    const RecordedScrollView& rows = *dialog.All<RecordedScrollView>().at(0);
    for (const auto& row : rows.mContent.mOrder)
      EXPECT_TRUE(dynamic_cast<const RecordedView&>(*row).mHasBorder);
  });
  Show({}, [&](RecordedDialog& dialog) { EXPECT_EQ(borders(dialog), 1); });
}

TEST_F(SCRDialogTest, IconsTellTheLevel) {
  Show({VideoIssue("FATAL"), VideoIssue("ERROR"), VideoIssue("WARN"), VideoIssue("INFO")},
       [&](RecordedDialog& dialog) {
         std::vector<qelui::IconKind> kinds;
         std::vector<std::u16string> names;
         for (const RecordedIcon* const icon : dialog.All<RecordedIcon>()) {
           kinds.push_back(icon->mKind);
           names.push_back(icon->mAccessibleName);
         }
         // The first one stands beside the title.
         EXPECT_THAT(kinds,
                     ElementsAre(qelui::IconKind::kWarning, qelui::IconKind::kError, qelui::IconKind::kError,
                                 qelui::IconKind::kWarning, qelui::IconKind::kInformation));
         EXPECT_THAT(names, ElementsAre(u"Warning", u"FATAL", u"ERROR", u"WARN", u"INFO"));
       });
}

TEST_F(SCRDialogTest, RowsAreMeasuredAndScrolledToTheFirst) {
  Show(std::vector<SCRIssue>(12, VideoIssue("INFO")), [&](RecordedDialog& dialog) {
    ASSERT_THAT(dialog.All<RecordedScrollView>(), SizeIs(1));
    const RecordedScrollView& rows = *dialog.All<RecordedScrollView>()[0];
    EXPECT_THAT(rows.mContent.mOrder, SizeIs(12));
    EXPECT_EQ(dialog.mContentSize, (qelui::Size{100, 12}));
    EXPECT_EQ(rows.mScrollBarSize, (qelui::Size{100, 12}));
    EXPECT_EQ(rows.mShown, rows.mContent.mOrder.front().get());
    EXPECT_THAT(rows.mCalls, ElementsAre("SetScrollBarSize", "ScrollIntoView", "Update"));
  });
}

TEST_F(SCRDialogTest, AllButtonsOfRowsHaveTheWidthOfTheWiderCaption) {
  Show({VideoIssue("WARN"), VideoIssue("INFO")}, [&](RecordedDialog& dialog) {
    for (RecordedButton* const button : dialog.All<RecordedButton>()) {
      if (button->mCaption == u"Fix..." || button->mCaption == u"Info...") {
        EXPECT_EQ(button->mWidth, 70);
      }
    }
  });
}

TEST_F(SCRDialogTest, EveryControlHasANameThatTellsItFromOthers) {
  const auto other =
      testsupport::Issue(testsupport::Component(qelcore::utility::OSComponentType::kAudio, "Speakers", "5"),
                         testsupport::RuleText("Audio", "Speakers", "WARN", "m"));
  // Two are about the same component, and say the same.
  Show({VideoIssue("WARN"), VideoIssue("WARN"), other}, [&](RecordedDialog& dialog) {
    std::vector<std::u16string> buttons;
    for (const RecordedButton* const button : dialog.All<RecordedButton>())
      buttons.push_back(button->mAccessibleName.empty() ? button->mCaption : button->mAccessibleName);
    EXPECT_THAT(buttons, ElementsAre(u"Fix... 1. [Video] Card v.1.2.3.4", u"Fix... 2. [Video] Card v.1.2.3.4",
                                     u"Fix... 3. [Audio] Speakers v.5.0.0.0", u"Export Report...",
                                     u"Continue with known issues...", u"OK"));
    std::vector<std::u16string> rows;
    for (const auto& row : dialog.All<RecordedScrollView>().at(0)->mContent.mOrder)
      rows.push_back(dynamic_cast<const RecordedView&>(*row).mAccessibleName);
    EXPECT_THAT(rows, ElementsAre(u"1. WARN: Unsupported Video Driver, [Video] Card v.1.2.3.4",
                                  u"2. WARN: Unsupported Video Driver, [Video] Card v.1.2.3.4",
                                  u"3. WARN: Unsupported Audio Driver, [Audio] Speakers v.5.0.0.0"));
  });
}

// ---- Links

TEST_F(SCRDialogTest, ALinkIsOpenedCountedAndLogged) {
  Show({VideoIssue("FATAL", "https://example.com/\xc3\xbc")}, [&](RecordedDialog& dialog) {
    dialog.Press(u"Fix...");
    dialog.Press(u"Fix...");
    EXPECT_TRUE(dialog.mIsOpen);
  });
  EXPECT_THAT(mOpened, ElementsAre("https://example.com/\xc3\xbc", "https://example.com/\xc3\xbc"));
  EXPECT_THAT(Statistics().mClickedURLs, ElementsAre("https://example.com/\xc3\xbc"));
  ASSERT_THAT(mHost.mEvents, SizeIs(2));
  const SCRIssue issue = VideoIssue("FATAL", "https://example.com/\xc3\xbc");
  EXPECT_THAT(testsupport::Lines(mHost.mEvents[0]),
              ElementsAre("OPERATIONAL|Stability|continue|system-compatibility-report-fix",
                          "content/status=ongoing", "content/type=Video", "content/name=Card",
                          "content/id=" + issue.GetID(), "event/error_type=FATAL",
                          "event/error_desc=Update it.", "event/url=https://example.com/\xc3\xbc",
                          "event/value is none", "content/mimetype=1.2.3.4", "qel/content_version=1.2.3.4"));
}

TEST_F(SCRDialogTest, AnInfoOpensItsLinkAsWell) {
  Show({VideoIssue("INFO")}, [](RecordedDialog& dialog) { dialog.Press(u"Info..."); });
  EXPECT_THAT(mOpened, ElementsAre("https://example.com/a"));
}

TEST_F(SCRDialogTest, ABrowserThatRefusesChangesNothing) {
  mBrowserOpens = false;
  Show({VideoIssue("WARN")}, [](RecordedDialog& dialog) {
    dialog.Press(u"Fix...");
    EXPECT_TRUE(dialog.mIsOpen);
  });
  EXPECT_THAT(mOpened, ElementsAre("https://example.com/a"));
  EXPECT_THAT(Statistics().mClickedURLs, ElementsAre("https://example.com/a"));
  EXPECT_THAT(mHost.mEvents, SizeIs(1));
}

TEST_F(SCRDialogTest, APropertysLinkIsLoggedWithItsValue) {
  const auto issue = testsupport::Issue(
      testsupport::Property("memory.mb", "2048"),
      testsupport::RuleText("Property", "memory.mb", "WARN", "m", "https://example.com/p"));
  Show({issue}, [](RecordedDialog& dialog) { dialog.Press(u"Fix..."); });
  ASSERT_THAT(mHost.mEvents, SizeIs(1));
  const auto lines = testsupport::Lines(mHost.mEvents[0]);
  EXPECT_THAT(std::vector<std::string>(lines.end() - 3, lines.end()),
              ElementsAre("event/value=2048", "content/mimetype is none", "qel/content_version is none"));
}

TEST_F(SCRDialogTest, WhatIsNoWebAddressIsNotOpened) {
  for (const char* const url : {"", "ftp://example.com", "file:///etc/passwd", "javascript:alert(1)",
                                "example.com", "https://", "http:// example.com", "mailto:a@example.com"}) {
    SCOPED_TRACE(url);
    Show({VideoIssue("WARN", url)}, [](RecordedDialog& dialog) {
      dialog.Press(u"Fix...");
      EXPECT_TRUE(dialog.mIsOpen);
    });
  }
  EXPECT_THAT(mOpened, IsEmpty());
  EXPECT_THAT(Statistics().mClickedURLs, IsEmpty());
  EXPECT_THAT(mHost.mEvents, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

// ---- Calls from inside the dialog

/// No run is behind this dialog. One that is overwrites the choice when it saves.
TEST_F(SCRDialogTest, TheServiceCanBeCalledFromInsideADialogWithoutARun) {
  Show({VideoIssue("WARN")}, [](RecordedDialog&) {
    EnableReports(false);
    EnableReports(true);
    SetAllowDisplayReportAtStartup(false);
  });
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
}

}  // namespace
