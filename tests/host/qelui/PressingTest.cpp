// What happens when something is pressed from outside, as a screen reader does, which waits for the press to
// end.
#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/menu.h>

#include <stdexcept>

#include "host/qelui/DesktopWindow.h"
#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

void PressFromOutside(GtkWidget* widget) {
  EXPECT_TRUE(atk_action_do_action(ATK_ACTION(gtk_widget_get_accessible(widget)), 0));
}

void PressFromOutside(const std::string& caption, wxWindow* within = nullptr) {
  PressFromOutside(FindButton(caption, within)->GetHandle());
}

/// Handles all events that wait.
void HandleWaitingEvents() {
  int round = 0;
  EXPECT_TRUE(WaitUntil([&] { return ++round > 20; }));
}

class PressingTest : public ToolkitTest {
 protected:
  PressingTest() {
    Button& more = mDialog.GetContentView().AddButton(u"More");
    more.SetAction([this] {
      ++mCount;
      if (mAction) mAction();
    });
    Button& other = mDialog.GetContentView().AddButton(u"Other");
    other.SetAction([this] { ++mOtherCount; });
  }

  TimedDialog mDialog;
  int mCount = 0;
  int mOtherCount = 0;
  Action mAction;
};

TEST_F(PressingTest, ThePressEndsBeforeTheActionBegins) {
  RunWith(mDialog, [&] {
    PressFromOutside("More");
    EXPECT_EQ(mCount, 0);
    EXPECT_TRUE(WaitUntil([&] { return mCount == 1; }));
    PressFromOutside("More");
    EXPECT_TRUE(WaitUntil([&] { return mCount == 2; }));
    mDialog.Close();
  });
}

TEST_F(PressingTest, WhatIsPressedBeforeTheActionRanIsIgnored) {
  RunWith(mDialog, [&] {
    PressFromOutside("More");
    PressFromOutside("More");
    PressFromOutside("Other");
    HandleWaitingEvents();
    EXPECT_EQ(mCount, 1);
    EXPECT_EQ(mOtherCount, 0);
    PressFromOutside("Other");
    EXPECT_TRUE(WaitUntil([&] { return mOtherCount == 1; }));
    mDialog.Close();
  });
}

TEST_F(PressingTest, WhatIsPressedBelowAnotherDialogIsIgnored) {
  wxWindow* below = nullptr;
  mAction = [&] {
    TimedDialog above;
    RunWith(above, [&] {
      PressFromOutside("More", below);
      HandleWaitingEvents();
      EXPECT_EQ(mCount, 1);
      above.Close();
    });
  };
  RunWith(mDialog, [&] {
    below = TopWindow();
    PressFromOutside("More");
    EXPECT_TRUE(WaitUntil([&] { return mCount == 1; }));
    HandleWaitingEvents();
    EXPECT_EQ(mCount, 1);
    mDialog.Close();
  });
}

TEST_F(PressingTest, AnActionDoesNotRunInADialogThatIsClosed) {
  RunWith(mDialog, [&] {
    PressFromOutside("More");
    mDialog.Close();
  });
  RunWith(mDialog, [&] {
    HandleWaitingEvents();
    mDialog.Close();
  });
  EXPECT_EQ(mCount, 0);
}

TEST_F(PressingTest, APressIsForgottenWithTheDialog) {
  bool hasRun = false;
  {
    TimedDialog gone;
    gone.GetContentView().AddButton(u"Gone").SetAction([&] { hasRun = true; });
    RunWith(gone, [&] {
      PressFromOutside("Gone");
      gone.Close();
    });
  }
  RunWith(mDialog, [&] {
    HandleWaitingEvents();
    mDialog.Close();
  });
  EXPECT_FALSE(hasRun);
}

TEST_F(PressingTest, AnExceptionAfterAPressIsThrownAgainByTheRun) {
  mAction = [] { throw std::runtime_error("no"); };
  EXPECT_THROW(RunWith(mDialog,
                       [&] {
                         const wxTopLevelWindow* const window = TopWindow();
                         PressFromOutside("More");
                         EXPECT_TRUE(WaitUntil([&] { return !window->IsShown(); }));
                       }),
               std::runtime_error);
}

class PressingMenusTest : public ToolkitTest {
 protected:
  /// Runs the window, and `script` as soon as it is in front, which has to close it.
  void Run(host::MenuItem item, const std::function<void()>& script) {
    mWindow->SetMenus({{u"Menu", {std::move(item)}}});
    RunWhen([] { return TopWindow() != nullptr && TopWindow()->IsActive(); },
            [&] {
              mFrame = dynamic_cast<wxFrame*>(TopWindow());
              script();
            });
    mWindow->Run();
  }

  [[nodiscard]] wxMenuItem& Item() const { return *mFrame->GetMenuBar()->GetMenu(0)->FindItemByPosition(0); }

  void Press() const { PressFromOutside(Item().GetMenuItem()); }

  std::unique_ptr<host::DesktopWindow> mWindow = host::DesktopWindow::Make();
  wxFrame* mFrame = nullptr;
  int mCount = 0;
};

TEST_F(PressingMenusTest, ThePressEndsBeforeTheActionBegins) {
  Run({.mCaption = u"More", .mAction = [&] { ++mCount; }}, [&] {
    Press();
    Press();
    EXPECT_EQ(mCount, 0);
    HandleWaitingEvents();
    EXPECT_EQ(mCount, 1);
    Press();
    EXPECT_TRUE(WaitUntil([&] { return mCount == 2; }));
    mWindow->Close();
  });
}

TEST_F(PressingMenusTest, WhatIsPressedBelowADialogIsIgnoredAndTheMarkStays) {
  bool isChecked = false;
  const auto openDialog = [&] {
    ++mCount;
    isChecked = true;
    TimedDialog above(mWindow->GetWindow());
    RunWith(above, [&] {
      Press();
      HandleWaitingEvents();
      EXPECT_EQ(mCount, 1);
      above.Close();
    });
    mWindow->Close();
  };
  Run({.mCaption = u"More", .mAction = openDialog, .mIsChecked = [&] { return isChecked; }},
      [&] { Press(); });
  EXPECT_EQ(mCount, 1);
}

TEST_F(PressingMenusTest, AnActionDoesNotRunInAWindowThatIsClosed) {
  const host::MenuItem item{.mCaption = u"More", .mAction = [&] { ++mCount; }};
  Run(item, [&] {
    Press();
    mWindow->Close();
  });
  Run(item, [&] {
    HandleWaitingEvents();
    mWindow->Close();
  });
  EXPECT_EQ(mCount, 0);
}

TEST_F(PressingMenusTest, AnExceptionIsThrownAgainByTheRun) {
  EXPECT_THROW(
      Run({.mCaption = u"Fail", .mAction = [] { throw std::runtime_error("no"); }}, [&] { Press(); }),
      std::runtime_error);
}

}  // namespace

}  // namespace qelui::test
