// The optimizer dialog as its user meets it.
#include <gmock/gmock.h>

#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelui/HostSetup.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "tests/optimizer/ScriptedOptimization.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using enum AppOptimizationStatus;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testsupport::RecordedButton;
using testsupport::RecordedDialog;
using testsupport::RecordedProgress;
using testsupport::RecordedTree;
using testsupport::ScriptedOptimization;

class AppOptimizerDialogTest : public testing::Test {
 protected:
  std::shared_ptr<ScriptedOptimization> Register(const char* name,
                                                 std::deque<AppOptimizationStatus> determine = {}) {
    auto optimization = std::make_shared<ScriptedOptimization>(name, mCalls);
    optimization->mAnswers["determine"] = std::move(determine);
    EXPECT_TRUE(RegisterAppOptimization(optimization));
    return optimization;
  }

  /// Opens the dialog while `whileUp` runs.
  void Open(std::function<void(RecordedDialog&)> whileUp = {}) {
    mToolkit.mWhileDialogIsUp = std::move(whileUp);
    RunAppOptimizer(testsupport::SomeWindow());
  }

  static RecordedTree& TreeOf(RecordedDialog& dialog) { return *dialog.All<RecordedTree>().at(0); }
  static bool IsBusy(RecordedDialog& dialog) { return dialog.All<RecordedProgress>().at(0)->mIsVisible; }

  testsupport::TestHost mHost;
  testsupport::RecordingUserInterface mToolkit;
  std::vector<std::string> mCalls;
};

// ---- What is shown

TEST_F(AppOptimizerDialogTest, WithoutOptimizations) {
  Open([&](RecordedDialog& dialog) {
    EXPECT_EQ(dialog.mTitle, u"Application Optimizer");
    EXPECT_EQ(dialog.mParent, testsupport::SomeWindow());
    EXPECT_THAT(dialog.VisibleTexts(), ElementsAre(u"Application Optimizer", u"0 of 0 selected"));
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"Restore system defaults", u"Ignore"));
    EXPECT_FALSE(IsBusy(dialog));
    EXPECT_THAT(dialog.mTimers, IsEmpty());
  });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(AppOptimizerDialogTest, EveryOptimizationHasARow) {
  Register("a");
  Register("b", {OptimizationNotNeeded});
  Open([&](RecordedDialog& dialog) {
    const auto row = [](const char16_t* name, bool isChecked, const char16_t* current,
                        const char16_t* optimal) {
      return qelui::TreeRow{.mCells = {name, u"CURRENT", u"OPTIMAL"},
                            .mStyle = qelui::FontStyle::kBold,
                            .mHasCheckBox = true,
                            .mIsChecked = isChecked,
                            .mChildren = {{.mCells = {u"", current, optimal}}}};
    };
    EXPECT_THAT(TreeOf(dialog).mRows,
                ElementsAre(row(u"a", true, u"a current", u"a optimal"), row(u"b", false, u"", u"")));
    EXPECT_EQ(TreeOf(dialog).mColumnCount, 3U);
    EXPECT_EQ(TreeOf(dialog).mTimesScrolledToTop, 1);
    EXPECT_TRUE(TreeOf(dialog).mIsVisible);
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"1 of 1 selected"));
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"Restore system defaults", u"Ignore", u"Optimize"));
  });
}

TEST_F(AppOptimizerDialogTest, CheckBoxesSelectAndCount) {
  Register("a");
  Register("b");
  Register("c", {OptimizationNotNeeded});
  Open([&](RecordedDialog& dialog) {
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"2 of 2 selected"));
    TreeOf(dialog).Check(0, false);
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"1 of 2 selected"));
    EXPECT_THAT(dialog.VisibleButtons(), Contains(u"Optimize"));
    TreeOf(dialog).Check(1, false);
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"0 of 2 selected"));
    EXPECT_THAT(dialog.VisibleButtons(), Not(Contains(u"Optimize")));
    // What is not recommended can be selected, too.
    TreeOf(dialog).Check(2, true);
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"1 of 2 selected"));
    dialog.Press(u"Optimize");
  });
  EXPECT_THAT(mCalls, ElementsAre("a: determine", "b: determine", "c: determine", "c: accept"));
}

