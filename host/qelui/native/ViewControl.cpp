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

constexpr int kGapDown = 1;

constexpr std::size_t kGroupSize = 50;

/// Nothing in a row waits for the moments in which nothing else is to be done, and to tell thousands of
/// controls of each of them would take most of the time.
class GroupPanel final : public wxPanel {
 public:
  explicit GroupPanel(wxWindow& parent) : wxPanel(&parent) {}

  bool SendIdleEvents(wxIdleEvent& /*event*/) override { return false; }
};

wxPanel* MakePanel(wxWindow& parent, ViewRole role) {
  return role == ViewRole::kGroup ? new GroupPanel(parent) : new wxPanel(&parent);
}

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

ViewControl::ViewControl(ControlHost& host, wxWindow& parent, Direction direction, int gapInBorders,
                         ViewRole role)
    : ControlOf<View>(host, MakePanel(parent, role)),
      mPanel(static_cast<wxPanel*>(&GetWindow())),
      mDirection(direction),
      mRole(role),
      mLayout(direction,
              (direction == Direction::kAcross ? kGapAcross : gapInBorders) * UsualBorder(parent)) {}

ViewControl::~ViewControl() = default;

ViewControl& ViewControl::Destination() {
  if (mRole != ViewRole::kList) return *this;
  auto* const last = mControls.empty() ? nullptr : static_cast<ViewControl*>(mControls.back());
  if (last != nullptr && last->mItems.size() < kGroupSize) return *last;
  return Append<ViewControl>(Direction::kDown, kGapDown, ViewRole::kGroup);
}

template <class Added, class... Arguments>
Added& ViewControl::Append(Arguments&&... arguments) {
  auto item = std::make_unique<Added>(Host(), *mPanel, std::forward<Arguments>(arguments)...);
  Added& added = *item;
  mItems.push_back(std::move(item));
  NativeControl& control = added;
  SetContainerOf(control);
  if (mRole != ViewRole::kList) MakeFindable(control);
  mControls.push_back(&control);
  mLayout.Add(added);
  ContentChanged();
  return added;
}

template <class Added, class... Arguments>
Added& ViewControl::Add(Arguments&&... arguments) {
  return Destination().template Append<Added>(std::forward<Arguments>(arguments)...);
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
  return Add<ViewControl>(direction, kGapDown, ViewRole::kPlain);
}

ScrollView& ViewControl::AddScrollView(const std::u16string& name) {
  return Add<ScrollControl>(name);
}

void ViewControl::AddSpace() {
  ViewControl& destination = Destination();
  destination.mItems.push_back(std::make_unique<Space>(mDirection));
  destination.mLayout.Add(*destination.mItems.back());
  destination.ContentChanged();
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
    // The groups of a list are no controls of their own.
    if (mRole != ViewRole::kList) visit(*control);
    if (auto* const view = dynamic_cast<ViewControl*>(control)) view->ForEachControl(visit);
    if (auto* const scroll = dynamic_cast<ScrollControl*>(control))
      scroll->GetContent().ForEachControl(visit);
  }
}

void ViewControl::ContentChanged() {
  mMeasured = {};
  mPlacedSize.reset();
  // The window of a group without anything to show would be left where it was.
  if (IsGroup()) mPanel->Show(IsShown());
  NativeControl::ContentChanged();
}

bool ViewControl::IsShown() const {
  if (!IsGroup()) return NativeControl::IsShown();
  return std::any_of(mControls.begin(), mControls.end(),
                     [](const NativeControl* control) { return control->IsShown(); });
}

int ViewControl::CountShown() const {
  if (mMeasured.mShownCount) return *mMeasured.mShownCount;
  int count = 0;
  for (const NativeControl* const control : mControls) {
    if (mRole == ViewRole::kList) {
      count += static_cast<const ViewControl*>(control)->CountShown();
    } else if (control->IsShown()) {
      ++count;
    }
  }
  mMeasured.mShownCount = count;
  return count;
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

bool ViewControl::TakesHeight() const {
  if (!mMeasured.mTakesHeight) mMeasured.mTakesHeight = mLayout.TakesHeight();
  return *mMeasured.mTakesHeight;
}

void ViewControl::Place(const Rectangle& rectangle) {
  ControlOf<View>::Place(rectangle);
  const wxSize size(rectangle.mWidth, rectangle.mHeight);
  if (size == mPlacedSize) return;
  mPlacedSize = size;
  mLayout.Place({mPadding, mPadding, rectangle.mWidth - 2 * mPadding, rectangle.mHeight - 2 * mPadding});
  if (mHasBorder) mPanel->Refresh();
}

}  // namespace qelui::native
