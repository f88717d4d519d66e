#include "host/qelui/native/NativeDialog.h"

#include <wx/dialog.h>
#include <wx/scrolwin.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/qelui/native/ButtonControl.h"
#include "host/qelui/native/Mnemonics.h"
#include "host/qelui/native/WindowHandle.h"

namespace qelui::native {

namespace {

constexpr int kEdge = 2;      // room at the window's edge, in usual borders
constexpr int kGroupGap = 2;  // between what stands in the dialog itself
constexpr double kMilliseconds = 1000;
/// All captions are gone through, which must not happen again and again while a long list grows.
constexpr int kMnemonicsDelay = 500;  // milliseconds

}  // namespace

class NativeDialog::TickTimer final : public wxTimer, public std::enable_shared_from_this<TickTimer> {
 public:
  TickTimer(NativeDialog& dialog, TimerID timer, int interval, std::function<void(TimerID)> onTick)
      : mDialog(dialog), mTimer(timer), mInterval(interval), mOnTick(std::move(onTick)) {}

  void Begin() { StartOnce(mInterval); }

  void Notify() override {
    if (mDialog.mIsClosing) return;
    const auto keepAlive = shared_from_this();
    mDialog.RunGuarded([this] { mOnTick(mTimer); });
    // Only now, so that a tick that opens another dialog is not ticked into again, and ticks that are slow
    // leave time for frames: GTK draws when no timer is due.
    if (mDialog.mLevel && mDialog.mTimers.count(mTimer) > 0) Begin();
  }

 private:
  NativeDialog& mDialog;
  TimerID mTimer;
  int mInterval;
  std::function<void(TimerID)> mOnTick;
};

NativeDialog::NativeDialog(OS_Window* parent)
    : mDialog(new wxDialog(ToNative(parent), wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                           wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER)),
      mArea(std::make_unique<ScrollArea>(*this, *mDialog, kGroupGap, ViewRole::kPlain)) {
  MarkAsDialog(*mDialog);
  mArea->GetView().SetPadding(kEdge);
  mArea->GetView().KeepLastAtEnd();
  mDialog->Bind(wxEVT_SIZE, [this](wxSizeEvent&) {
    if (!mLevel) return;
    ApplyLeastSize();
    LayOutAt(mDialog->GetClientSize());
  });
  mDialog->Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    if (event.CanVeto()) {
      event.Veto();
      ChooseCloseControl();
    } else {
      Close();
    }
  });
  mDialog->Bind(wxEVT_CHAR_HOOK, &NativeDialog::OnKey, this);
  mMnemonicsTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { AssignMnemonics(); });
}

NativeDialog::~NativeDialog() {
  // The controls hear of their windows' events, so the windows go first.
  delete mDialog;
}

void NativeDialog::SetTitle(const std::u16string& title) {
  mDialog->SetTitle(ToWx(title));
}

void NativeDialog::SetOkButton(Button& button) {
  mOkButton = dynamic_cast<ButtonControl*>(&button);
}

void NativeDialog::SetCloseControl(Button& control) {
  mCloseControl = dynamic_cast<ButtonControl*>(&control);
}

void NativeDialog::SetContentSize(const Size& size) {
  mContentSize = size;
}

void NativeDialog::RunModal() {
  if (mLevel) return;
  mIsClosing = false;
  mException = nullptr;
  PrepareToShow();
  mLevel.emplace([this] { EndIfClosing(); });
  for (const auto& [id, timer] : mTimers) timer->Begin();
  mDialog->ShowModal();
  for (const auto& [id, timer] : mTimers) timer->Stop();
  mMnemonicsTimer.Stop();
  mLevel.reset();
  mChosen = nullptr;
  if (mException) std::rethrow_exception(std::exchange(mException, nullptr));
}

void NativeDialog::PrepareToShow() {
  ChooseSize();
  if (mDialog->GetParent() != nullptr) {
    mDialog->CentreOnParent();
  } else {
    mDialog->CentreOnScreen();
  }
  AssignMnemonics();
  FocusFirst();
  // The reader begins at the beginning, even when the focused button is far below.
  mArea->ScrollToTop();
}

