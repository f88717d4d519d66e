#pragma once

#include "host/qelui/native/NativeControl.h"

class wxButton;

namespace qelui::native {

enum class ButtonLook { kPush, kLink };

class ButtonControl final : public ControlOf<Button> {
 public:
  ButtonControl(ControlHost& host, wxWindow& parent, ButtonLook look, const std::u16string& caption);

  void SetCaption(const std::u16string& caption) override;
  void SetWidth(int width) override;
  void SetActive(bool active) override;
  void SetAction(Action action) override;

  [[nodiscard]] const Action& GetAction() const { return mAction; }
  [[nodiscard]] const wxString& GetCaption() const { return mCaption; }

  /// The letter of the caption at that index chooses the button together with the Alt key; none does without
  /// an index.
  void SetMnemonic(std::optional<std::size_t> index);

  /// Shows the button as the one that Enter chooses.
  void ShowAsDefault();

  [[nodiscard]] bool IsTabStop() const override { return true; }
  [[nodiscard]] int GetMinimumWidth() override { return GetPreferredWidth(); }
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;

 private:
  wxButton* mButton;
  wxString mCaption;
  std::optional<std::size_t> mMnemonic;
  int mLeastWidth = 0;
  Action mAction;
};

/// A native button that is not in a dialog yet.
[[nodiscard]] wxButton* MakeNativeButton(wxWindow& parent, ButtonLook look, const wxString& caption);

}  // namespace qelui::native