TEST_F(AppOptimizerDialogTest, WithNothingRecommendedThereIsNothingToOptimize) {
  Register("a", {OptimizationNotNeeded});
  Open([&](RecordedDialog& dialog) {
    TreeOf(dialog).Check(0, true);
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"1 of 0 selected"));
    EXPECT_THAT(dialog.VisibleButtons(), Not(Contains(u"Optimize")));
  });
}

TEST_F(AppOptimizerDialogTest, RestoringLooksLikeALink) {
  Register("a");
  Open([&](RecordedDialog& dialog) {
    for (const RecordedButton* const button : dialog.All<RecordedButton>())
      EXPECT_EQ(button->mIsHotText, button->mCaption == u"Restore system defaults");
  });
}

TEST_F(AppOptimizerDialogTest, EveryControlHasANameOfItsOwn) {
  Register("a", {OptimizationPending});
  Open([&](RecordedDialog& dialog) {
    EXPECT_EQ(dialog.All<RecordedProgress>().at(0)->mAccessibleName, u"Looking for what can be optimized");
    EXPECT_EQ(TreeOf(dialog).mAccessibleName, u"Optimizations");
  });
}

/// Every text comes from the catalogue, under its own key.
TEST_F(AppOptimizerDialogTest, TheKeysOfItsTexts) {
  mHost.Files().Write("application/translations/en_US.json", R"({
    "$$$/qel/ao/kTitleText": "title",
    "$$$/qel/ao/kOptimizeButtonText": "optimize",
    "$$$/qel/ao/kCancelText": "ignore",
    "$$$/qel/ao/kRestoreDefaultHotText": "restore",
    "$$$/qel/ao/kProgressText": "progress",
    "$$$/qel/ao/kListText": "list",
    "$$$/qelsystemcompatibilityreport/AppOptimizerDialog/GroupRow/Current": "current",
    "$$$/qelsystemcompatibilityreport/AppOptimizerDialog/GroupRow/Optimal": "optimal",
    "$$$/qelsystemcompatibilityreport/AppOptimizerDialog/CountSelected": "count @1 @0"})");
  Register("a")->mAnswers["accept"] = {OptimizationFailed};
  Register("b");
  Open([&](RecordedDialog& dialog) {
    TreeOf(dialog).Check(1, false);
    EXPECT_EQ(dialog.mTitle, u"title");
    EXPECT_THAT(dialog.VisibleTexts(), ElementsAre(u"title", u"count 2 1"));
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"restore", u"ignore", u"optimize"));
    EXPECT_THAT(TreeOf(dialog).mRows.at(0).mCells, ElementsAre(u"a", u"current", u"optimal"));
    EXPECT_EQ(dialog.All<RecordedProgress>().at(0)->mAccessibleName, u"progress");
    EXPECT_EQ(TreeOf(dialog).mAccessibleName, u"list");
    dialog.Press(u"optimize");
  });
  ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
  EXPECT_EQ(mToolkit.mErrorMessages[0].mTitle, u"title");
}

// ---- Determination that takes its time

TEST_F(AppOptimizerDialogTest, APendingDeterminationIsPolled) {
  Register("a", {OptimizationPending, OptimizationPending, OptimizationDone});
  Open([&](RecordedDialog& dialog) {
    ASSERT_THAT(dialog.mTimers, SizeIs(1));
    EXPECT_EQ(dialog.mTimers.begin()->second.mSeconds, 0.2);
    EXPECT_TRUE(IsBusy(dialog));
    EXPECT_FALSE(TreeOf(dialog).mIsVisible);
    EXPECT_THAT(dialog.VisibleTexts(), ElementsAre(u"Application Optimizer"));
    EXPECT_THAT(dialog.VisibleButtons(), ElementsAre(u"Restore system defaults", u"Ignore"));
    dialog.Tick();
    EXPECT_TRUE(IsBusy(dialog));
    EXPECT_FALSE(TreeOf(dialog).mIsVisible);
    EXPECT_THAT(dialog.mTimers, SizeIs(1));
    dialog.Tick();
    EXPECT_FALSE(IsBusy(dialog));
    EXPECT_TRUE(TreeOf(dialog).mIsVisible);
    EXPECT_THAT(dialog.mTimers, IsEmpty());
    EXPECT_THAT(dialog.VisibleTexts(), Contains(u"1 of 1 selected"));
    EXPECT_THAT(dialog.VisibleButtons(), Contains(u"Optimize"));
  });
}

