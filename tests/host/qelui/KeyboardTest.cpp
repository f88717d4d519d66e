// Where the keyboard's focus is and goes.
#include <wx/clipbrd.h>
#include <wx/control.h>
#include <wx/toplevel.h>

#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

std::string FocusedCaption() {
  const wxWindow* const focused = wxWindow::FindFocus();
  return focused != nullptr ? wxControl::RemoveMnemonics(focused->GetLabel()).utf8_string() : "(none)";
}

std::vector<std::string> CaptionsByTab(std::size_t count, int modifiers = 0) {
  std::vector<std::string> captions;
  for (std::size_t index = 0; index < count; ++index) {
    PressKey(WXK_TAB, modifiers);
    captions.push_back(FocusedCaption());
  }
  return captions;
}

std::string Clipboard() {
  wxTextDataObject text;
  EXPECT_TRUE(wxTheClipboard->Open());
  wxTheClipboard->GetData(text);
  wxTheClipboard->Close();
  return text.GetText().utf8_string();
}

class KeyboardTest : public ToolkitTest {};

TEST_F(KeyboardTest, TheFocusIsOnTheOkButtonAtFirst) {
  ListDialog dialog(SampleRows(2));
  dialog.mOk->SetVisible(true);
  dialog.mOk->SetActive(true);
  RunWith(dialog, [&] {
    EXPECT_EQ(FocusedCaption(), "OK");
    dialog.Close();
  });
}

TEST_F(KeyboardTest, TheFocusIsOnTheCloseControlWhenTheOkButtonIsHidden) {
  ListDialog dialog(SampleRows(2));
  RunWith(dialog, [&] {
    EXPECT_EQ(FocusedCaption(), "Continue with known issues...");
    dialog.Close();
  });
}

TEST_F(KeyboardTest, TabGoesThroughTheButtonsInTheOrderOfAddingAndRound) {
  ListDialog dialog(SampleRows(3));
  RunWith(dialog, [&] {
    EXPECT_EQ(CaptionsByTab(6), (std::vector<std::string>{"Fix...", "Info...", "Info...", "Export Report...",
                                                          "Continue with known issues...", "Fix..."}));
    EXPECT_EQ(CaptionsByTab(2, wxMOD_SHIFT),
              (std::vector<std::string>{"Continue with known issues...", "Export Report..."}));
    dialog.Close();
  });
}

TEST_F(KeyboardTest, HidingAViewTakesItsButtonsOutOfTheTabOrder) {
  ListDialog dialog(SampleRows(3));
  dialog.mRows[0]->SetVisible(false);
  dialog.mRowButtons[1]->SetActive(false);
  RunWith(dialog, [&] {
    EXPECT_EQ(CaptionsByTab(4), (std::vector<std::string>{"Info...", "Export Report...",
                                                          "Continue with known issues...", "Info..."}));
    dialog.Close();
  });
}

TEST_F(KeyboardTest, TheFocusLeavesAControlThatIsHidden) {
  ListDialog dialog(SampleRows(2));
  RunWith(dialog, [&] {
    PressKey(WXK_TAB);
    ASSERT_EQ(FocusedCaption(), "Fix...");
    dialog.mRows[0]->SetVisible(false);
    EXPECT_TRUE(WaitUntil([] { return FocusedCaption() == "Continue with known issues..."; }));
    dialog.mContinue->SetVisible(false);
    dialog.mOk->SetVisible(true);
    dialog.mOk->SetActive(true);
    EXPECT_TRUE(WaitUntil([] { return FocusedCaption() == "OK"; }));
    dialog.Close();
  });
}

