// The rows of a long report, which come after the dialog was shown.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/Text.h"
#include "tests/dialogs/DialogFixture.h"
#include "tests/support/HostCalls.h"

namespace {

using qelsystemcompatibilityreport::SCRIssue;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::RecordedButton;
using testsupport::RecordedDialog;
using testsupport::RecordedIcon;
using testsupport::RecordedScrollView;
using testsupport::RecordedView;

/// So many rows are there when the dialog is shown, and so many come with a tick at most.
constexpr std::size_t kAtOnce = 40;
constexpr std::size_t kMostAtATick = 8;

class SCRDialogRowsTest : public testsupport::DialogFixture {
 protected:
  /// Each has a link of its own, and the last one alone is serious.
  static std::vector<SCRIssue> Issues(std::size_t count) {
    std::vector<SCRIssue> issues;
    for (std::size_t number = 1; number <= count; ++number)
      issues.push_back(
          VideoIssue(number == count ? "WARN" : "INFO", "https://example.com/" + std::to_string(number)));
    return issues;
  }

  static const RecordedScrollView& ListOf(const RecordedDialog& dialog) {
    return *dialog.All<RecordedScrollView>().at(0);
  }

  /// What a screen reader calls the rows up to their colon, such as "12. INFO".
  static std::vector<std::u16string> RowsOf(const RecordedDialog& dialog) {
    std::vector<std::u16string> rows;
    for (const auto& row : ListOf(dialog).mContent.mOrder) {
      const std::u16string& name = dynamic_cast<const RecordedView&>(*row).mAccessibleName;
      rows.push_back(name.substr(0, name.find(u':')));
    }
    return rows;
  }

  static std::size_t CountRows(const RecordedDialog& dialog) { return ListOf(dialog).mContent.mOrder.size(); }

  static std::vector<std::u16string> ExpectedRows(std::size_t count) {
    std::vector<std::u16string> rows;
    for (std::size_t number = 1; number <= count; ++number)
      rows.push_back(qelcore::string::UTF8to16(std::to_string(number)) +
                     (number == count ? u". WARN" : u". INFO"));
    return rows;
  }