TEST_F(AppOptimizerDialogTest, AnotherTimerIsNotItsOwn) {
  Register("a", {OptimizationPending});
  Open([&](RecordedDialog& dialog) {
    mCalls.clear();
    const auto& [id, timer] = *dialog.mTimers.begin();
    timer.mOnTick(id + 1);
    EXPECT_THAT(mCalls, IsEmpty());
    timer.mOnTick(id);
    EXPECT_THAT(mCalls, ElementsAre("a: determine"));
  });
}

TEST_F(AppOptimizerDialogTest, WhatEndsTheFirstPassFillsTheTree) {
  for (const AppOptimizationStatus status : {OptimizationStop, OptimizationFailed}) {
    SCOPED_TRACE(static_cast<int>(status));
    Register("x", {status});
    Open([&](RecordedDialog& dialog) {
      EXPECT_TRUE(TreeOf(dialog).mIsVisible);
      EXPECT_FALSE(IsBusy(dialog));
      EXPECT_THAT(dialog.mTimers, IsEmpty());
      if (status == OptimizationFailed) {
        EXPECT_THAT(dialog.VisibleTexts(), Contains(u"x: because"));
      }
    });
    qelcore::host::EndProcess();
  }
}

class LaterPassTest : public AppOptimizerDialogTest,
                      public testing::WithParamInterface<AppOptimizationStatus> {};

INSTANTIATE_TEST_SUITE_P(Ends, LaterPassTest, testing::Values(OptimizationStop, OptimizationFailed));

TEST_P(LaterPassTest, WhatEndsItDoesNotFillTheTree) {
  const auto first = Register("x", {OptimizationPending, GetParam()});
  const auto second = Register("y", {OptimizationPending, OptimizationDone});
  Open([&](RecordedDialog& dialog) {
    dialog.Tick();
    EXPECT_FALSE(TreeOf(dialog).mIsVisible);
    EXPECT_TRUE(IsBusy(dialog));
    EXPECT_EQ(testing::Matches(Contains(u"x: because"))(dialog.VisibleTexts()),
              GetParam() == OptimizationFailed);
    // The next tick goes on with the one that is still pending.
    dialog.Tick();
    EXPECT_TRUE(TreeOf(dialog).mIsVisible);
    EXPECT_THAT(mCalls, ElementsAre("x: determine", "y: determine", "x: determine", "y: determine"));
  });
}

TEST_F(AppOptimizerDialogTest, EveryFailureOfTheDeterminationIsTold) {
  Register("x", {OptimizationPending, OptimizationFailed});
  Register("y", {OptimizationPending, OptimizationFailed});
  Register("z", {OptimizationPending, OptimizationDone});
  Open([&](RecordedDialog& dialog) {
    dialog.Tick();
    EXPECT_THAT(dialog.VisibleTexts(), ElementsAre(u"Application Optimizer", u"x: because"));
    dialog.Tick();
    EXPECT_THAT(dialog.VisibleTexts(), ElementsAre(u"Application Optimizer", u"x: because\ny: because"));
    dialog.Tick();
    EXPECT_THAT(dialog.VisibleTexts(),
                ElementsAre(u"Application Optimizer", u"1 of 1 selected", u"x: because\ny: because"));
  });
}

// ---- Optimize, restore, ignore

TEST_F(AppOptimizerDialogTest, OptimizeGoesOnUntilAllIsDoneAndCloses) {
  const auto slow = Register("a");
  slow->mAnswers["accept"] = {OptimizationPending, OptimizationPending, OptimizationPending,
                              OptimizationDone};
  Register("b");
  Open([&](RecordedDialog& dialog) {
    mCalls.clear();
    dialog.Press(u"Optimize");
    EXPECT_FALSE(dialog.mIsOpen);
  });
  EXPECT_THAT(mCalls, ElementsAre("a: accept", "b: accept", "a: accept", "a: accept", "a: accept"));
  EXPECT_THAT(mToolkit.mErrorMessages, IsEmpty());
}

TEST_F(AppOptimizerDialogTest, RestoreAsksAllAndCloses) {
  const auto slow = Register("a", {OptimizationNotNeeded});
  slow->mAnswers["default"] = {OptimizationPending, OptimizationDone};
  Register("b");
  Open([&](RecordedDialog& dialog) {
    mCalls.clear();
    dialog.Press(u"Restore system defaults");
    EXPECT_FALSE(dialog.mIsOpen);
  });
  EXPECT_THAT(mCalls, ElementsAre("a: default", "b: default", "a: default"));
}