TEST_F(KeyboardTest, AltAndTheLetterOfACaptionChooseTheButton) {
  ListDialog dialog(SampleRows(4));
  int count = 0;
  dialog.mExport->SetAction([&] { ++count; });
  RunWith(dialog, [&] {
    const wxTopLevelWindow* const window = TopWindow();
    PressKey('E', wxMOD_ALT);
    EXPECT_TRUE(WaitUntil([&] { return count == 1; }));
    PressKey('C', wxMOD_ALT);
    EXPECT_TRUE(WaitUntil([&] { return !window->IsShown(); }));
  });
  EXPECT_EQ(count, 1);
}

TEST_F(KeyboardTest, FocusedRowsAreScrolledIntoView) {
  ListDialog dialog(SampleRows(60));
  RunWith(dialog, [&] {
    const wxRect window = TopWindow()->GetScreenRect();
    for (int row = 0; row < 60; ++row) {
      PressKey(WXK_TAB);
      const wxRect place = wxWindow::FindFocus()->GetScreenRect();
      EXPECT_TRUE(window.Contains(place)) << "row " << row;
    }
    dialog.Close();
  });
}

TEST_F(KeyboardTest, TheWholeRowOfTheFocusIsScrolledIntoView) {
  ListDialog dialog(SampleRows(20));
  RunWith(dialog, [&] {
    for (int row = 0; row < 20; ++row) {
      PressKey(WXK_TAB);
      EXPECT_TRUE(IsSeen(*wxWindow::FindFocus()->GetParent(), *FindList())) << "row " << row;
    }
    dialog.Close();
  });
}

TEST_F(KeyboardTest, CopyingWithoutASelectionCopiesTheRowThatHasTheFocus) {
  ListDialog dialog({{u"First heading", u"First & <b>name</b>", u"First message", true},
                     {u"Second heading", u"Second name", u"Second message", false}});
  RunWith(dialog, [&] {
    PressKey(WXK_TAB);
    PressKey('C', wxMOD_CONTROL);
    EXPECT_EQ(Clipboard(), "First heading\nFirst & <b>name</b>\nFirst message");
    dialog.Close();
  });
}

TEST_F(KeyboardTest, CopyingWithoutASelectionOutsideTheListCopiesAllTexts) {
  ListDialog dialog({{u"Heading", u"Name", u"Message", false}});
  RunWith(dialog, [&] {
    PressKey('C', wxMOD_CONTROL);
    EXPECT_EQ(Clipboard(), "Some Application: System Compatibility Report\nHeading\nName\nMessage");
    dialog.Close();
  });
}

TEST_F(KeyboardTest, F7LetsTabStopAtTextsToSelectAndCopyThem) {
  TimedDialog dialog;
  dialog.GetContentView().AddText(u"A text that can be copied");
  Button& ok = dialog.GetContentView().AddButton(u"OK");
  dialog.SetOkButton(ok);
  RunWith(dialog, [&] {
    PressKey(WXK_TAB);
    EXPECT_EQ(FocusedCaption(), "OK");
    PressKey(WXK_F7);
    PressKey(WXK_TAB);
    EXPECT_NE(FocusedCaption(), "OK");
    PressKey('C', wxMOD_CONTROL);
    EXPECT_EQ(Clipboard(), "A text that can be copied");
    PressKey(WXK_HOME);
    PressKey(WXK_RIGHT, wxMOD_SHIFT | wxMOD_CONTROL);
    PressKey('C', wxMOD_CONTROL);
    EXPECT_EQ(Clipboard(), "A");
    dialog.Close();
  });
}

TEST_F(KeyboardTest, TheMouseSelectsAWordOfATextThatIsCopied) {
  TimedDialog dialog;
  StaticText& text = dialog.GetContentView().AddText(u"Unsupported");
  text.SetFontStyle(FontStyle::kTitle);
  dialog.SetOkButton(dialog.GetContentView().AddButton(u"OK"));
  RunWith(dialog, [&] {
    DoubleClickAtStart(*FindTexts().front());
    PressKey('C', wxMOD_CONTROL);
    EXPECT_EQ(Clipboard(), "Unsupported");
    dialog.Close();
  });
}

}  // namespace

}  // namespace qelui::test
