#include "platform/qelui/Dialog.h"

#include <utility>

#include "platform/qelui/NodeManager.h"

namespace qelui {

DialogWindow::~DialogWindow() = default;

UI_Dialog::UI_Dialog(DrawSupplier& drawSupplier, OS_Window* parent)
    : mWindow(drawSupplier.MakeDialogWindow(parent)) {}

UI_Dialog::~UI_Dialog() = default;

View& UI_Dialog::GetContentView() {
  return mWindow->GetContentView();
}

void UI_Dialog::SetTitle(const std::u16string& title) {
  mWindow->SetTitle(title);
}

void UI_Dialog::SetOkButton(Button& button) {
  mWindow->SetOkButton(button);
}

void UI_Dialog::SetCloseControl(Button& control) {
  mWindow->SetCloseControl(control);
}

void UI_Dialog::RunModal() {
  mWindow->RunModal();
}

void UI_Dialog::Close() {
  mWindow->Close();
}

void UI_Dialog::BringToFront() {
  mWindow->BringToFront();
}

void* UI_Dialog::GetNativeWindow() {
  return mWindow->GetNativeWindow();
}

OS_Window* UI_Dialog::AsWindow() {
  return mWindow->AsWindow();
}

TimerID UI_Dialog::InstallTimer(double seconds) {
  return mWindow->InstallTimer(seconds, [this](TimerID timer) { OnTimer(timer); });
}

void UI_Dialog::RemoveTimer(TimerID timer) {
  mWindow->RemoveTimer(timer);
}

void UI_Dialog::OnTimer(TimerID /*timer*/) {}

void OS_DialogUtils::SetContentSize(UI_Dialog& dialog, const Size& size) {
  dialog.mWindow->SetContentSize(size);
}

}  // namespace qelui
