#include <gtk/gtk.h>
#include <wx/dataview.h>
#include <wx/toplevel.h>

#include <utility>

#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

class TreeTest : public ToolkitTest {
 protected:
  /// Runs `script` with the sample tree in front, whose check boxes are recorded.
  void RunWithTree(const std::function<void()>& script) {
    mDialog.ShowTree(SampleTreeRows());
    mDialog.mTree->SetOnCheck(
        [this](std::size_t row, bool isChecked) { mChecks.emplace_back(row, isChecked); });
    RunWith(mDialog, [&] {
      for (wxWindow* const window : ShownDescendants(*TopWindow())) {
        if (mNative == nullptr) mNative = dynamic_cast<wxDataViewCtrl*>(window);
      }
      ASSERT_NE(mNative, nullptr);
      script();
      mDialog.Close();
    });
  }

  /// The rows below one row, or those of the first level.
  [[nodiscard]] std::vector<wxDataViewItem> Below(const wxDataViewItem& item = {}) const {
    wxDataViewItemArray children;
    mNative->GetModel()->GetChildren(item, children);
    return {children.begin(), children.end()};
  }

  [[nodiscard]] std::string Cell(const wxDataViewItem& item, unsigned column) const {
    wxVariant value;
    mNative->GetModel()->GetValue(value, item, column);
    return value.GetString().utf8_string();
  }

  /// What a screen reader finds in the first column of a row.
  [[nodiscard]] AtkObject* AccessibleCheckBox(int row) const {
    GtkWidget* const view = gtk_bin_get_child(GTK_BIN(mNative->GetHandle()));
    AtkObject* const cell = atk_table_ref_at(ATK_TABLE(gtk_widget_get_accessible(view)), row, 0);
    // The table keeps it.
    g_object_unref(cell);
    return cell;
  }

  [[nodiscard]] std::string CheckBoxName(int row) const {
    const char* const name = atk_object_get_name(AccessibleCheckBox(row));
    return name == nullptr ? "" : name;
  }

  [[nodiscard]] bool IsSaidToBeChecked(int row) const {
    AtkStateSet* const states = atk_object_ref_state_set(AccessibleCheckBox(row));
    const bool isChecked = atk_state_set_contains_state(states, ATK_STATE_CHECKED) != FALSE;
    g_object_unref(states);
    return isChecked;
  }

  void MoveCursorTo(const wxDataViewItem& item) {
    mNative->SetFocus();
    mNative->SetCurrentItem(item);
  }

  using Checks = std::vector<std::pair<std::size_t, bool>>;

  TreeDialog mDialog;
  wxDataViewCtrl* mNative = nullptr;
  Checks mChecks;
};

TEST_F(TreeTest, ShowsAllRowsUnfolded) {
  RunWithTree([&] {
    ASSERT_EQ(Below().size(), 3U);
    EXPECT_EQ(Cell(Below()[1], 1), "Hardware & audio buffering");
    for (const wxDataViewItem& row : Below()) {
      EXPECT_TRUE(mNative->IsExpanded(row));
      ASSERT_EQ(Below(row).size(), 2U);
      EXPECT_EQ(Cell(Below(row)[0], 2), "CURRENT");
      EXPECT_EQ(Cell(Below(row)[0], 3), "OPTIMAL");
      wxDataViewItemAttr attribute;
      EXPECT_TRUE(mNative->GetModel()->GetAttr(Below(row)[0], 2, attribute));
      EXPECT_TRUE(attribute.GetBold());
      EXPECT_FALSE(mNative->GetModel()->GetAttr(Below(row)[1], 2, attribute));
    }
  });
}

TEST_F(TreeTest, OnlyRowsWithACheckBoxHaveOne) {
  RunWithTree([&] {
    const wxDataViewModel& model = *mNative->GetModel();
    EXPECT_TRUE(model.HasValue(Below()[0], 0));
    EXPECT_TRUE(model.HasValue(Below()[1], 0));
    EXPECT_FALSE(model.HasValue(Below()[2], 0));
    EXPECT_FALSE(model.HasValue(Below(Below()[0])[0], 0));
  });
}

TEST_F(TreeTest, TheSpaceKeyChangesACheckBox) {
  RunWithTree([&] {
    MoveCursorTo(Below()[1]);
    PressKey(WXK_SPACE);
    EXPECT_EQ(mChecks, (Checks{{1, true}}));
    PressKey(WXK_SPACE);
    EXPECT_EQ(mChecks, (Checks{{1, true}, {1, false}}));
    MoveCursorTo(Below()[2]);
    PressKey(WXK_SPACE);
    EXPECT_EQ(mChecks.size(), 2U) << "a row without a check box";
  });
}

