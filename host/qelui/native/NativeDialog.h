#pragma once

#include <wx/gdicmn.h>
#include <wx/timer.h>

#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "host/qelui/native/ModalLevel.h"
#include "host/qelui/native/ScrollArea.h"
#include "platform/qelui/Dialog.h"

class wxDialog;
class wxKeyEvent;

namespace qelui::native {

class ScrollControl;

/// A dialog. Tab goes through the controls in the order of adding; arrow and page keys scroll the list that
/// the focus is in, or else the first one; after the End key a list that grows stays at its end; F7 lets Tab
/// stop at texts too; Ctrl+C copies the selection, or without one the row that has the focus.
class NativeDialog final : public DialogWindow, public ControlHost {
 public:
  explicit NativeDialog(OS_Window* parent);
  ~NativeDialog() override;

  View& GetContentView() override { return mArea->GetView(); }
  void SetTitle(const std::u16string& title) override;
  void SetOkButton(Button& button) override;
  void SetCloseControl(Button& control) override;
  void SetContentSize(const Size& size) override;
  void RunModal() override;
  void Close() override;
  void BringToFront() override;
  void* GetNativeWindow() override;
  OS_Window* AsWindow() override;
  TimerID InstallTimer(double seconds, std::function<void(TimerID)> onTick) override;
  void RemoveTimer(TimerID timer) override;

  [[nodiscard]] wxDialog& GetWindow() const { return *mDialog; }

 private:
  class TickTimer;

  // ControlHost
  void LayOutSoon() override;
  void LayOutNow() override;
  void ChooseSoon(ButtonControl& button) override;
  void RunGuarded(const std::function<void()>& body) override;

  void Choose(const ButtonControl& button);
  void ChooseCloseControl();
  void EndIfClosing();
  void PrepareToShow();
  void ChooseSize();
  void SetSize(const wxSize& size);
  void ApplyLeastSize();
  [[nodiscard]] wxSize RoomForHiddenTrees();
  [[nodiscard]] wxSize MissingForContent();
  void LayOutAt(const wxSize& size);
  void AssignMnemonics();
  void FocusFirst();
  void KeepFocusUsable();
  void OnKey(wxKeyEvent& event);
  bool HandleKey(const wxKeyEvent& event);
  void MoveFocus(bool forward);
  void Focus(NativeControl& control);
  void ChooseByEnter();
  bool ScrollByKey(int keyCode);
  bool CopyWithoutSelection();
  [[nodiscard]] std::vector<NativeControl*> AllControls();
  [[nodiscard]] NativeControl* FocusedControl();
  [[nodiscard]] bool IsTabStop(const NativeControl& control) const;
  [[nodiscard]] ScrollArea& ScrollAreaFor(const NativeControl* focused);

  wxDialog* mDialog;
  std::unique_ptr<ScrollArea> mArea;  ///< all of the content, which scrolls when the screen is too small
  ButtonControl* mOkButton = nullptr;
  ButtonControl* mCloseControl = nullptr;
  ButtonControl* mChosen = nullptr;  ///< whose action has not run yet
  std::optional<Size> mContentSize;
  wxSize mLeastSize;
  wxSize mChosenSize;  ///< of the content, before the user changed it
  std::map<TimerID, std::shared_ptr<TickTimer>> mTimers;
  TimerID mLastTimer = 0;
  wxTimer mMnemonicsTimer;           ///< runs from a change on, until the captions get their letters anew
  std::optional<ModalLevel> mLevel;  ///< while it runs
  bool mIsClosing = false;
  bool mIsLayoutPosted = false;
  bool mTextsAreTabStops = false;  ///< for those who select with the keyboard; the F7 key changes it
  std::exception_ptr mException;
};

}  // namespace qelui::native