TEST_F(AppOptimizerDialogTest, IgnoreAndEscapeAskNobody) {
  Register("a", {OptimizationPending});
  Open([&](RecordedDialog& dialog) {
    dialog.Press(u"Ignore");
    EXPECT_FALSE(dialog.mIsOpen);
  });
  Open([&](RecordedDialog& dialog) {
    EXPECT_EQ(dialog.mCloseControl->mCaption, u"Ignore");
    dialog.PressEscape();
    EXPECT_FALSE(dialog.mIsOpen);
  });
  // What is pending is left alone, and never cancelled.
  EXPECT_THAT(mCalls, ElementsAre("a: determine", "a: determine"));
}

TEST_F(AppOptimizerDialogTest, AFailureIsToldBeforeTheDialogCloses) {
  Register("not selected", {OptimizationNotNeeded});
  const auto failing = Register("a");
  failing->mAnswers["accept"] = {OptimizationFailed};
  failing->mAnswers["default"] = {OptimizationFailed};
  failing->mFailureText = "the disk is full";
  for (const char16_t* const button : {u"Optimize", u"Restore system defaults"}) {
    mToolkit.mErrorMessages.clear();
    Open([&](RecordedDialog& dialog) {
      mToolkit.mWhileMessageIsUp = [&] { EXPECT_TRUE(dialog.mIsOpen); };
      dialog.Press(button);
      EXPECT_FALSE(dialog.mIsOpen);
    });
    ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
    EXPECT_EQ(mToolkit.mErrorMessages[0].mTitle, u"Application Optimizer");
    EXPECT_EQ(mToolkit.mErrorMessages[0].mMessage, u"a: the disk is full");
  }
}

TEST_F(AppOptimizerDialogTest, AFailureIsToldOverTheDialog) {
  Register("a")->mAnswers["accept"] = {OptimizationFailed};
  Open([&](RecordedDialog& dialog) {
    dialog.Press(u"Optimize");
    ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
    EXPECT_EQ(mToolkit.mErrorMessages[0].mParent, dialog.AsWindow());
  });
}

TEST_F(AppOptimizerDialogTest, AFailureInALaterPassIsTold) {
  Register("fresh", {OptimizationNotNeeded});
  Register("a")->mAnswers["accept"] = {OptimizationPending, OptimizationPending, OptimizationFailed};
  Register("b");
  Open([&](RecordedDialog& dialog) { dialog.Press(u"Optimize"); });
  ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
  EXPECT_EQ(mToolkit.mErrorMessages[0].mMessage, u"a: because");
}

/// What was pending when another one stopped the determination is asked to accept, too, although nobody
/// selected it: the passes that continue visit all that is pending.
TEST_F(AppOptimizerDialogTest, AFailureOfWhatIsNotSelectedIsTold) {
  Register("w")->mAnswers["accept"] = {OptimizationPending, OptimizationDone};
  Register("x", {OptimizationPending})->mAnswers["accept"] = {OptimizationFailed};
  Register("z", {OptimizationStop});
  Open([&](RecordedDialog& dialog) { dialog.Press(u"Optimize"); });
  ASSERT_THAT(mToolkit.mErrorMessages, SizeIs(1));
  EXPECT_EQ(mToolkit.mErrorMessages[0].mMessage, u"x: because");
}

TEST_F(AppOptimizerDialogTest, EnterAppliesNothing) {
  Register("a");
  Open([&](RecordedDialog& dialog) { EXPECT_EQ(dialog.mOkButton, nullptr); });
}

TEST_F(AppOptimizerDialogTest, AStopIsNoFailure) {
  Register("a")->mAnswers["accept"] = {OptimizationStop};
  Open([](RecordedDialog& dialog) {
    dialog.Press(u"Optimize");
    EXPECT_FALSE(dialog.mIsOpen);
  });
  EXPECT_THAT(mToolkit.mErrorMessages, IsEmpty());
}

// ---- One at a time, and failures

TEST_F(AppOptimizerDialogTest, ASecondRequestBringsTheOpenOneToTheFront) {
  Open([&](RecordedDialog& dialog) {
    RunAppOptimizer(nullptr);
    EXPECT_EQ(mToolkit.mTimesBroughtToFront, 1);
    EXPECT_EQ(mToolkit.mTimesAskedForNativeWindow, 1);
    EXPECT_TRUE(dialog.mIsOpen);
  });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
  Open();
  EXPECT_EQ(mToolkit.mDialogsShown, 2);
}

