#include <wx/clipbrd.h>
#include <wx/dialog.h>
#include <wx/scrolwin.h>

#include <algorithm>

#include "host/qelui/native/ButtonControl.h"
#include "host/qelui/native/NativeDialog.h"
#include "host/qelui/native/ScrollControl.h"
#include "host/qelui/native/TextControl.h"
#include "host/qelui/native/TreeControl.h"

namespace qelui::native {

namespace {

/// The row of a scroll view that the control is in; null when it is in none.
const NativeControl* RowOf(const NativeControl* control) {
  while (control != nullptr) {
    const auto* const view = dynamic_cast<const ViewControl*>(control->GetContainer());
    if (view != nullptr && view->IsGroup()) return control;
    control = control->GetContainer();
  }
  return nullptr;
}

bool IsIn(const NativeControl* control, const NativeControl& outer) {
  while (control != nullptr && control != &outer) control = control->GetContainer();
  return control != nullptr;
}

}  // namespace

void NativeDialog::OnKey(wxKeyEvent& event) {
  if (!HandleKey(event)) event.Skip();
}

bool NativeDialog::HandleKey(const wxKeyEvent& event) {
  const int key = event.GetKeyCode();
  if (event.GetModifiers() == wxMOD_CONTROL && (key == 'C' || key == WXK_INSERT))
    return CopyWithoutSelection();
  if (key == WXK_TAB && (event.GetModifiers() & ~wxMOD_SHIFT) == 0) {
    MoveFocus(!event.ShiftDown());
    return true;
  }
  if (event.GetModifiers() != wxMOD_NONE) return false;
  switch (key) {
    case WXK_ESCAPE:
      ChooseCloseControl();
      return true;
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
      ChooseByEnter();
      return true;
    case WXK_SPACE: {
      auto* const tree = dynamic_cast<TreeControl*>(FocusedControl());
      if (tree != nullptr) tree->ToggleCurrentRow();
      return tree != nullptr;
    }
    case WXK_F7:
      mTextsAreTabStops = !mTextsAreTabStops;
      return true;
    default:
      return ScrollByKey(key);
  }
}

NativeControl* NativeDialog::FocusedControl() {
  wxWindow* const focused = wxWindow::FindFocus();
  const bool isHere = focused != nullptr && wxGetTopLevelParent(focused) == mDialog;
  return isHere ? NativeControl::Find(focused) : nullptr;
}

bool NativeDialog::IsTabStop(const NativeControl& control) const {
  if (!control.CanBeUsed()) return false;
  if (mTextsAreTabStops && !control.GetReadableText().empty()) return true;
  return control.IsTabStop();
}

void NativeDialog::MoveFocus(bool forward) {
  std::vector<NativeControl*> stops = AllControls();
  const NativeControl* const focused = FocusedControl();
  // The focused control stays, even when it is no stop, so that the next one after it is found.
  stops.erase(std::remove_if(
                  stops.begin(), stops.end(),
                  [&](const NativeControl* control) { return control != focused && !IsTabStop(*control); }),
              stops.end());
  if (stops.empty()) return;
  if (!forward) std::reverse(stops.begin(), stops.end());
  const auto place = std::find(stops.begin(), stops.end(), focused);
  Focus(place == stops.end() || place + 1 == stops.end() ? *stops.front() : **(place + 1));
}

void NativeDialog::Focus(NativeControl& control) {
  mArea->ExpectFocus(control.GetWindow());
  control.GetWindow().SetFocus();
  const NativeControl* const row = RowOf(&control);
  const auto show = [&](ScrollArea& area) {
    // As much as there is room for of what belongs to the control, but the control itself in any case.
    if (row != nullptr) area.ScrollToShow(row->GetWindow());
    area.ScrollToShow(control.GetWindow());
  };
  for (NativeControl* outer = control.GetContainer(); outer != nullptr; outer = outer->GetContainer()) {
    auto* const scroll = dynamic_cast<ScrollControl*>(outer);
    if (scroll != nullptr) show(scroll->GetArea());
  }
  show(*mArea);
}

void NativeDialog::FocusFirst() {
  for (ButtonControl* const button : {mOkButton, mCloseControl}) {
    if (button != nullptr && button->CanBeUsed()) {
      Focus(*button);
      return;
    }
  }
  const std::vector<NativeControl*> controls = AllControls();
  const auto place = std::find_if(controls.begin(), controls.end(),
                                  [this](const NativeControl* control) { return IsTabStop(*control); });
  if (place != controls.end()) Focus(**place);
}

void NativeDialog::KeepFocusUsable() {
  const wxWindow* const focused = wxWindow::FindFocus();
  const bool isElsewhere =
      focused != nullptr && wxGetTopLevelParent(const_cast<wxWindow*>(focused)) != mDialog;
  // While another application is in front nothing has the focus, and what had it gets it back.
  if (isElsewhere || (focused == nullptr && !mDialog->IsActive())) return;
  const NativeControl* const control = FocusedControl();
  if (control == nullptr || !control->CanBeUsed()) FocusFirst();
}

void NativeDialog::ChooseByEnter() {
  auto* button = dynamic_cast<ButtonControl*>(FocusedControl());
  if (button == nullptr) button = mOkButton;
  if (button != nullptr) Choose(*button);
}

ScrollArea& NativeDialog::ScrollAreaFor(const NativeControl* focused) {
  ScrollControl* first = nullptr;
  for (NativeControl* const control : AllControls()) {
    auto* const scroll = dynamic_cast<ScrollControl*>(control);
    if (scroll == nullptr || !scroll->CanBeUsed()) continue;
    if (IsIn(focused, *scroll)) return scroll->GetArea();
    if (first == nullptr) first = scroll;
  }
  return first != nullptr ? first->GetArea() : *mArea;
}

bool NativeDialog::ScrollByKey(int key) {
  const NativeControl* const focused = FocusedControl();
  // A tree has a cursor of its own, and so has a text for those who select with the keyboard.
  if (dynamic_cast<const TreeControl*>(focused) != nullptr) return false;
  if (mTextsAreTabStops && dynamic_cast<const TextControl*>(focused) != nullptr) return false;
  ScrollArea& area = ScrollAreaFor(focused);
  switch (key) {
    case WXK_UP:
    case WXK_NUMPAD_UP:
      area.ScrollBy(-1, 0);
      return true;
    case WXK_DOWN:
    case WXK_NUMPAD_DOWN:
      area.ScrollBy(1, 0);
      return true;
    case WXK_PAGEUP:
    case WXK_NUMPAD_PAGEUP:
      area.ScrollBy(0, -1);
      return true;
    case WXK_PAGEDOWN:
    case WXK_NUMPAD_PAGEDOWN:
      area.ScrollBy(0, 1);
      return true;
    case WXK_HOME:
    case WXK_NUMPAD_HOME:
      area.ScrollToTop();
      return true;
    case WXK_END:
    case WXK_NUMPAD_END:
      area.ScrollToEnd();
      return true;
    default:
      return false;
  }
}

// Without a selection the row that has the focus is copied, or else all that there is to read.
bool NativeDialog::CopyWithoutSelection() {
  NativeControl* const focused = FocusedControl();
  auto* const text = dynamic_cast<TextControl*>(focused);
  if (text != nullptr && text->HasSelection()) return false;
  const NativeControl* const row = RowOf(focused);
  wxString copied;
  for (const NativeControl* const control : AllControls()) {
    if (!control->CanBeUsed() || (row != nullptr && !IsIn(control, *row))) continue;
    const wxString read = control->GetReadableText();
    if (read.empty()) continue;
    if (!copied.empty()) copied += "\n";
    copied += read;
  }
  if (!copied.empty() && wxTheClipboard->Open()) {
    wxTheClipboard->SetData(new wxTextDataObject(copied));
    wxTheClipboard->Close();
  }
  return true;
}

}  // namespace qelui::native