void NativeDialog::Close() {
  if (!mLevel) return;
  mIsClosing = true;
  EndIfClosing();
}

// The event loop of a dialog can be ended only while it is the innermost one.
void NativeDialog::EndIfClosing() {
  if (mIsClosing && mLevel && mLevel->IsUppermost() && mDialog->IsModal()) mDialog->EndModal(wxID_OK);
}

void NativeDialog::BringToFront() {
  if (mDialog->IsIconized()) mDialog->Iconize(false);
  mDialog->Raise();
}

void* NativeDialog::GetNativeWindow() {
  return GetSystemHandle(*mDialog);
}

OS_Window* NativeDialog::AsWindow() {
  return ToContract(mDialog);
}

TimerID NativeDialog::InstallTimer(double seconds, std::function<void(TimerID)> onTick) {
  const TimerID id = ++mLastTimer;
  const int interval = std::max(1, static_cast<int>(std::lround(seconds * kMilliseconds)));
  const auto timer = std::make_shared<TickTimer>(*this, id, interval, std::move(onTick));
  mTimers.emplace(id, timer);
  if (mLevel) timer->Begin();
  return id;
}

void NativeDialog::RemoveTimer(TimerID timer) {
  const auto place = mTimers.find(timer);
  if (place == mTimers.end()) return;
  place->second->Stop();
  mTimers.erase(place);
}

void NativeDialog::LayOutSoon() {
  if (!mLevel || mIsLayoutPosted) return;
  mIsLayoutPosted = true;
  mDialog->CallAfter([this] {
    mIsLayoutPosted = false;
    LayOutNow();
    KeepFocusUsable();
    if (mLevel && !mMnemonicsTimer.IsRunning()) mMnemonicsTimer.StartOnce(kMnemonicsDelay);
  });
}

void NativeDialog::ChooseSoon(ButtonControl& button) {
  if (!mLevel || mChosen != nullptr) return;
  mChosen = &button;
  mDialog->CallAfter([this] {
    // The dialog may have ended meanwhile.
    const ButtonControl* const chosen = std::exchange(mChosen, nullptr);
    if (chosen != nullptr) Choose(*chosen);
  });
}

void NativeDialog::Choose(const ButtonControl& button) {
  // A screen reader's press reaches a dialog below another one, too.
  if (!mLevel || !mLevel->IsUppermost() || mIsClosing || !button.CanBeUsed()) return;
  RunGuarded([action = button.GetAction()] {
    if (action) action();
  });
  if (&button == mOkButton) Close();
}

void NativeDialog::ChooseCloseControl() {
  for (ButtonControl* const control : {mCloseControl, mOkButton}) {
    if (control != nullptr && control->CanBeUsed()) {
      Choose(*control);
      return;
    }
  }
  Close();
}

void NativeDialog::RunGuarded(const std::function<void()>& body) {
  try {
    body();
  } catch (...) {
    if (!mException) mException = std::current_exception();
    Close();
  }
}

void NativeDialog::AssignMnemonics() {
  std::vector<ButtonControl*> buttons;
  std::vector<wxString> captions;
  for (NativeControl* const control : AllControls()) {
    auto* const button = dynamic_cast<ButtonControl*>(control);
    if (button == nullptr || !button->CanBeUsed()) continue;
    buttons.push_back(button);
    captions.push_back(button->GetCaption());
  }
  const std::vector<std::optional<std::size_t>> mnemonics = ChooseMnemonics(captions);
  for (std::size_t index = 0; index < buttons.size(); ++index) buttons[index]->SetMnemonic(mnemonics[index]);
  if (mOkButton != nullptr && mOkButton->CanBeUsed()) mOkButton->ShowAsDefault();
}

std::vector<NativeControl*> NativeDialog::AllControls() {
  std::vector<NativeControl*> controls;
  mArea->GetView().ForEachControl([&](NativeControl& control) { controls.push_back(&control); });
  return controls;
}

}  // namespace qelui::native
