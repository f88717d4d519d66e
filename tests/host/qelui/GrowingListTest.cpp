// A list that gets more rows while its dialog is open.
#include <wx/clipbrd.h>
#include <wx/control.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

class GrowingListTest : public ToolkitTest {
 protected:
  GrowingListTest() : mAll(SampleRows(200)) {}

  [[nodiscard]] std::vector<SampleRow> First(std::size_t count) const {
    return {mAll.begin(), mAll.begin() + static_cast<std::ptrdiff_t>(count)};
  }

  /// Adds rows one by one, each with a look at what is on the screen then.
  void GrowTo(ListDialog& dialog, std::size_t count) const {
    while (dialog.mRows.size() < count) {
      dialog.AddRow(mAll[dialog.mRows.size()]);
      dialog.mScroll->Update();
    }
  }

  std::vector<SampleRow> mAll;
};

int Position() {
  return FindList()->GetViewStart().y;
}

/// The places of all that is in the list, from the list's beginning.
std::vector<wxRect> PlacesInList() {
  const wxPoint begin = FindList()->ClientToScreen(FindList()->CalcScrolledPosition(wxPoint(0, 0)));
  std::vector<wxRect> places;
  for (const wxWindow* const window : ShownDescendants(*FindList())) {
    wxRect place = window->GetScreenRect();
    place.Offset(-begin);
    places.push_back(place);
  }
  return places;
}

TEST_F(GrowingListTest, LooksLikeOneThatWasMadeAtOnce) {
  std::vector<wxRect> places;
  wxSize length;
  ListDialog atOnce(mAll);
  RunWith(atOnce, [&] {
    places = PlacesInList();
    length = FindList()->GetVirtualSize();
    atOnce.Close();
  });
  ListDialog growing(First(40));
  RunWith(growing, [&] {
    GrowTo(growing, mAll.size());
    EXPECT_EQ(PlacesInList(), places);
    EXPECT_EQ(FindList()->GetVirtualSize(), length);
    growing.Close();
  });
}

TEST_F(GrowingListTest, RowsAreThereWithoutAnUpdateAsSoonAsTheWindowLaysItselfOut) {
  ListDialog dialog(First(40));
  RunWith(dialog, [&] {
    const int before = FindList()->GetVirtualSize().GetHeight();
    for (std::size_t row = 40; row < 60; ++row) dialog.AddRow(mAll[row]);
    EXPECT_TRUE(WaitUntil([&] { return FindList()->GetVirtualSize().GetHeight() > before * 5 / 4; }));
    dialog.Close();
  });
}

TEST_F(GrowingListTest, NeitherTheWindowNorThePositionMoves) {
  ListDialog dialog(First(40));
  RunWith(dialog, [&] {
    PressKey(WXK_PAGEDOWN);
    const wxRect window = TopWindow()->GetScreenRect();
    const int position = Position();
    EXPECT_GT(position, 0);
    GrowTo(dialog, 120);
    EXPECT_EQ(Position(), position);
    // Long after the rows have come.
    PressKey(WXK_PAGEDOWN);
    PressKey(WXK_PAGEUP);
    EXPECT_EQ(Position(), position);
    EXPECT_EQ(TopWindow()->GetScreenRect(), window);
    dialog.Close();
  });
}

TEST_F(GrowingListTest, TheFocusStaysAndTabGoesOnToTheNewRows) {
  ListDialog dialog(First(12));
  RunWith(dialog, [&] {
    for (int row = 0; row < 12; ++row) PressKey(WXK_TAB);
    const wxWindow* const focused = wxWindow::FindFocus();
    EXPECT_EQ(focused, FindRowButtons().back());
    const wxRect place = focused->GetScreenRect();
    GrowTo(dialog, 60);
    EXPECT_EQ(wxWindow::FindFocus(), focused);
    EXPECT_EQ(focused->GetScreenRect(), place);
    for (std::size_t row = 12; row < 60; ++row) {
      PressKey(WXK_TAB);
      ASSERT_EQ(wxWindow::FindFocus(), FindRowButtons()[row]) << row;
      EXPECT_TRUE(IsSeen(*wxWindow::FindFocus(), *FindList())) << row;
    }
    PressKey(WXK_TAB);
    EXPECT_EQ(wxWindow::FindFocus(), FindButton("Export Report..."));
    dialog.Close();
  });
}

