// A toolkit without a screen: it records what it is asked to show, and answers as the test says.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/qelui.h"
#include "tests/support/RecordingControls.h"

namespace testsupport {

class RecordingUserInterface;

/// A dialog that is "open" while the test's function runs.
class RecordedDialog final : public qelui::DialogWindow {
 public:
  RecordedDialog(RecordingUserInterface& toolkit, qelui::OS_Window* parent);
  ~RecordedDialog() override;

  [[nodiscard]] qelui::View& GetContentView() override {
    OnHostCall("DialogWindow::GetContentView");
    return mContent;
  }
  void SetTitle(const std::u16string& title) override {
    OnHostCall("DialogWindow::SetTitle");
    mTitle = title;
  }
  void SetOkButton(qelui::Button& button) override {
    OnHostCall("DialogWindow::SetOkButton");
    mOkButton = &dynamic_cast<RecordedButton&>(button);
  }
  void SetCloseControl(qelui::Button& control) override {
    OnHostCall("DialogWindow::SetCloseControl");
    mCloseControl = &dynamic_cast<RecordedButton&>(control);
  }
  void SetContentSize(const qelui::Size& size) override {
    OnHostCall("DialogWindow::SetContentSize");
    mContentSize = size;
  }
  void RunModal() override;
  void Close() override {
    OnHostCall("DialogWindow::Close");
    mIsOpen = false;
  }
  void BringToFront() override;
  [[nodiscard]] void* GetNativeWindow() override;
  [[nodiscard]] qelui::OS_Window* AsWindow() override;
  qelui::TimerID InstallTimer(double seconds, std::function<void(qelui::TimerID)> onTick) override;
  void RemoveTimer(qelui::TimerID timer) override {
    OnHostCall("DialogWindow::RemoveTimer");
    mTimers.erase(timer);
  }

  // ---- What a user does -----------------------------------------------------------------------------------

  /// Chooses the visible and active button of that caption, the first of several; fails the test when there
  /// is none.
  void Press(const std::u16string& caption);
  void Press(RecordedButton& button);
  void PressEscape();

  /// Lets every timer tick once.
  void Tick();

  // ---- What a user sees -----------------------------------------------------------------------------------

  /// The texts that are visible, in their order.
  [[nodiscard]] std::vector<std::u16string> VisibleTexts() const;
  /// The captions of the buttons and hot texts that are visible and active, in their order.
  [[nodiscard]] std::vector<std::u16string> VisibleButtons() const;
  [[nodiscard]] bool IsVisible(const qelui::Control& control) const;

  template <typename Recorded>
  [[nodiscard]] std::vector<Recorded*> All() const {
    return AllOf<Recorded>(mContent);
  }

  RecordedView mContent;
  qelui::OS_Window* mParent;
  std::u16string mTitle;
  RecordedButton* mOkButton = nullptr;
  RecordedButton* mCloseControl = nullptr;
  qelui::Size mContentSize;
  bool mIsOpen = false;

  struct Timer {
    double mSeconds;
    std::function<void(qelui::TimerID)> mOnTick;
  };
  std::map<qelui::TimerID, Timer> mTimers;

 private:
  RecordingUserInterface& mToolkit;
};

/// The process's toolkit as long as it lives. One at a time.
class RecordingUserInterface final : public qelui::NodeManager, public qelui::DrawSupplier {
 public:
  struct ErrorMessage {
    std::u16string mTitle;
    std::u16string mMessage;
    qelui::OS_Window* mParent = nullptr;

    friend bool operator==(const ErrorMessage&, const ErrorMessage&) = default;
  };

  RecordingUserInterface();
  ~RecordingUserInterface() override;

  [[nodiscard]] qelui::DrawSupplier* GetDefaultDrawSupplier() override {
    OnHostCall("NodeManager::GetDefaultDrawSupplier");
    return mCanDraw ? this : nullptr;
  }
  void ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                        qelui::OS_Window* parent) override;
  [[nodiscard]] std::u16string RunSaveAsDialog(const qelui::OS_FileSaveAsDialog& dialog,
                                               qelui::DialogWindow* parent) override;
  /// Ten units for each character.
  [[nodiscard]] int MeasureButton(const std::u16string& caption) override {
    OnHostCall("DrawSupplier::MeasureButton");
    return 10 * static_cast<int>(caption.size());
  }
  [[nodiscard]] std::unique_ptr<qelui::DialogWindow> MakeDialogWindow(qelui::OS_Window* parent) override;

  // ---- What the test says ---------------------------------------------------------------------------------

  /// Whether there is a draw supplier.
  bool mCanDraw = true;
  /// Called while an error message is up.
  std::function<void()> mWhileMessageIsUp;
  /// Called while a dialog is up. At its return the dialog is closed as by its close control when it is still
  /// open.
  std::function<void(RecordedDialog& dialog)> mWhileDialogIsUp;
  /// What the user answers to the save-as dialog; empty cancels.
  std::u16string mSaveAsAnswer;

  // ---- What was asked for ---------------------------------------------------------------------------------

  std::vector<ErrorMessage> mErrorMessages;
  std::vector<qelui::OS_FileSaveAsDialog> mSaveAsDialogs;
  std::vector<const qelui::DialogWindow*> mSaveAsParents;
  int mDialogsShown = 0;
  int mDialogsAlive = 0;
  int mTimesBroughtToFront = 0;
  int mTimesAskedForNativeWindow = 0;
};

/// A window that nobody looks into.
[[nodiscard]] qelui::OS_Window* SomeWindow();

}  // namespace testsupport
