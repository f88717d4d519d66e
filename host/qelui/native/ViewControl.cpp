#include "host/qelui/native/ViewControl.h"

#include <wx/dcclient.h>
#include <wx/panel.h>
#include <wx/settings.h>

#include <algorithm>
#include <utility>

#include "host/qelui/native/ButtonControl.h"
#include "host/qelui/native/Measures.h"
#include "host/qelui/native/ScrollControl.h"
#include "host/qelui/native/SmallControls.h"
#include "host/qelui/native/TextControl.h"
#include "host/qelui/native/TreeControl.h"

namespace qelui::native {

namespace {

// In usual borders.
constexpr int kGapAcross = 2;
constexpr int kPaddingInsideBorder = 2;

/// A line that is seen on the background and does not shout, in light themes and dark ones.
wxColour LineColour(const wxWindow& window) {
  constexpr double kShareOfText = 0.3;
  const wxColour text = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
  const wxColour background = window.GetBackgroundColour();
  return {wxColour::AlphaBlend(text.Red(), background.Red(), kShareOfText),
          wxColour::AlphaBlend(text.Green(), background.Green(), kShareOfText),
          wxColour::AlphaBlend(text.Blue(), background.Blue(), kShareOfText)};
}

}  // namespace

ViewControl::ViewControl(ControlHost& host, wxWindow& parent, Direction direction, int gapInBorders)
    : ControlOf<View>(host, new wxPanel(&parent)),
      mPanel(static_cast<wxPanel*>(&GetWindow())),
      mDirection(direction),
      mLayout(direction,
              (direction == Direction::kAcross ? kGapAcross : gapInBorders) * UsualBorder(parent)) {}

ViewControl::~ViewControl() = default;

template <class Added, class... Arguments>
Added& ViewControl::Add(Arguments&&... arguments) {
  auto item = std::make_unique<Added>(Host(), *mPanel, std::forward<Arguments>(arguments)...);
  Added& added = *item;
  mItems.push_back(std::move(item));
  NativeControl& control = added;
  SetContainerOf(control);
  MakeFindable(control);
  mControls.push_back(&control);
  mLayout.Add(added);
  ContentChanged();
  return added;
}

StaticText& ViewControl::AddText(const std::u16string& text) {
  return Add<TextControl>(text);
}

Icon& ViewControl::AddIcon(IconKind kind, const std::u16string& name) {
  return Add<IconControl>(kind, name);
}

Button& ViewControl::AddButton(const std::u16string& caption) {
  return Add<ButtonControl>(ButtonLook::kPush, caption);
}

Button& ViewControl::AddHotText(const std::u16string& caption) {
  return Add<ButtonControl>(ButtonLook::kLink, caption);
}

ProgressIndicator& ViewControl::AddProgressIndicator(const std::u16string& name) {
  return Add<ProgressControl>(name);
}

Tree& ViewControl::AddTree(std::size_t columnCount, const std::u16string& name) {
  return Add<TreeControl>(columnCount, name);
}

View& ViewControl::AddView(Direction direction) {
  return Add<ViewControl>(direction);
}

ScrollView& ViewControl::AddScrollView(const std::u16string& name) {
  return Add<ScrollControl>(name);
}

void ViewControl::AddSpace() {
  mItems.push_back(std::make_unique<Space>(mDirection));
  mLayout.Add(*mItems.back());
  ContentChanged();
}

void ViewControl::SetTakesSpace(bool takesSpace) {
  mTakesSpace = takesSpace;
  ContentChanged();
}

void ViewControl::SetHasBorder(bool hasBorder) {
  if (hasBorder == mHasBorder) return;
  mHasBorder = hasBorder;
  const auto paint = [this](wxPaintEvent&) { PaintBorder(); };
  if (hasBorder) {
    mPanel->Bind(wxEVT_PAINT, paint);
    mPanel->SetBackgroundStyle(wxBG_STYLE_SYSTEM);
  }
  SetPadding(hasBorder ? kPaddingInsideBorder : 0);
}

void ViewControl::SetPadding(int borders) {
  mPadding = borders * UsualBorder(*mPanel);
  ContentChanged();
}

void ViewControl::ForEachControl(const std::function<void(NativeControl&)>& visit) {
  for (NativeControl* const control : mControls) {
    visit(*control);
    if (auto* const view = dynamic_cast<ViewControl*>(control)) view->ForEachControl(visit);
    if (auto* const scroll = dynamic_cast<ScrollControl*>(control))
      scroll->GetContent().ForEachControl(visit);
  }
}

void ViewControl::ContentChanged() {
  mMeasured = {};
  NativeControl::ContentChanged();
}

void ViewControl::InnerChanged(const NativeControl& inner) {
  mLayout.ForgetItem(inner);
  ContentChanged();
}

void ViewControl::PaintBorder() {
  wxPaintDC paint(mPanel);
  if (!mHasBorder) return;
  paint.SetPen(wxPen(LineColour(*mPanel)));
  paint.SetBrush(*wxTRANSPARENT_BRUSH);
  paint.DrawRoundedRectangle(wxRect(mPanel->GetClientSize()), 3);
}

int ViewControl::GetMinimumWidth() {
  if (!mMeasured.mMinimumWidth) mMeasured.mMinimumWidth = mLayout.GetMinimumWidth() + 2 * mPadding;
  return *mMeasured.mMinimumWidth;
}

int ViewControl::GetPreferredWidth() {
  if (!mMeasured.mPreferredWidth) mMeasured.mPreferredWidth = mLayout.GetPreferredWidth() + 2 * mPadding;
  return *mMeasured.mPreferredWidth;
}

int ViewControl::GetPreferredHeight(int width) {
  return mMeasured.mPreferredHeights.Get(
      width, [&] { return mLayout.GetPreferredHeight(width - 2 * mPadding) + 2 * mPadding; });
}

int ViewControl::GetMinimumHeight(int width) {
  return mMeasured.mMinimumHeights.Get(
      width, [&] { return mLayout.GetMinimumHeight(width - 2 * mPadding) + 2 * mPadding; });
}

bool ViewControl::TakesWidth() const {
  return mTakesSpace;
}

void ViewControl::Place(const Rectangle& rectangle) {
  ControlOf<View>::Place(rectangle);
  mLayout.Place({mPadding, mPadding, rectangle.mWidth - 2 * mPadding, rectangle.mHeight - 2 * mPadding});
  if (mHasBorder) mPanel->Refresh();
}

}  // namespace qelui::native