TEST_F(GrowingListTest, ASelectionStays) {
  ListDialog dialog({{u"Heading", u"Unsupported", u"Message", true}});
  RunWith(dialog, [&] {
    // The title stands first.
    DoubleClickAtStart(*FindTexts()[2]);
    GrowTo(dialog, 60);
    PressKey('C', wxMOD_CONTROL);
    wxTextDataObject text;
    EXPECT_TRUE(wxTheClipboard->Open());
    wxTheClipboard->GetData(text);
    wxTheClipboard->Close();
    EXPECT_EQ(text.GetText(), "Unsupported");
    dialog.Close();
  });
}

TEST_F(GrowingListTest, TheEndKeyFollowsTheEndUntilSomethingElseIsScrolledTo) {
  ListDialog dialog(First(40));
  RunWith(dialog, [&] {
    const auto isEndSeen = [] { return IsSeen(*FindRowButtons().back(), *FindList()); };
    PressKey(WXK_END);
    EXPECT_TRUE(isEndSeen());
    GrowTo(dialog, 60);
    EXPECT_TRUE(isEndSeen());
    GrowTo(dialog, 130);
    EXPECT_TRUE(isEndSeen());

    PressKey(WXK_PAGEUP);
    const int position = Position();
    GrowTo(dialog, 150);
    EXPECT_EQ(Position(), position);

    // The wheel and the scroll bar scroll elsewhere, too.
    PressKey(WXK_END);
    FindList()->Scroll(-1, Position() - 3);
    const int elsewhere = Position();
    GrowTo(dialog, 170);
    EXPECT_EQ(Position(), elsewhere);

    PressKey(WXK_END);
    PressKey(WXK_HOME);
    GrowTo(dialog, 200);
    EXPECT_EQ(Position(), 0);
    PressKey(WXK_END);
    EXPECT_TRUE(isEndSeen());
    dialog.Close();
  });
}

TEST_F(GrowingListTest, WhoeverIsAtTheEndWithoutTheEndKeyStaysThere) {
  ListDialog dialog(First(8));
  RunWith(dialog, [&] {
    for (int page = 0; page < 6; ++page) PressKey(WXK_PAGEDOWN);
    const int position = Position();
    GrowTo(dialog, 60);
    EXPECT_EQ(Position(), position);
    dialog.Close();
  });
}

TEST_F(GrowingListTest, NewRowsWrapAtTheWidthThatTheUserChose) {
  ListDialog dialog(First(40));
  RunWith(dialog, [&] {
    wxTopLevelWindow* const window = TopWindow();
    const wxSize narrow(window->GetMinClientSize().GetWidth(), window->GetClientSize().GetHeight());
    window->SetClientSize(narrow);
    const auto isNarrow = [&] { return FindList()->GetSize().GetWidth() <= narrow.GetWidth(); };
    EXPECT_TRUE(WaitUntil(isNarrow));
    GrowTo(dialog, 60);
    for (const wxWindow* const button : FindRowButtons())
      EXPECT_LE(button->GetScreenRect().GetRight(), FindList()->GetScreenRect().GetRight());
    EXPECT_EQ(window->GetClientSize(), narrow);
    dialog.Close();
  });
}

