#include "host/qelui/native/SmallControls.h"

#include <wx/activityindicator.h>
#include <wx/artprov.h>
#include <wx/statbmp.h>

namespace qelui::native {

namespace {

wxArtID ArtFor(IconKind kind) {
  switch (kind) {
    case IconKind::kInformation:
      return wxART_INFORMATION;
    case IconKind::kWarning:
      return wxART_WARNING;
    case IconKind::kError:
      return wxART_ERROR;
  }
  return wxART_INFORMATION;
}

/// As high as two lines of text, so that icons grow with it.
wxSize IconSize(const wxWindow& parent) {
  const int side = 2 * parent.GetCharHeight();
  return {side, side};
}

}  // namespace

IconControl::IconControl(ControlHost& host, wxWindow& parent, IconKind kind, const std::u16string& name)
    : ControlOf<Icon>(host, new wxStaticBitmap(&parent, wxID_ANY,
                                               wxArtProvider::GetBitmapBundle(ArtFor(kind), wxART_MESSAGE_BOX,
                                                                              IconSize(parent)))) {
  SetAccessibleName(name);
}

int IconControl::GetMinimumWidth() {
  return GetPreferredWidth();
}

int IconControl::GetPreferredWidth() {
  return GetWindow().GetBestSize().GetWidth();
}

int IconControl::GetPreferredHeight(int /*width*/) {
  return GetWindow().GetBestSize().GetHeight();
}

ProgressControl::ProgressControl(ControlHost& host, wxWindow& parent, const std::u16string& name)
    : ControlOf<ProgressIndicator>(host, new wxActivityIndicator(&parent)),
      mIndicator(static_cast<wxActivityIndicator*>(&GetWindow())) {
  SetAccessibleName(name);
  mIndicator->Start();
}

void ProgressControl::ShownChanged() {
  if (IsShown()) {
    mIndicator->Start();
  } else {
    mIndicator->Stop();
  }
}

int ProgressControl::GetMinimumWidth() {
  return GetPreferredWidth();
}

int ProgressControl::GetPreferredWidth() {
  return mIndicator->GetBestSize().GetWidth();
}

int ProgressControl::GetPreferredHeight(int /*width*/) {
  return mIndicator->GetBestSize().GetHeight();
}

}  // namespace qelui::native
