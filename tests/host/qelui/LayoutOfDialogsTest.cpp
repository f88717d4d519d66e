// Where the controls of open dialogs stand.
#include <wx/display.h>
#include <wx/scrolwin.h>
#include <wx/statbmp.h>
#include <wx/toplevel.h>

#include <algorithm>
#include <cstdlib>

#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

/// No control reaches out of what it is in, except in the direction in which it scrolls, and no two overlap.
void ExpectTidy(const wxWindow& window) {
  for (const wxWindow* const inner : ShownDescendants(window)) {
    const wxWindow* const outer = inner->GetParent();
    const wxRect place = inner->GetRect();
    const wxSize room = outer->GetClientSize();
    EXPECT_GE(place.GetLeft(), 0);
    EXPECT_LE(place.GetRight(), room.GetWidth()) << inner->GetLabel();
    if (dynamic_cast<const wxScrolledWindow*>(outer) == nullptr) {
      EXPECT_GE(place.GetTop(), 0);
      EXPECT_LE(place.GetBottom(), room.GetHeight()) << inner->GetLabel();
    }
    for (const wxWindow* const brother : outer->GetChildren()) {
      if (brother == inner || !brother->IsShown() || place.IsEmpty()) continue;
      EXPECT_FALSE(place.Intersects(brother->GetRect())) << inner->GetLabel() << " " << brother->GetLabel();
    }
  }
}

/// Asks for a size as the user does, who gets no less than the least one, and waits until everything has its
/// place.
void Resize(wxSize clientSize) {
  wxTopLevelWindow* const window = TopWindow();
  clientSize.IncTo(window->GetMinClientSize());
  window->SetClientSize(clientSize);
  const wxWindow* const content = window->GetChildren().front();
  EXPECT_TRUE(
      WaitUntil([&] { return content->GetSize() == clientSize && window->GetClientSize() == clientSize; }));
}

class LayoutOfDialogsTest : public ToolkitTest, public testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Rows, LayoutOfDialogsTest, testing::Values(0, 1, 2, 7, 40, 300));

TEST_P(LayoutOfDialogsTest, IsTidyAtEverySize) {
  ListDialog dialog(SampleRows(GetParam()));
  RunWith(dialog, [&] {
    ExpectTidy(*TopWindow());
    for (const wxSize size : {wxSize(1000, 800), wxSize(10, 10), wxSize(500, 300), wxSize(700, 600)}) {
      Resize(size);
      ExpectTidy(*TopWindow());
      // The least window scrolls as a whole.
      FindButton("Export Report...")->SetFocus();
      EXPECT_TRUE(WaitUntil([] { return IsSeen(*FindButton("Export Report..."), *TopWindow()); }));
    }
    dialog.Close();
  });
}

TEST_P(LayoutOfDialogsTest, FitsOnTheScreen) {
  ListDialog dialog(SampleRows(GetParam()));
  RunWith(dialog, [&] {
    const wxSize screen = wxDisplay().GetClientArea().GetSize();
    EXPECT_LE(TopWindow()->GetClientSize().GetWidth(), screen.GetWidth() * 8 / 10);
    EXPECT_LE(TopWindow()->GetClientSize().GetHeight(), screen.GetHeight() * 8 / 10);
    dialog.Close();
  });
}

class ListLayoutTest : public ToolkitTest {};

