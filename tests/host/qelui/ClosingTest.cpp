// The ways in which a dialog is closed, and the button that each of them chooses.
#include <wx/toplevel.h>

#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

class ClosingTest : public ToolkitTest {
 protected:
  /// A dialog with an OK button and another one, which count how often they were chosen.
  void Fill(UI_Dialog& dialog, bool okCloses = true) {
    View& buttons = dialog.GetContentView().AddView(Direction::kAcross);
    mOther = &buttons.AddHotText(u"Leave it");
    mOther->SetAction([this, &dialog] {
      ++mOtherCount;
      dialog.Close();
    });
    mOk = &buttons.AddButton(u"OK");
    mOk->SetAction([this] { ++mOkCount; });
    if (okCloses) dialog.SetOkButton(*mOk);
  }

  Button* mOk = nullptr;
  Button* mOther = nullptr;
  int mOkCount = 0;
  int mOtherCount = 0;
};

TEST_F(ClosingTest, EnterChoosesTheOkButtonWhichCloses) {
  TimedDialog dialog;
  Fill(dialog);
  RunWith(dialog, [&] { PressKey(WXK_RETURN); });
  EXPECT_EQ(mOkCount, 1);
  EXPECT_EQ(mOtherCount, 0);
}

TEST_F(ClosingTest, AClickOnTheOkButtonCloses) {
  TimedDialog dialog;
  Fill(dialog);
  RunWith(dialog, [&] { Click(*FindButton("OK")); });
  EXPECT_EQ(mOkCount, 1);
}

TEST_F(ClosingTest, SpaceChoosesTheFocusedHotText) {
  TimedDialog dialog;
  Fill(dialog);
  RunWith(dialog, [&] {
    FindButton("Leave it")->SetFocus();
    PressKey(WXK_SPACE);
  });
  EXPECT_EQ(mOkCount, 0);
  EXPECT_EQ(mOtherCount, 1);
}

TEST_F(ClosingTest, EnterChoosesTheFocusedHotTextRatherThanTheOkButton) {
  TimedDialog dialog;
  Fill(dialog);
  RunWith(dialog, [&] {
    FindButton("Leave it")->SetFocus();
    PressKey(WXK_RETURN);
  });
  EXPECT_EQ(mOkCount, 0);
  EXPECT_EQ(mOtherCount, 1);
}

TEST_F(ClosingTest, EscapeChoosesTheCloseControl) {
  TimedDialog dialog;
  Fill(dialog);
  dialog.SetCloseControl(*mOther);
  RunWith(dialog, [&] { PressKey(WXK_ESCAPE); });
  EXPECT_EQ(mOkCount, 0);
  EXPECT_EQ(mOtherCount, 1);
}

TEST_F(ClosingTest, TheCloseBoxChoosesTheCloseControl) {
  TimedDialog dialog;
  Fill(dialog);
  dialog.SetCloseControl(*mOther);
  RunWith(dialog, [&] { TopWindow()->Close(); });
  EXPECT_EQ(mOtherCount, 1);
}

TEST_F(ClosingTest, TheWindowManagersCloseKeyChoosesTheCloseControl) {
  TimedDialog dialog;
  Fill(dialog);
  dialog.SetCloseControl(*mOther);
  RunWith(dialog, [&] {
    wxTopLevelWindow* const window = TopWindow();
    // The window manager may not have heard yet that the window has the focus, and lets the key go to nobody.
    EXPECT_TRUE(WaitUntil([&] {
      if (window->IsShown()) PressRawKey(WXK_F4, wxMOD_ALT);
      return !window->IsShown();
    }));
  });
  EXPECT_EQ(mOtherCount, 1);
}

TEST_F(ClosingTest, EscapeDoesNotCloseWhenTheCloseControlsActionDoesNot) {
  TimedDialog dialog;
  Fill(dialog);
  int count = 0;
  mOther->SetAction([&] { ++count; });
  dialog.SetCloseControl(*mOther);
  RunWith(dialog, [&] {
    PressKey(WXK_ESCAPE);
    EXPECT_TRUE(TopWindow()->IsShown());
    EXPECT_EQ(count, 1);
    dialog.Close();
  });
}

TEST_F(ClosingTest, EscapeClosesWithoutACloseControl) {
  TimedDialog dialog;
  Fill(dialog, false);
  RunWith(dialog, [&] { PressKey(WXK_ESCAPE); });
  EXPECT_EQ(mOkCount, 0);
  EXPECT_EQ(mOtherCount, 0);
}

TEST_F(ClosingTest, EscapeChoosesTheOkButtonWhileTheCloseControlIsHidden) {
  TimedDialog dialog;
  Fill(dialog);
  dialog.SetCloseControl(*mOther);
  mOther->SetVisible(false);
  RunWith(dialog, [&] { PressKey(WXK_ESCAPE); });
  EXPECT_EQ(mOkCount, 1);
  EXPECT_EQ(mOtherCount, 0);
}

TEST_F(ClosingTest, AHiddenOkButtonIsNotChosenByEnter) {
  TimedDialog dialog;
  Fill(dialog);
  dialog.GetContentView().AddTree(1, u"Rows").SetRows({TreeRow{.mCells = {u"one"}}});
  mOk->SetVisible(false);
  mOther->SetActive(false);
  RunWith(dialog, [&] {
    PressKey(WXK_RETURN);
    EXPECT_TRUE(TopWindow()->IsShown());
    dialog.Close();
  });
  EXPECT_EQ(mOkCount, 0);
}

TEST_F(ClosingTest, AnInactiveButtonCannotBeChosen) {
  TimedDialog dialog;
  Fill(dialog);
  mOk->SetActive(false);
  RunWith(dialog, [&] {
    Click(*FindButton("OK"));
    EXPECT_EQ(mOkCount, 0);
    mOk->SetActive(true);
    Click(*FindButton("OK"));
  });
  EXPECT_EQ(mOkCount, 1);
}

TEST_F(ClosingTest, ADialogRunsAgainAfterItWasClosed) {
  TimedDialog dialog;
  Fill(dialog);
  for (int run = 1; run <= 3; ++run) {
    RunWith(dialog, [&] { PressKey(WXK_RETURN); });
    EXPECT_EQ(mOkCount, run);
  }
}

TEST_F(ClosingTest, ClosingADialogThatDoesNotRunDoesNothing) {
  TimedDialog dialog;
  Fill(dialog);
  dialog.Close();
  RunWith(dialog, [&] { PressKey(WXK_RETURN); });
  EXPECT_EQ(mOkCount, 1);
}

TEST_F(ClosingTest, AnActionMayReplaceItself) {
  TimedDialog dialog;
  Fill(dialog);
  bool isReplaced = false;
  mOther->SetAction([&] { mOther->SetAction([&] { isReplaced = true; }); });
  RunWith(dialog, [&] {
    Click(*FindButton("Leave it"));
    EXPECT_FALSE(isReplaced);
    Click(*FindButton("Leave it"));
    EXPECT_TRUE(isReplaced);
    dialog.Close();
  });
}

}  // namespace

}  // namespace qelui::test