TEST_F(AppOptimizerDialogTest, ARequestDuringTheCreationOpensNoOther) {
  const auto asking = Register("a");
  asking->mBeforeAnswer = [](const std::string&) { RunAppOptimizer(nullptr); };
  Open([&](RecordedDialog& dialog) { EXPECT_EQ(TreeOf(dialog).mRows.size(), 1U); });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
  EXPECT_EQ(mToolkit.mTimesBroughtToFront, 0);
  EXPECT_THAT(mCalls, ElementsAre("a: determine"));
  asking->mBeforeAnswer = {};
  Open();
  EXPECT_EQ(mToolkit.mDialogsShown, 2);
}

TEST_F(AppOptimizerDialogTest, ASecondRequestWithoutAToolkitThatCanDrawDoesNothing) {
  Open([&](RecordedDialog&) {
    mToolkit.mCanDraw = false;
    RunAppOptimizer(nullptr);
    EXPECT_EQ(mToolkit.mTimesBroughtToFront, 0);
    EXPECT_EQ(mToolkit.mTimesAskedForNativeWindow, 0);
    mToolkit.mCanDraw = true;
  });
  EXPECT_EQ(mToolkit.mDialogsShown, 1);
}

TEST_F(AppOptimizerDialogTest, WithoutAToolkitNothingIsShown) {
  Register("a");
  qelui::host::SetNodeManager(nullptr);
  Open();
  EXPECT_EQ(mToolkit.mDialogsShown, 0);
  EXPECT_THAT(mCalls, IsEmpty());
  EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
}

TEST_F(AppOptimizerDialogTest, WithoutAToolkitThatCanDrawNothingIsShown) {
  Register("a");
  mToolkit.mCanDraw = false;
  Open();
  EXPECT_EQ(mToolkit.mDialogsShown, 0);
  EXPECT_THAT(mCalls, IsEmpty());
}

TEST_F(AppOptimizerDialogTest, AnExceptionIsLoggedAndTheNextRequestIsServed) {
  Open([](RecordedDialog&) { throw std::runtime_error("toolkit"); });
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunAppOptimizer"));
  EXPECT_EQ(mToolkit.mDialogsAlive, 0);
  Open();
  EXPECT_EQ(mToolkit.mDialogsShown, 2);
}

TEST_F(AppOptimizerDialogTest, AnExceptionOfAnOptimizationIsLoggedAndTheNextRequestIsServed) {
  const struct {
    const char* mName;
    const char* mStep;
    int mCallThatThrows;
    bool mIsShown;
    void (*mDo)(RecordedDialog& dialog);
  } rows[] = {
      {"while the dialog is created", "determine", 1, false, [](RecordedDialog&) {}},
      {"at a tick", "determine", 2, true, [](RecordedDialog& dialog) { dialog.Tick(); }},
      {"when it accepts", "accept", 1, true,
       [](RecordedDialog& dialog) {
         dialog.Tick();
         dialog.Press(u"Optimize");
       }},
      {"when it restores", "default", 1, true,
       [](RecordedDialog& dialog) { dialog.Press(u"Restore system defaults"); }},
  };
  const auto optimization = Register("a");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mName);
    mHost.mExceptionContexts.clear();
    mHost.mExceptionTexts.clear();
    mToolkit.mDialogsShown = 0;
    optimization->mAnswers["determine"] = {OptimizationPending, OptimizationDone};
    optimization->mBeforeAnswer = [&row, calls = 0](const std::string& step) mutable {
      if (step == row.mStep && ++calls == row.mCallThatThrows) throw std::runtime_error("driver");
    };
    Open(row.mDo);
    EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelsystemcompatibilityreport::RunAppOptimizer"));
    EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("driver"));
    EXPECT_EQ(mToolkit.mDialogsShown, row.mIsShown ? 1 : 0);
    EXPECT_EQ(mToolkit.mDialogsAlive, 0);
    optimization->mBeforeAnswer = {};
    Open();
    EXPECT_EQ(mToolkit.mDialogsShown, row.mIsShown ? 2 : 1);
  }
}

}  // namespace