TEST_F(TreeTest, AClickChangesACheckBox) {
  RunWithTree([&] {
    const wxRect box = mNative->GetItemRect(Below()[0], mNative->GetColumn(0));
    ClickAt(mNative->GetMainWindow()->ClientToScreen(box.GetPosition() + box.GetSize() / 2));
    EXPECT_EQ(mChecks, (Checks{{0, false}}));
  });
}

TEST_F(TreeTest, ScreenReadersAreToldTheNameOfACheckBox) {
  RunWithTree([&] {
    EXPECT_EQ(CheckBoxName(0), "Power plan");
    EXPECT_EQ(CheckBoxName(3), "Hardware & audio buffering");
    EXPECT_EQ(CheckBoxName(1), "") << "a row below";
    EXPECT_EQ(CheckBoxName(6), "") << "a row without a check box";
    mDialog.mTree->SetRows({TreeRow{.mCells = {u"Without"}},
                            TreeRow{.mCells = {u"Another"}, .mHasCheckBox = true, .mIsChecked = true}});
    EXPECT_EQ(CheckBoxName(0), "");
    EXPECT_EQ(CheckBoxName(1), "Another");
  });
}

TEST_F(TreeTest, ScreenReadersAreToldTheStateOfACheckBox) {
  RunWithTree([&] {
    EXPECT_TRUE(IsSaidToBeChecked(0));
    EXPECT_FALSE(IsSaidToBeChecked(3));
    EXPECT_FALSE(IsSaidToBeChecked(6));
    MoveCursorTo(Below()[0]);
    PressKey(WXK_SPACE);
    EXPECT_FALSE(IsSaidToBeChecked(0));
    PressKey(WXK_SPACE);
    EXPECT_TRUE(IsSaidToBeChecked(0));
    const wxRect box = mNative->GetItemRect(Below()[1], mNative->GetColumn(0));
    ClickAt(mNative->GetMainWindow()->ClientToScreen(box.GetPosition() + box.GetSize() / 2));
    EXPECT_TRUE(IsSaidToBeChecked(3));
    EXPECT_EQ(CheckBoxName(3), "Hardware & audio buffering");
  });
}

TEST_F(TreeTest, SettingRowsReplacesThemAndIsNoChoiceOfTheUser) {
  RunWithTree([&] {
    mDialog.mTree->SetRows({TreeRow{.mCells = {u"Only"}, .mHasCheckBox = true, .mIsChecked = true}});
    ASSERT_EQ(Below().size(), 1U);
    EXPECT_EQ(Cell(Below()[0], 1), "Only");
    EXPECT_TRUE(mChecks.empty());
    MoveCursorTo(Below()[0]);
    PressKey(WXK_SPACE);
    EXPECT_EQ(mChecks, (Checks{{0, false}}));
    mDialog.mTree->SetRows({});
    EXPECT_TRUE(Below().empty());
  });
}

TEST_F(TreeTest, EnterChoosesTheOkButtonFromInsideTheTree) {
  int count = 0;
  mDialog.mOptimize->SetAction([&] { ++count; });
  RunWithTree([&] {
    MoveCursorTo(Below()[0]);
    PressKey(WXK_RETURN);
    EXPECT_EQ(count, 1);
  });
}

TEST_F(TreeTest, AnExceptionOfACheckIsThrownAgainByTheRun) {
  EXPECT_THROW(RunWithTree([&] {
                 mDialog.mTree->SetOnCheck([](std::size_t, bool) { throw std::runtime_error("no"); });
                 MoveCursorTo(Below()[0]);
                 PressKey(WXK_SPACE);
               }),
               std::runtime_error);
}

TEST_F(TreeTest, TenThousandRowsAreShownFromTheTop) {
  std::vector<TreeRow> rows;
  for (int row = 0; row < 10000; ++row) rows.push_back(TreeRow{.mCells = {u"Row", u"a", u"b"}});
  RunWithTree([&] {
    mDialog.mTree->SetRows(rows);
    ASSERT_EQ(Below().size(), 10000U);
    const auto isSeen = [&](std::size_t row) {
      return mNative->GetMainWindow()->GetClientRect().Intersects(mNative->GetItemRect(Below()[row]));
    };
    // By the program: the system's tree does not follow the End key while it still measures its rows.
    mNative->EnsureVisible(Below()[9999]);
    EXPECT_TRUE(WaitUntil([&] { return isSeen(9999); }));
    mDialog.mTree->ScrollToTop();
    EXPECT_TRUE(WaitUntil([&] { return isSeen(0) && !isSeen(9999); }));
  });
}

}  // namespace

}  // namespace qelui::test
