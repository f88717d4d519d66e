#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

#include "host/qelui/HostSetup.h"

namespace testsupport {

namespace {

/// Calls `visit` for every control below the view that is visible, as are all views round it.
template <typename Visit>
void ForEachVisible(const RecordedView& view, const Visit& visit) {
  for (const auto& control : view.mOrder) {
    const auto* const state = dynamic_cast<const RecordedState*>(control.get());
    if (state == nullptr || !state->mIsVisible) continue;
    visit(*control);
    if (const auto* const inner = dynamic_cast<const RecordedView*>(control.get()))
      ForEachVisible(*inner, visit);
    if (const auto* const scroll = dynamic_cast<const RecordedScrollView*>(control.get()))
      ForEachVisible(scroll->mContent, visit);
  }
}

}  // namespace

// ---- RecordedDialog

RecordedDialog::RecordedDialog(RecordingUserInterface& toolkit, qelui::OS_Window* parent)
    : mParent(parent), mToolkit(toolkit) {
  ++mToolkit.mDialogsAlive;
}

RecordedDialog::~RecordedDialog() {
  --mToolkit.mDialogsAlive;
}

void RecordedDialog::RunModal() {
  OnHostCall("DialogWindow::RunModal");
  mIsOpen = true;
  ++mToolkit.mDialogsShown;
  if (mToolkit.mWhileDialogIsUp) mToolkit.mWhileDialogIsUp(*this);
  if (mIsOpen) PressEscape();
  mIsOpen = false;
}

void RecordedDialog::BringToFront() {
  OnHostCall("DialogWindow::BringToFront");
  ++mToolkit.mTimesBroughtToFront;
}

void* RecordedDialog::GetNativeWindow() {
  OnHostCall("DialogWindow::GetNativeWindow");
  ++mToolkit.mTimesAskedForNativeWindow;
  return nullptr;
}

qelui::OS_Window* RecordedDialog::AsWindow() {
  OnHostCall("DialogWindow::AsWindow");
  return reinterpret_cast<qelui::OS_Window*>(this);
}

qelui::TimerID RecordedDialog::InstallTimer(double seconds, std::function<void(qelui::TimerID)> onTick) {
  OnHostCall("DialogWindow::InstallTimer");
  static qelui::TimerID last = 0;
  mTimers[++last] = {seconds, std::move(onTick)};
  return last;
}

void RecordedDialog::Press(const std::u16string& caption) {
  RecordedButton* wanted = nullptr;
  ForEachVisible(mContent, [&](qelui::Control& control) {
    auto* const button = dynamic_cast<RecordedButton*>(&control);
    if (button != nullptr && wanted == nullptr && button->mIsActive && button->mCaption == caption)
      wanted = button;
  });
  ASSERT_NE(wanted, nullptr) << "there is no such button to press";
  Press(*wanted);
}

void RecordedDialog::Press(RecordedButton& button) {
  ASSERT_TRUE(IsVisible(button) && button.mIsActive) << "the button cannot be pressed";
  // A copy, because the action may replace itself.
  const qelui::Action action = button.mAction;
  if (action) action();
  if (&button == mOkButton) Close();
}

void RecordedDialog::PressEscape() {
  if (mCloseControl != nullptr) {
    Press(*mCloseControl);
  } else {
    Close();
  }
}

void RecordedDialog::Tick() {
  const auto timers = mTimers;
  for (const auto& [id, timer] : timers) {
    if (mTimers.contains(id)) timer.mOnTick(id);
  }
}

std::vector<std::u16string> RecordedDialog::VisibleTexts() const {
  std::vector<std::u16string> texts;
  ForEachVisible(mContent, [&](qelui::Control& control) {
    if (const auto* const text = dynamic_cast<const RecordedText*>(&control)) texts.push_back(text->mText);
  });
  return texts;
}

std::vector<std::u16string> RecordedDialog::VisibleButtons() const {
  std::vector<std::u16string> captions;
  ForEachVisible(mContent, [&](qelui::Control& control) {
    const auto* const button = dynamic_cast<const RecordedButton*>(&control);
    if (button != nullptr && button->mIsActive) captions.push_back(button->mCaption);
  });
  return captions;
}

bool RecordedDialog::IsVisible(const qelui::Control& control) const {
  bool isVisible = false;
  ForEachVisible(mContent, [&](qelui::Control& visible) { isVisible = isVisible || &visible == &control; });
  return isVisible;
}

// ---- RecordingUserInterface

RecordingUserInterface::RecordingUserInterface() {
  qelui::host::SetNodeManager(this);
}

RecordingUserInterface::~RecordingUserInterface() {
  qelui::host::SetNodeManager(nullptr);
}

void RecordingUserInterface::ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                                              qelui::OS_Window* parent) {
  OnHostCall("NodeManager::ShowErrorMessage");
  mErrorMessages.push_back({title, message, parent});
  if (mWhileMessageIsUp) mWhileMessageIsUp();
}

std::u16string RecordingUserInterface::RunSaveAsDialog(const qelui::OS_FileSaveAsDialog& dialog,
                                                       qelui::DialogWindow* parent) {
  OnHostCall("NodeManager::RunSaveAsDialog");
  mSaveAsDialogs.push_back(dialog);
  mSaveAsParents.push_back(parent);
  return mSaveAsAnswer;
}

std::unique_ptr<qelui::DialogWindow> RecordingUserInterface::MakeDialogWindow(qelui::OS_Window* parent) {
  OnHostCall("DrawSupplier::MakeDialogWindow");
  return std::make_unique<RecordedDialog>(*this, parent);
}

qelui::OS_Window* SomeWindow() {
  static char window = 0;
  return reinterpret_cast<qelui::OS_Window*>(&window);
}

}  // namespace testsupport
