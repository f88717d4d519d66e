#include "host/qelui/native/ButtonControl.h"

#include <wx/button.h>

#include <algorithm>
#include <utility>

namespace qelui::native {

wxButton* MakeNativeButton(wxWindow& parent, ButtonLook look, const wxString& caption) {
  const long style = look == ButtonLook::kLink ? wxBORDER_NONE | wxBU_EXACTFIT : 0;
  // A space stands for an empty caption, which would make a button of the system's own.
  auto* const button =
      new wxButton(&parent, wxID_ANY, caption.empty() ? wxString(" ") : wxControl::EscapeMnemonics(caption),
                   wxDefaultPosition, wxDefaultSize, style);
  if (look == ButtonLook::kLink) MakeLookLikeLink(*button);
  return button;
}

ButtonControl::ButtonControl(ControlHost& host, wxWindow& parent, ButtonLook look,
                             const std::u16string& caption)
    : ControlOf<Button>(host, MakeNativeButton(parent, look, ToWx(caption))),
      mButton(static_cast<wxButton*>(&GetWindow())),
      mCaption(ToWx(caption)) {
  mButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Host().ChooseSoon(*this); });
}

void ButtonControl::SetCaption(const std::u16string& caption) {
  mCaption = ToWx(caption);
  mMnemonic.reset();
  mButton->SetLabel(wxControl::EscapeMnemonics(mCaption));
  ContentChanged();
}

void ButtonControl::SetMnemonic(std::optional<std::size_t> index) {
  if (index == mMnemonic) return;
  mMnemonic = index;
  const std::size_t place = index.value_or(0);
  mButton->SetLabel(wxControl::EscapeMnemonics(mCaption.substr(0, place)) + (index ? "&" : "") +
                    wxControl::EscapeMnemonics(mCaption.substr(place)));
}

void ButtonControl::SetWidth(int width) {
  mLeastWidth = width;
  ContentChanged();
}

void ButtonControl::SetActive(bool active) {
  if (!mButton->Enable(active)) return;
  ContentChanged();
}

void ButtonControl::SetAction(Action action) {
  mAction = std::move(action);
}

void ButtonControl::ShowAsDefault() {
  mButton->SetDefault();
}

int ButtonControl::GetPreferredWidth() {
  return std::max(mLeastWidth, mButton->GetBestSize().GetWidth());
}

int ButtonControl::GetPreferredHeight(int /*width*/) {
  return mButton->GetBestSize().GetHeight();
}

}  // namespace qelui::native