TEST_F(GrowingListTest, RowsComeBelowAnotherDialog) {
  ListDialog dialog(First(40));
  TimedDialog above;
  above.SetOkButton(above.GetContentView().AddButton(u"OK"));
  dialog.mExport->SetAction([&] {
    RunWith(above, [&] {
      EXPECT_TRUE(WaitUntil([&] { return dialog.mRows.size() == 60; }));
      EXPECT_NE(FindButton("OK"), nullptr) << "it is still in front";
      above.Close();
    });
  });
  TimerID timer = 0;
  dialog.mOnTimer = [&](TimerID) {
    GrowTo(dialog, dialog.mRows.size() + 1);
    if (dialog.mRows.size() == 60) dialog.RemoveTimer(timer);
  };
  RunWith(dialog, [&] {
    wxWindow* const button = FindButton("Export Report...");
    timer = dialog.InstallTimer(0.02);
    Click(*button);
    EXPECT_EQ(FindRowButtons().size(), 60U);
    dialog.Close();
  });
}

TEST_F(GrowingListTest, ATickThatFailedIsNotRepeatedWhileAnotherDialogKeepsItsOwnOpen) {
  ListDialog dialog(First(2));
  TimedDialog above;
  int ticks = 0;
  int ticksAbove = 0;
  dialog.mOnTimer = [&](TimerID) {
    ++ticks;
    throw std::runtime_error("by the timer");
  };
  above.mOnTimer = [&](TimerID) { ++ticksAbove; };
  above.InstallTimer(0.01);
  dialog.mExport->SetAction([&] {
    RunWith(above, [&] {
      dialog.InstallTimer(0.01);
      EXPECT_TRUE(WaitUntil([&] { return ticks > 0 && ticksAbove > 5; }));
      ticksAbove = 0;
      EXPECT_TRUE(WaitUntil([&] { return ticksAbove > 5; }));
      above.Close();
    });
  });
  EXPECT_THROW(RunWith(dialog, [&] { Click(*FindButton("Export Report...")); }), std::runtime_error);
  EXPECT_EQ(ticks, 1);
}

TEST_F(GrowingListTest, ALetterThatIsNoLongerOneButtonsGoesAway) {
  ListDialog dialog({{u"Heading", u"Name", u"Message", true}});
  RunWith(dialog, [&] {
    EXPECT_EQ(FindRowButtons().front()->GetLabel(), "&Fix...");
    dialog.AddRow({u"Heading", u"Name", u"Message", true});
    EXPECT_TRUE(WaitUntil([] { return FindRowButtons().front()->GetLabel() == "Fix..."; }));
    EXPECT_EQ(FindRowButtons().back()->GetLabel(), "Fix...");
    dialog.Close();
  });
}

TEST_F(GrowingListTest, ManyRowsThatAreHiddenTogetherTakeNoPlace) {
  ListDialog dialog(First(160));
  const auto distance = [](std::size_t upper, std::size_t lower) {
    const std::vector<wxWindow*> buttons = FindRowButtons();
    return buttons[lower]->GetParent()->GetScreenRect().GetTop() -
           buttons[upper]->GetParent()->GetScreenRect().GetBottom();
  };
  RunWith(dialog, [&] {
    const int usual = distance(0, 1);
    for (std::size_t row = 40; row < 155; ++row) dialog.mRows[row]->SetVisible(false);
    EXPECT_TRUE(WaitUntil([&] { return FindRowButtons().size() == 45 && distance(39, 40) == usual; }));
    const std::vector<wxWindow*> shown = ShownDescendants(*FindList());
    for (std::size_t index = 1; index < shown.size(); ++index) {
      if (shown[index]->GetParent() == shown[index - 1]->GetParent()) {
        EXPECT_FALSE(shown[index]->GetRect().Intersects(shown[index - 1]->GetRect()));
      }
    }
    for (std::size_t row = 60; row < 110; ++row) dialog.mRows[row]->SetVisible(true);
    EXPECT_TRUE(WaitUntil([&] { return FindRowButtons().size() == 95 && distance(39, 40) == usual; }));
    dialog.Close();
  });
}

}  // namespace

}  // namespace qelui::test
