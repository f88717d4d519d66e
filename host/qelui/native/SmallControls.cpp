#include "host/qelui/native/SmallControls.h"

#include <wx/activityindicator.h>
#include <wx/bmpbndl.h>
#include <wx/brush.h>
#include <wx/graphics.h>
#include <wx/image.h>
#include <wx/pen.h>
#include <wx/statbmp.h>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "host/qelui/native/System.h"

namespace qelui::native {

namespace {

/// A white letter in a blue disc, which is seen on light and on dark. The pictures that themes have for it
/// are pale.
wxImage DrawInformation(int side) {
  wxImage image(side, side);
  image.InitAlpha();
  std::fill_n(image.GetAlpha(), side * side, wxALPHA_TRANSPARENT);
  const std::unique_ptr<wxGraphicsContext> context(wxGraphicsContext::Create(image));
  const double unit = side / 16.0;
  context->SetPen(*wxTRANSPARENT_PEN);
  context->SetBrush(wxBrush(wxColour(0x35, 0x84, 0xe4)));
  context->DrawEllipse(unit, unit, 14 * unit, 14 * unit);
  context->SetBrush(*wxWHITE_BRUSH);
  context->DrawEllipse(7 * unit, 3.5 * unit, 2 * unit, 2 * unit);
  context->DrawRoundedRectangle(7 * unit, 6.5 * unit, 2 * unit, 6 * unit, unit);
  context->Flush();
  return image;
}

/// In exactly that size: themes have pictures of a few sizes only.
wxBitmap MakeBitmap(IconKind kind, int side) {
  if (kind == IconKind::kInformation) return wxBitmap(DrawInformation(side));
  const wxImage image = GetMessagePicture(kind);
  return wxBitmap(image.IsOk() ? image.Scale(side, side, wxIMAGE_QUALITY_HIGH) : wxImage(side, side));
}

/// As high as two lines of text, so that icons grow with it; twice as fine for fine screens. Made once for
/// all icons that are there at the same time, because a dialog may have hundreds; the next dialog asks the
/// theme again.
std::shared_ptr<const wxBitmapBundle> GetPicture(IconKind kind, const wxWindow& parent) {
  static std::map<std::pair<IconKind, int>, std::weak_ptr<const wxBitmapBundle>> pictures;
  const int side = 2 * parent.GetCharHeight();
  std::weak_ptr<const wxBitmapBundle>& known = pictures[{kind, side}];
  if (auto picture = known.lock()) return picture;
  const auto picture = std::make_shared<const wxBitmapBundle>(
      wxBitmapBundle::FromBitmaps(MakeBitmap(kind, side), MakeBitmap(kind, 2 * side)));
  known = picture;
  return picture;
}

}  // namespace

IconControl::IconControl(ControlHost& host, wxWindow& parent, IconKind kind, const std::u16string& name)
    : IconControl(host, parent, GetPicture(kind, parent)) {
  SetAccessibleName(name);
}

IconControl::IconControl(ControlHost& host, wxWindow& parent, Picture picture)
    : ControlOf<Icon>(host, new wxStaticBitmap(&parent, wxID_ANY, *picture)), mPicture(std::move(picture)) {}

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