TEST_F(ListLayoutTest, FewRowsAreSeenWithoutScrolling) {
  ListDialog dialog(SampleRows(2));
  RunWith(dialog, [&] {
    EXPECT_TRUE(IsSeen(*FindTexts()[1], *FindList()));
    EXPECT_TRUE(IsSeen(*FindButton("Info..."), *FindList()));
    EXPECT_EQ(FindList()->GetVirtualSize().GetHeight(), FindList()->GetClientSize().GetHeight());
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, TextsWrapAnewWhenTheWindowGetsNarrower) {
  TimedDialog dialog;
  std::u16string text;
  for (int word = 0; word < 40; ++word) text += u"compatibility ";
  dialog.GetContentView().AddText(text);
  RunWith(dialog, [&] {
    Resize({900, 400});
    const int few = FindTexts().front()->GetSize().GetHeight();
    Resize({400, 400});
    const int many = FindTexts().front()->GetSize().GetHeight();
    EXPECT_GT(many, few);
    EXPECT_GT(few, 2 * TopWindow()->GetCharHeight());
    Resize({900, 400});
    EXPECT_EQ(FindTexts().front()->GetSize().GetHeight(), few);
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, AWordThatIsTooLongIsBroken) {
  TimedDialog dialog;
  dialog.GetContentView().AddText(std::u16string(3000, u'x'));
  RunWith(dialog, [&] {
    EXPECT_LT(TopWindow()->GetSize().GetWidth(), 900);
    EXPECT_GT(FindTexts().front()->GetSize().GetHeight(), 10 * TopWindow()->GetCharHeight());
    ExpectTidy(*TopWindow());
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, ATextThatIsLongerThanTheScreenCanBeReached) {
  TimedDialog dialog;
  std::u16string text;
  for (int line = 0; line < 400; ++line) text += u"One more line\n";
  dialog.GetContentView().AddText(text);
  dialog.SetOkButton(dialog.GetContentView().AddButton(u"OK"));
  RunWith(dialog, [&] {
    const auto isOkSeen = [] { return IsSeen(*FindButton("OK"), *TopWindow()); };
    EXPECT_FALSE(isOkSeen()) << "the beginning is seen first";
    PressKey(WXK_END);
    EXPECT_TRUE(WaitUntil(isOkSeen));
    PressKey(WXK_HOME);
    EXPECT_TRUE(WaitUntil([&] { return !isOkSeen(); }));
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, HiddenControlsTakeNoPlace) {
  TimedDialog dialog;
  View& content = dialog.GetContentView();
  content.AddText(u"First");
  StaticText& middle = content.AddText(u"Middle");
  content.AddText(u"Last");
  content.AddButton(u"OK");
  RunWith(dialog, [&] {
    const auto distance = [] {
      return FindTexts().back()->GetPosition().y - FindTexts().front()->GetPosition().y;
    };
    const int with = distance();
    middle.SetVisible(false);
    EXPECT_TRUE(WaitUntil([&] { return distance() == with / 2; }));
    middle.SetVisible(true);
    EXPECT_TRUE(WaitUntil([&] { return distance() == with; }));
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, ScrollingIntoViewShowsTheRow) {
  ListDialog dialog(SampleRows(100));
  RunWith(dialog, [&] {
    for (const std::size_t row : {99U, 0U, 50U, 51U, 49U}) {
      dialog.mScroll->ScrollIntoView(*dialog.mRows[row]);
      dialog.mScroll->ScrollIntoView(*dialog.mRowButtons[row]);
      const std::vector<wxWindow*> rowButtons = FindRowButtons();
      ASSERT_EQ(rowButtons.size(), 100U);
      EXPECT_TRUE(IsSeen(*rowButtons[row], *FindList())) << row;
    }
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, ArrowAndPageKeysScrollTheListEvenFromOutside) {
  ListDialog dialog(SampleRows(100));
  RunWith(dialog, [&] {
    const auto position = [] { return FindList()->GetViewStart().y; };
    ASSERT_EQ(position(), 0);
    PressKey(WXK_DOWN);
    const int afterLine = position();
    EXPECT_GT(afterLine, 0);
    PressKey(WXK_PAGEDOWN);
    EXPECT_GT(position(), afterLine + 5);
    PressKey(WXK_PAGEUP);
    EXPECT_EQ(position(), afterLine);
    PressKey(WXK_UP);
    EXPECT_EQ(position(), 0);
    PressKey(WXK_END);
    EXPECT_GT(position(), 100);
    PressKey(WXK_HOME);
    EXPECT_EQ(position(), 0);
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, IconsAreAsHighAsTwoLinesAtTheBeginningOfTheirTexts) {
  ListDialog dialog({{u"Heading", u"Name", std::u16string(900, u'x'), true},
                     {u"Heading", u"Name", std::u16string(900, u'x'), false}});
  RunWith(dialog, [&] {
    int icons = 0;
    for (const wxWindow* const window : ShownDescendants(*FindList())) {
      if (dynamic_cast<const wxStaticBitmap*>(window) == nullptr) continue;
      ++icons;
      EXPECT_EQ(window->GetSize().GetHeight(), 2 * TopWindow()->GetCharHeight());
      const wxWindow* const texts = window->GetNextSibling();
      EXPECT_GT(texts->GetSize().GetHeight(), 5 * TopWindow()->GetCharHeight());
      EXPECT_EQ(window->GetPosition().y, texts->GetPosition().y);
    }
    EXPECT_EQ(icons, 2);
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, ADialogThatGrowsStaysInTheMiddle) {
  TimedDialog dialog;
  StaticText& text = dialog.GetContentView().AddText(u"Short");
  RunWith(dialog, [&] {
    const auto middle = [] {
      const wxRect place = TopWindow()->GetScreenRect();
      return place.GetPosition() + place.GetSize() / 2;
    };
    const wxPoint before = middle();
    const int height = TopWindow()->GetSize().GetHeight();
    std::u16string lines;
    for (int line = 0; line < 20; ++line) lines += u"One more line\n";
    text.SetText(lines);
    EXPECT_TRUE(WaitUntil([&] {
      return TopWindow()->GetSize().GetHeight() > height + 200 && std::abs(middle().y - before.y) <= 4 &&
             std::abs(middle().x - before.x) <= 4;
    })) << middle().y
        << " was " << before.y;
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, ButtonsAreAtLeastAsWideAsAsked) {
  const int wide = NodeManager::Get()->GetDefaultDrawSupplier()->MeasureButton(u"A much longer caption");
  TimedDialog dialog;
  dialog.GetContentView().AddButton(u"Short").SetWidth(wide);
  dialog.GetContentView().AddButton(u"A much longer caption");
  RunWith(dialog, [&] {
    EXPECT_EQ(FindButton("Short")->GetSize().GetWidth(), wide);
    EXPECT_EQ(FindButton("A much longer caption")->GetSize().GetWidth(), wide);
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, SpacePushesWhatFollowsToTheEnd) {
  ListDialog dialog(SampleRows(1));
  RunWith(dialog, [&] {
    Resize({900, 500});
    const int left = FindButton("Export Report...")->GetRect().GetLeft();
    const wxWindow& last = *FindButton("Continue with known issues...");
    EXPECT_EQ(left, 0);
    EXPECT_EQ(last.GetRect().GetRight() + 1, last.GetParent()->GetClientSize().GetWidth());
    dialog.Close();
  });
}

TEST_F(ListLayoutTest, CaptionsAndTextsAreShownAsTheyAre) {
  TimedDialog dialog;
  dialog.GetContentView().AddButton(u"Save & <b>close</b> _now");
  RunWith(dialog, [&] {
    EXPECT_NE(FindButton("Save & <b>close</b> _now"), nullptr);
    dialog.Close();
  });
}

}  // namespace

}  // namespace qelui::test
