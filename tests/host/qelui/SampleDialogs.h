// Dialogs as the library builds them, with content of every size.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/qelui.h"

namespace qelui::test {

/// A dialog that hands its timers' ticks on.
class TimedDialog : public UI_Dialog {
 public:
  explicit TimedDialog(OS_Window* parent = nullptr)
      : UI_Dialog(*NodeManager::Get()->GetDefaultDrawSupplier(), parent) {}

  std::function<void(TimerID)> mOnTimer;

 protected:
  void OnTimer(TimerID timer) override {
    if (mOnTimer) mOnTimer(timer);
  }
};

struct SampleRow {
  std::u16string mHeading;
  std::u16string mName;
  std::u16string mMessage;
  bool mIsSerious = false;
};

/// A list of rows, each with a button, between a title and a row of buttons.
class ListDialog : public TimedDialog {
 public:
  explicit ListDialog(const std::vector<SampleRow>& rows, OS_Window* parent = nullptr);

  /// Adds a row below the others; the list has to be updated afterwards.
  void AddRow(const SampleRow& row);

  Button* mOk = nullptr;
  Button* mContinue = nullptr;
  Button* mExport = nullptr;
  StaticText* mTitle = nullptr;
  StaticText* mNote = nullptr;
  ScrollView* mScroll = nullptr;
  std::vector<View*> mRows;
  std::vector<Button*> mRowButtons;
};

/// A tree behind a progress indicator.
class TreeDialog : public TimedDialog {
 public:
  TreeDialog();

  void ShowTree(std::vector<TreeRow> rows);

  ProgressIndicator* mProgress = nullptr;
  Tree* mTree = nullptr;
  StaticText* mCount = nullptr;
  Button* mOptimize = nullptr;
  Button* mRestore = nullptr;
  Button* mIgnore = nullptr;
};

[[nodiscard]] std::vector<SampleRow> SampleRows(std::size_t count);
[[nodiscard]] std::vector<TreeRow> SampleTreeRows();

}  // namespace qelui::test
