#include "host/qelui/native/NativeControl.h"

#include <wx/window.h>

namespace qelui::native {

void NativeControl::MakeFindable(NativeControl& inner) {
  inner.mWindow->SetClientData(&inner);
}

NativeControl* NativeControl::Find(const wxWindow* window) {
  while (window != nullptr && window->GetClientData() == nullptr) window = window->GetParent();
  return window != nullptr ? static_cast<NativeControl*>(window->GetClientData()) : nullptr;
}

void NativeControl::Place(const Rectangle& rectangle) {
  mWindow->SetSize(rectangle.mLeft, rectangle.mTop, rectangle.mWidth, rectangle.mHeight);
}

bool NativeControl::CanBeUsed() const {
  return mIsShown && mWindow->IsThisEnabled() && (mContainer == nullptr || mContainer->CanBeUsed());
}

void NativeControl::SetShown(bool shown) {
  if (shown == mIsShown) return;
  mIsShown = shown;
  mWindow->Show(shown);
  ShownChanged();
  ContentChanged();
}

void NativeControl::ContentChanged() {
  if (mContainer != nullptr) {
    mContainer->ContentChanged();
  } else {
    mHost.LayOutSoon();
  }
}

}  // namespace qelui::native
