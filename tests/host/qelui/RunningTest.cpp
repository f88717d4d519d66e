// What goes on while a dialog is open: timers, tasks, exceptions, and dialogs above it.
#include <glib.h>
#include <gmock/gmock.h>
#include <wx/log.h>
#include <wx/toplevel.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Threads.h"
#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

class RunningTest : public ToolkitTest {};

std::string WhatRunThrows(UI_Dialog& dialog, const std::function<void()>& script) {
  try {
    RunWith(dialog, script);
  } catch (const std::exception& exception) {
    return exception.what();
  }
  return "nothing";
}

TEST_F(RunningTest, ATimerTicksUntilItIsRemoved) {
  TimedDialog dialog;
  int ticks = 0;
  TimerID seen = 0;
  const TimerID timer = dialog.InstallTimer(0.01);
  dialog.mOnTimer = [&](TimerID id) {
    seen = id;
    if (++ticks == 3) dialog.RemoveTimer(id);
  };
  RunWith(dialog, [&] {
    EXPECT_TRUE(WaitUntil([&] { return ticks >= 3; }));
    bool hasOtherTicked = false;
    dialog.mOnTimer = [&](TimerID id) {
      EXPECT_NE(id, timer);
      hasOtherTicked = true;
    };
    const TimerID other = dialog.InstallTimer(0.05);
    EXPECT_NE(other, timer);
    EXPECT_TRUE(WaitUntil([&] { return hasOtherTicked; }));
    dialog.Close();
  });
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(seen, timer);
}

TEST_F(RunningTest, ATickThatTakesLongerThanItsTimerLeavesTimeForOtherThings) {
  TimedDialog dialog;
  int ticks = 0;
  bool isIdle = false;
  const auto beIdle = +[](gpointer idle) -> gboolean {
    *static_cast<bool*>(idle) = true;
    return G_SOURCE_REMOVE;
  };
  dialog.mOnTimer = [&](TimerID) {
    if (++ticks == 1) g_idle_add(beIdle, &isIdle);
    // What waits in vain must not wait for ever.
    if (ticks == 20) dialog.Close();
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
    while (std::chrono::steady_clock::now() < end) {
    }
  };
  RunWith(dialog, [&] {
    dialog.InstallTimer(0.02);
    EXPECT_TRUE(WaitUntil([&] { return isIdle || ticks == 20; }));
    EXPECT_LT(ticks, 20) << "nothing but ticks";
    dialog.Close();
  });
}

TEST_F(RunningTest, TimersTickOnlyWhileTheDialogRuns) {
  TimedDialog outer;
  TimedDialog idle;
  idle.mOnTimer = [](TimerID) { ADD_FAILURE(); };
  idle.InstallTimer(0.001);
  int ticks = 0;
  outer.mOnTimer = [&](TimerID) { ++ticks; };
  outer.InstallTimer(0.01);
  RunWith(outer, [&] {
    EXPECT_TRUE(WaitUntil([&] { return ticks > 3; }));
    outer.Close();
  });
}

TEST_F(RunningTest, RemovingAnUnknownTimerDoesNothing) {
  TimedDialog dialog;
  dialog.RemoveTimer(77);
}

TEST_F(RunningTest, AnExceptionOfAnActionClosesTheDialogAndIsThrownAgain) {
  TimedDialog dialog;
  dialog.GetContentView().AddButton(u"Fail").SetAction([] { throw std::runtime_error("by the action"); });
  EXPECT_EQ(WhatRunThrows(dialog, [&] { Click(*FindButton("Fail")); }), "by the action");
  EXPECT_EQ(WhatRunThrows(dialog, [&] { dialog.Close(); }), "nothing") << "a second run";
}

TEST_F(RunningTest, AnExceptionOfATimerClosesTheDialogAndIsThrownAgain) {
  TimedDialog dialog;
  dialog.InstallTimer(0.01);
  EXPECT_EQ(WhatRunThrows(dialog,
                          [&] {
                            dialog.mOnTimer = [](TimerID) { throw std::runtime_error("by the timer"); };
                            const wxTopLevelWindow* const window = TopWindow();
                            EXPECT_TRUE(WaitUntil([&] { return !window->IsShown(); }));
                          }),
            "by the timer");
}

TEST_F(RunningTest, WhatIsNoStandardExceptionIsThrownAgainToo) {
  TimedDialog dialog;
  dialog.GetContentView().AddButton(u"Fail").SetAction([] { throw 42; });
  EXPECT_THROW(RunWith(dialog, [&] { Click(*FindButton("Fail")); }), int);
}

TEST_F(RunningTest, AnActionOpensAnotherDialogAboveTheFirst) {
  TimedDialog dialog;
  int inner = 0;
  dialog.GetContentView().AddButton(u"More").SetAction([&] {
    TimedDialog above;
    above.SetOkButton(above.GetContentView().AddButton(u"OK"));
    wxTopLevelWindow* const below = TopWindow();
    RunWith(above, [&] {
      ++inner;
      EXPECT_NE(TopWindow(), below);
      PressKey(WXK_RETURN);
    });
    EXPECT_EQ(TopWindow(), below);
  });
  RunWith(dialog, [&] {
    Click(*FindButton("More"));
    EXPECT_TRUE(WaitUntil([] { return TopWindow()->IsActive(); }));
    Click(*FindButton("More"));
    EXPECT_EQ(inner, 2);
    dialog.Close();
  });
}

