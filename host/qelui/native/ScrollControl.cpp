#include "host/qelui/native/ScrollControl.h"

#include <wx/gdicmn.h>
#include <wx/scrolwin.h>

#include <algorithm>
#include <utility>

#include "host/qelui/native/Measures.h"

namespace qelui::native {

namespace {

/// Less than that many lines of a long content are of no use.
constexpr int kLeastLines = 6;
constexpr int kMostScreens = 2;

}  // namespace

ScrollControl::ScrollControl(ControlHost& host, wxWindow& parent, const std::u16string& name)
    : ScrollControl(host, std::make_unique<ScrollArea>(host, parent, 1, ViewRole::kList)) {
  SetAccessibleName(name);
}

ScrollControl::ScrollControl(ControlHost& host, std::unique_ptr<ScrollArea> area)
    : ControlOf<ScrollView>(host, &area->GetWindow()), mArea(std::move(area)) {
  SetContainerOf(GetContent());
}

Size ScrollControl::MeasureContent() {
  ViewControl& content = GetContent();
  const int width =
      std::max(content.GetMinimumWidth(), std::min(content.GetPreferredWidth(), ReadingWidth(GetWindow())));
  return {width, content.GetPreferredHeight(width)};
}

void ScrollControl::SetScrollBarSize(const Size& contentSize) {
  mArea->SetLength(contentSize.mHeight);
}

void ScrollControl::ScrollIntoView(const Control& control) {
  const auto* const native = dynamic_cast<const NativeControl*>(&control);
  if (native == nullptr) return;
  Host().LayOutNow();
  if (mArea->GetWindow().IsDescendant(&native->GetWindow())) mArea->ScrollToShow(native->GetWindow());
}

void ScrollControl::Update() {
  Host().LayOutNow();
}

void ScrollControl::ContentChanged() {
  mIsStale = true;
  ControlOf<ScrollView>::ContentChanged();
}

int ScrollControl::GetMinimumWidth() {
  return GetContent().GetMinimumWidth() + mArea->GetBarWidth();
}

int ScrollControl::GetPreferredWidth() {
  return GetContent().GetPreferredWidth() + mArea->GetBarWidth();
}

int ScrollControl::GetPreferredHeight(int width) {
  // No dialog becomes that high, so it need not be known how much higher it would have to be. A line for each
  // row, or texts that do not wrap, tell it sooner than texts that are wrapped at one more width.
  const int enough = kMostScreens * wxGetDisplaySize().GetHeight();
  const int lines = GetContent().CountShown() * GetWindow().GetCharHeight();
  if (lines > enough) return lines;
  const int unwrapped = GetContent().GetPreferredHeight(GetContent().GetPreferredWidth());
  return unwrapped > enough ? unwrapped : GetContent().GetPreferredHeight(width);
}

int ScrollControl::GetMinimumHeight(int width) {
  const int least = kLeastLines * GetWindow().GetCharHeight();
  // The height of a long content is known without measuring it at one more width.
  if (GetContent().CountShown() > kLeastLines) return least;
  return std::min(GetPreferredHeight(width), least);
}

void ScrollControl::Place(const Rectangle& rectangle) {
  ControlOf<ScrollView>::Place(rectangle);
  if (!mIsStale && mPlaced.mWidth == rectangle.mWidth && mPlaced.mHeight == rectangle.mHeight) return;
  mIsStale = false;
  mPlaced = rectangle;
  mArea->LayOut([this](int width) { return GetContent().GetPreferredHeight(width); });
}

}  // namespace qelui::native
