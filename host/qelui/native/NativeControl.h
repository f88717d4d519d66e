// What all controls of a dialog have in common.
#pragma once

#include <wx/string.h>

#include <functional>
#include <optional>

#include "host/qelui/native/Layout.h"
#include "host/qelui/native/System.h"
#include "host/qelui/native/Text.h"
#include "platform/qelui/Controls.h"

class wxWindow;

namespace qelui::native {

class ButtonControl;

/// What controls ask of the dialog that they are in.
class ControlHost {
 public:
  ControlHost() = default;
  virtual ~ControlHost() = default;
  ControlHost(const ControlHost&) = delete;
  ControlHost& operator=(const ControlHost&) = delete;

  /// A control needs another place than before.
  virtual void LayOutSoon() = 0;
  /// Lays everything out now, as far as it is needed.
  virtual void LayOutNow() = 0;
  /// The user chose the button. Its action runs afterwards, because whoever pressed the button may wait for
  /// the press to end, as a screen reader does, while the action may open a window. What is chosen before the
  /// action has run is ignored.
  virtual void ChooseSoon(ButtonControl& button) = 0;
  /// Runs what came from outside. What it throws must not reach the system's event loop: it ends the dialog
  /// and is thrown again where the dialog was run.
  virtual void RunGuarded(const std::function<void()>& body) = 0;
};

/// A control with a window of its own.
class NativeControl : public LayoutItem {
 public:
  [[nodiscard]] wxWindow& GetWindow() const { return *mWindow; }
  [[nodiscard]] bool IsShown() const override { return mIsShown; }
  void Place(const Rectangle& rectangle) override;

  /// Whether the Tab key stops here, provided that the control can be seen and used.
  [[nodiscard]] virtual bool IsTabStop() const { return false; }

  /// The text that the control shows to be read, for copying.
  [[nodiscard]] virtual wxString GetReadableText() const { return {}; }

  /// The innermost control of a view whose window that is, or is in; null when there is none.
  [[nodiscard]] static NativeControl* Find(const wxWindow* window);

  /// The control that this one is in; null for a window's outermost view.
  [[nodiscard]] NativeControl* GetContainer() const { return mContainer; }

  /// Whether the control and all that it is in is shown and active.
  [[nodiscard]] bool CanBeUsed() const;

 protected:
  NativeControl(ControlHost& host, wxWindow* window) : mHost(host), mWindow(window) {}

  [[nodiscard]] ControlHost& Host() const { return mHost; }
  void SetShown(bool shown);
  /// Forgets what was measured and asks for a new layout.
  virtual void ContentChanged();

  /// Called when the control is shown or hidden.
  virtual void ShownChanged() {}

  /// Makes this the control that holds `inner`, and hears of its changes.
  void SetContainerOf(NativeControl& inner) { inner.mContainer = this; }

  /// Lets `Find` find `inner`.
  static void MakeFindable(NativeControl& inner);

 private:
  ControlHost& mHost;
  wxWindow* mWindow;  ///< belongs to its parent window
  NativeControl* mContainer = nullptr;
  bool mIsShown = true;
};

/// Implements the contract's class `Contract` on top of a native control.
template <class Contract>
class ControlOf : public Contract, public NativeControl {
 public:
  void SetVisible(bool visible) override { SetShown(visible); }
  void SetAccessibleName(const std::u16string& name) override {
    native::SetAccessibleName(GetWindow(), ToWx(name));
  }

 protected:
  using NativeControl::NativeControl;
};

}  // namespace qelui::native