TEST_F(RunningTest, AnExceptionPassesThroughDialogsThatLieAboveEachOther) {
  TimedDialog dialog;
  dialog.GetContentView().AddButton(u"More").SetAction([&] {
    TimedDialog above;
    above.GetContentView().AddButton(u"Fail").SetAction([] { throw std::runtime_error("from above"); });
    RunWith(above, [&] { Click(*FindButton("Fail")); });
    ADD_FAILURE() << "the exception was lost";
  });
  EXPECT_EQ(WhatRunThrows(dialog, [&] { Click(*FindButton("More")); }), "from above");
}

TEST_F(RunningTest, ADialogThatIsClosedBelowAnotherEndsWhenThatIsGone) {
  TimedDialog dialog;
  bool isInnerDone = false;
  dialog.GetContentView().AddButton(u"More").SetAction([&] {
    TimedDialog above;
    RunWith(above, [&] {
      dialog.Close();
      wxTopLevelWindow* const window = TopWindow();
      EXPECT_TRUE(window->IsShown());
      above.Close();
    });
    isInnerDone = true;
  });
  RunWith(dialog, [&] { Click(*FindButton("More")); });
  EXPECT_TRUE(isInnerDone);
}

TEST_F(RunningTest, TheMainThreadsTasksRunWhileADialogIsOpen) {
  TimedDialog dialog;
  std::vector<int> order;
  qelcore::threads::AsyncCallFromMainThread([&] { order.push_back(1); }, 0);
  RunWith(dialog, [&] {
    EXPECT_TRUE(WaitUntil([&] { return !order.empty(); }));
    qelcore::threads::AsyncCallFromMainThread([&] { order.push_back(3); }, 60);
    qelcore::threads::AsyncCallFromMainThread([&] { order.push_back(2); }, 0);
    EXPECT_TRUE(WaitUntil([&] { return order.size() == 3; }));
    dialog.Close();
  });
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST_F(RunningTest, TasksRunWhileADialogIsOpenThatATaskOpened) {
  TimedDialog dialog;
  bool hasRun = false;
  bool isNested = false;
  RunWith(dialog, [&] {
    qelcore::threads::AsyncCallFromMainThread(
        [&] {
          TimedDialog above;
          isNested = true;
          RunWith(above, [&] {
            qelcore::threads::AsyncCallFromMainThread([&] { hasRun = true; }, 0);
            EXPECT_TRUE(WaitUntil([&] { return hasRun; }));
            above.Close();
          });
          isNested = false;
        },
        0);
    EXPECT_TRUE(WaitUntil([&] { return hasRun && !isNested; }));
    dialog.Close();
  });
}

TEST_F(RunningTest, ATaskThatThrowsDoesNotEndTheDialog) {
  TimedDialog dialog;
  bool hasRun = false;
  RunWith(dialog, [&] {
    qelcore::threads::AsyncCallFromMainThread([] { throw std::runtime_error("by the task"); }, 0);
    qelcore::threads::AsyncCallFromMainThread([&] { hasRun = true; }, 0);
    EXPECT_TRUE(WaitUntil([&] { return hasRun; }));
    EXPECT_TRUE(TopWindow()->IsShown());
    dialog.Close();
  });
}

TEST_F(RunningTest, TheSystemsMessagesGoToTheTraceAndNotToStandardError) {
  std::string traced;
  qelcore::host::SetTraceLevel(6);
  qelcore::host::SetTraceSink([&](std::string_view channel, int level, std::string_view text) {
    if (channel == "Toolkit") traced += std::to_string(level) + " " + std::string(text) + "\n";
  });
  testing::internal::CaptureStderr();
  g_critical("a critical message");
  g_log("Gtk", G_LOG_LEVEL_WARNING, "a warning");
  wxLogError("an error");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(traced, testing::HasSubstr("a critical message"));
  EXPECT_THAT(traced, testing::HasSubstr("a warning"));
  EXPECT_THAT(traced, testing::HasSubstr("1 an error\n"));
  qelcore::host::SetTraceSink({});
}

TEST_F(RunningTest, ARunningDialogComesToTheFront) {
  TimedDialog dialog;
  dialog.SetTitle(u"In front");
  RunWith(dialog, [&] {
    TopWindow()->Iconize();
    EXPECT_TRUE(WaitUntil([] { return TopWindow()->IsIconized(); }));
    dialog.BringToFront();
    EXPECT_TRUE(WaitUntil([] { return !TopWindow()->IsIconized() && TopWindow()->IsActive(); }));
    EXPECT_EQ(TopWindow()->GetTitle(), "In front");
    EXPECT_EQ(dialog.GetNativeWindow(), nullptr);
    dialog.Close();
  });
}

TEST_F(RunningTest, TheTurningCircleIsSeenUntilItIsHidden) {
  TreeDialog dialog;
  RunWith(dialog, [&] {
    EXPECT_EQ(FindButton("Optimize")->IsShown(), false);
    dialog.ShowTree(SampleTreeRows());
    EXPECT_TRUE(WaitUntil([] { return FindButton("Optimize")->IsShownOnScreen(); }));
    dialog.Close();
  });
}

}  // namespace

}  // namespace qelui::test