  /// Ticks until no timer is there, and returns how often. Fails after far more ticks than rows.
  static std::size_t TickToTheEnd(RecordedDialog& dialog) {
    std::size_t ticks = 0;
    while (!dialog.mTimers.empty() && ticks < 20'000) {
      dialog.Tick();
      ++ticks;
    }
    EXPECT_THAT(dialog.mTimers, IsEmpty());
    return ticks;
  }
};

TEST_F(SCRDialogRowsTest, FewRowsNeedNoTimer) {
  for (const std::size_t count : {std::size_t{1}, std::size_t{39}, kAtOnce}) {
    SCOPED_TRACE(count);
    Show(Issues(count), [&](RecordedDialog& dialog) {
      EXPECT_EQ(RowsOf(dialog), ExpectedRows(count));
      EXPECT_THAT(dialog.mTimers, IsEmpty());
    });
  }
  const auto noTimer = [](RecordedDialog& dialog) { EXPECT_THAT(dialog.mTimers, IsEmpty()); };
  Show({}, noTimer);
  Show(Issues(300), noTimer, true);
  EXPECT_EQ(mToolkit.mDialogsShown, 5);
}

TEST_F(SCRDialogRowsTest, OneRowMoreComesWithATick) {
  Show(Issues(kAtOnce + 1), [&](RecordedDialog& dialog) {
    EXPECT_EQ(CountRows(dialog), kAtOnce);
    ASSERT_THAT(dialog.mTimers, SizeIs(1));
    EXPECT_DOUBLE_EQ(dialog.mTimers.begin()->second.mSeconds, 0.02);
    dialog.Tick();
    EXPECT_EQ(RowsOf(dialog), ExpectedRows(kAtOnce + 1));
    EXPECT_THAT(dialog.mTimers, IsEmpty());
  });
}

TEST_F(SCRDialogRowsTest, RowsComeInTheirOrderAFewAtATickUntilAllAreThere) {
  Show(Issues(300), [&](RecordedDialog& dialog) {
    EXPECT_EQ(CountRows(dialog), kAtOnce);
    while (!dialog.mTimers.empty()) {
      const std::size_t before = CountRows(dialog);
      dialog.Tick();
      ASSERT_GT(CountRows(dialog), before);
      ASSERT_LE(CountRows(dialog), before + kMostAtATick);
    }
    EXPECT_EQ(RowsOf(dialog), ExpectedRows(300));
  });
}

TEST_F(SCRDialogRowsTest, TenThousandRowsCome) {
  Show(Issues(10'000), [&](RecordedDialog& dialog) {
    EXPECT_EQ(CountRows(dialog), kAtOnce);
    EXPECT_GE(TickToTheEnd(dialog), (10'000 - kAtOnce) / kMostAtATick);
    EXPECT_EQ(RowsOf(dialog), ExpectedRows(10'000));
  });
}

TEST_F(SCRDialogRowsTest, ASeriousIssueCountsBeforeItsRowIsThere) {
  Show(Issues(300), [&](RecordedDialog& dialog) {
    EXPECT_EQ(dialog.mCloseControl->mCaption, u"Continue with known issues...");
    EXPECT_TRUE(dialog.mCloseControl->mIsVisible);
    EXPECT_TRUE(dialog.All<RecordedIcon>().front()->mIsVisible);
    EXPECT_FALSE(dialog.mOkButton->mIsVisible);
    TickToTheEnd(dialog);
    EXPECT_FALSE(dialog.mOkButton->mIsVisible);
  });
}

TEST_F(SCRDialogRowsTest, TheSizeAndThePositionAreChosenOnceFromTheFirstRows) {
  Show(Issues(300), [&](RecordedDialog& dialog) {
    const RecordedScrollView& list = ListOf(dialog);
    const qelui::Control* const first = list.mContent.mOrder.front().get();
    EXPECT_EQ(dialog.mContentSize, (qelui::Size{100, 40}));
    EXPECT_EQ(list.mScrollBarSize, (qelui::Size{100, 40}));
    EXPECT_EQ(list.mShown, first);
    EXPECT_THAT(list.mCalls, ElementsAre("SetScrollBarSize", "ScrollIntoView", "Update"));
    TickToTheEnd(dialog);
    EXPECT_EQ(dialog.mContentSize, (qelui::Size{100, 40}));
    EXPECT_EQ(list.mShown, first);
    // Whoever scrolled meanwhile stays there.
    const std::vector<std::string> later(list.mCalls.begin() + 3, list.mCalls.end());
    EXPECT_THAT(later, Each("Update"));
  });
}

TEST_F(SCRDialogRowsTest, RowsThatCameLaterAreLikeTheOthers) {
  Show(Issues(100), [&](RecordedDialog& dialog) {
    TickToTheEnd(dialog);
    EXPECT_TRUE(dynamic_cast<const RecordedView&>(*ListOf(dialog).mContent.mOrder.back()).mHasBorder);
    const std::vector<RecordedButton*> buttons = testsupport::AllOf<RecordedButton>(ListOf(dialog).mContent);
    ASSERT_THAT(buttons, SizeIs(100));
    for (const RecordedButton* const button : buttons) EXPECT_EQ(button->mWidth, 70);
    EXPECT_EQ(buttons.back()->mCaption, u"Fix...");
    EXPECT_EQ(buttons.back()->mAccessibleName, u"Fix... 100. [Video] Card v.1.2.3.4");
  });
}

TEST_F(SCRDialogRowsTest, ActionsBelongToTheirRowsWheneverTheyCame) {
  Show(Issues(100), [&](RecordedDialog& dialog) {
    const auto press = [&](std::size_t row) {
      dialog.Press(*testsupport::AllOf<RecordedButton>(ListOf(dialog).mContent).at(row - 1));
    };
    press(1);
    press(kAtOnce);
    dialog.Tick();
    press(2);
    press(kAtOnce + 1);
    TickToTheEnd(dialog);
    press(100);
  });
  EXPECT_THAT(mOpened, ElementsAre("https://example.com/1", "https://example.com/40", "https://example.com/2",
                                   "https://example.com/41", "https://example.com/100"));
}

TEST_F(SCRDialogRowsTest, ClosingEarlyEndsIt) {
  Show(Issues(10'000), [&](RecordedDialog& dialog) {
    dialog.Tick();
    dialog.Press(u"Continue with known issues...");
    EXPECT_FALSE(dialog.mIsOpen);
  });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
  EXPECT_EQ(mToolkit.mDialogsAlive, 0);
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

TEST_F(SCRDialogRowsTest, AnExportBeforeAllRowsAreThereHasTheWholeReport) {
  const auto path = mHost.Files().Path() / "report.txt";
  mToolkit.mSaveAsAnswer = qelcore::string::UTF8to16(path.string());
  Show(Issues(300), [&](RecordedDialog& dialog) {
    // The rows go on coming while the file is asked for and written.
    mWrite = [&](const qelcore::filesupport::File& file) {
      dialog.Tick();
      qelcore::filesupport::OPlatformByteStream(file).Write("the report");
    };
    dialog.Press(u"Export Report...");
    EXPECT_GT(CountRows(dialog), kAtOnce);
    EXPECT_LT(CountRows(dialog), 300U);
    TickToTheEnd(dialog);
    EXPECT_EQ(RowsOf(dialog), ExpectedRows(300));
  });
  EXPECT_EQ(mHost.Files().Read("report.txt"), "the report");
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 1U);
}

TEST_F(SCRDialogRowsTest, ASecondRequestWhileRowsComeBringsTheDialogToTheFront) {
  Show(Issues(300), [&](RecordedDialog& dialog) {
    dialog.Tick();
    const std::size_t before = CountRows(dialog);
    qelsystemcompatibilityreport::RunReportDialog(nullptr, u"Example", Issues(5), {}, false);
    EXPECT_EQ(mToolkit.mTimesBroughtToFront, 1);
    EXPECT_EQ(CountRows(dialog), before);
    TickToTheEnd(dialog);
    EXPECT_EQ(RowsOf(dialog), ExpectedRows(300));
  });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(SCRDialogRowsTest, ATimerThatIsNotItsOwnAddsNothing) {
  Show(Issues(100), [&](RecordedDialog& dialog) {
    const auto [timer, own] = *dialog.mTimers.begin();
    own.mOnTick(timer + 1);
    EXPECT_EQ(CountRows(dialog), kAtOnce);
    EXPECT_THAT(dialog.mTimers, SizeIs(1));
  });
}

TEST_F(SCRDialogRowsTest, WhatATickThrowsReachesTheToolkit) {
  Show(Issues(100), [&](RecordedDialog& dialog) {
    testsupport::SetHostCallHook([](std::string_view function) {
      if (function == "View::AddIcon") throw std::runtime_error("no memory for pictures");
    });
    EXPECT_THROW(dialog.Tick(), std::runtime_error);
    testsupport::SetHostCallHook({});
  });
}

TEST_F(SCRDialogRowsTest, ALateTickAfterTheLastRowAddsNothing) {
  Show(Issues(41), [&](RecordedDialog& dialog) {
    const auto [timer, own] = *dialog.mTimers.begin();
    own.mOnTick(timer);
    own.mOnTick(timer);
    EXPECT_EQ(RowsOf(dialog), ExpectedRows(41));
  });
}

}  // namespace
