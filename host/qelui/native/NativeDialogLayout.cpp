#include <wx/dialog.h>
#include <wx/display.h>
#include <wx/scrolwin.h>

#include <algorithm>

#include "host/qelui/native/Measures.h"
#include "host/qelui/native/NativeDialog.h"
#include "host/qelui/native/ScrollControl.h"
#include "host/qelui/native/TreeControl.h"

namespace qelui::native {

namespace {

constexpr double kShareOfScreen = 0.8;
/// A dialog with a short content is that wide, and none can be made narrower.
constexpr int kLeastLetters = 40;
constexpr int kTreeLetters = 60;
constexpr int kTreeLines = 14;

/// The largest content of a dialog.
wxSize Limit(const wxDialog& dialog) {
  const wxWindow* const where = dialog.GetParent() != nullptr ? dialog.GetParent() : &dialog;
  const int display = std::max(0, wxDisplay::GetFromWindow(where));
  const wxSize screen = wxDisplay(static_cast<unsigned>(display)).GetClientArea().GetSize();
  return {static_cast<int>(screen.GetWidth() * kShareOfScreen),
          static_cast<int>(screen.GetHeight() * kShareOfScreen)};
}

}  // namespace

/// Room for a tree that will be shown later, when its rows are known.
wxSize NativeDialog::RoomForHiddenTrees() {
  wxSize room(0, 0);
  for (NativeControl* const control : AllControls()) {
    if (dynamic_cast<const TreeControl*>(control) == nullptr || control->IsShown()) continue;
    room.IncTo({kTreeLetters * mDialog->GetCharWidth(), kTreeLines * mDialog->GetCharHeight()});
  }
  return room;
}

void NativeDialog::ChooseSize() {
  // Once it is open, what comes into a content whose size was told has to scroll: a dialog that changes its
  // size while rows come disturbs its reader.
  if (mLevel && mContentSize) return;
  ViewControl& view = mArea->GetView();
  const wxSize limit = Limit(*mDialog);
  const wxSize trees = RoomForHiddenTrees();
  const int leastWidth =
      std::min(std::max(view.GetMinimumWidth(), kLeastLetters * mDialog->GetCharWidth()), limit.GetWidth());
  const int mostWidth = std::max(leastWidth, std::min(ReadingWidth(*mDialog), limit.GetWidth()));
  const int width = std::clamp(std::max(view.GetPreferredWidth(), trees.GetWidth()), leastWidth, mostWidth);
  const int height = view.GetPreferredHeight(width) + trees.GetHeight();
  wxSize size(width, std::min(height, limit.GetHeight()));
  // A short dialog that is made very narrow gets higher than it was at first, and then scrolls as a whole.
  mLeastSize = {leastWidth, std::min(view.GetMinimumHeight(leastWidth), size.GetHeight())};
  ApplyLeastSize();
  if (mLevel) {
    // An open dialog only grows, and does not fight a user who made it smaller.
    const wxSize present = mDialog->GetClientSize();
    wxSize larger = present;
    larger.IncTo(present == mChosenSize ? size : mLeastSize);
    if (larger == present) return;
    SetSize(larger);
    // It grows to all sides, and stays in the middle if it was there.
    const wxSize added = larger - present;
    wxPoint corner = mDialog->GetPosition() - wxSize(added.GetWidth() / 2, added.GetHeight() / 2);
    corner.x = std::max(corner.x, 0);
    corner.y = std::max(corner.y, 0);
    mDialog->Move(corner);
    return;
  }
  if (mContentSize) {
    LayOutAt(size);
    size.SetWidth(std::min(size.GetWidth() + MissingForContent().GetWidth(), limit.GetWidth()));
    // What is wider may be lower.
    size.SetHeight(std::min(view.GetPreferredHeight(size.GetWidth()), limit.GetHeight()));
    LayOutAt(size);
    size.SetHeight(std::min(size.GetHeight() + MissingForContent().GetHeight(), limit.GetHeight()));
  }
  SetSize(size);
  LayOutAt(size);
}

// Again and again, because the frame around the content is not known before the window is shown.
void NativeDialog::ApplyLeastSize() {
  if (mDialog->GetMinClientSize() != mLeastSize) mDialog->SetMinClientSize(mLeastSize);
}

void NativeDialog::SetSize(const wxSize& size) {
  mDialog->SetClientSize(size);
  mChosenSize = size;
}

/// What the view that scrolls, or without one the whole content, lacks to be as large as was asked for.
wxSize NativeDialog::MissingForContent() {
  wxSize shown = mArea->GetView().GetWindow().GetSize();
  int bar = 0;
  for (NativeControl* const control : AllControls()) {
    const auto* const scroll = dynamic_cast<ScrollControl*>(control);
    if (scroll == nullptr || !scroll->CanBeUsed()) continue;
    shown = scroll->GetWindow().GetSize();
    bar = mContentSize->mHeight > shown.GetHeight() ? scroll->GetArea().GetBarWidth() : 0;
    break;
  }
  return {std::max(0, mContentSize->mWidth + bar - shown.GetWidth()),
          std::max(0, mContentSize->mHeight - shown.GetHeight())};
}

void NativeDialog::LayOutNow() {
  ChooseSize();
  if (mLevel) LayOutAt(mDialog->GetClientSize());
}

void NativeDialog::LayOutAt(const wxSize& size) {
  mArea->GetWindow().SetSize(size);
  mArea->LayOut([this](int width) { return mArea->GetView().GetMinimumHeight(width); });
}

}  // namespace qelui::native
