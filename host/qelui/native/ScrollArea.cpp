#include "host/qelui/native/ScrollArea.h"

#include <wx/scrolwin.h>
#include <wx/settings.h>

#include <algorithm>

#include "host/qelui/native/Measures.h"

namespace qelui::native {

namespace {

constexpr int kMuchTooLong = 2;

/// Scrolls only when told to, so that one place decides.
class Window final : public wxScrolledWindow {
 public:
  explicit Window(wxWindow& parent)
      : wxScrolledWindow(&parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL) {}

  bool ShouldScrollToChildOnFocus(wxWindow* /*child*/) override { return false; }
};

/// Counted from window to window, because windows that were never shown have no place on the screen.
int TopWithin(const wxWindow& outer, const wxWindow& inner) {
  int top = 0;
  for (const wxWindow* window = &inner; window != &outer && window != nullptr; window = window->GetParent())
    top += window->GetPosition().y;
  return top;
}

}  // namespace

ScrollArea::ScrollArea(ControlHost& host, wxWindow& parent, int gapInBorders, ViewRole role)
    : mWindow(new Window(parent)),
      mView(std::make_unique<ViewControl>(host, *mWindow, Direction::kDown, gapInBorders, role)) {
  ShowScrollBarsAlways(*mWindow);
  mWindow->SetScrollRate(0, mWindow->GetCharHeight());
  mWindow->Bind(wxEVT_CHILD_FOCUS, [this](wxChildFocusEvent& event) {
    event.Skip();
    const wxWindow* const focused = wxWindow::FindFocus();
    if (focused == nullptr || focused == mLastFocused) return;
    if (!mWindow->IsDescendant(const_cast<wxWindow*>(focused))) return;
    mLastFocused = focused;
    ScrollToShow(*focused);
  });
}

ScrollArea::~ScrollArea() = default;

int ScrollArea::GetBarWidth() const {
  return std::max(0, wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, mWindow)) + UsualBorder(*mWindow);
}

void ScrollArea::LayOut(const std::function<int(int width)>& needed) {
  // The wheel and the scroll bar scroll elsewhere, too.
  const bool isAtEnd = mEnd && *mEnd == GetPosition();
  const wxSize size = mWindow->GetSize();
  int width = std::max(0, size.GetWidth() - GetBarWidth());
  int height = needed(width);
  // A content that is much too long beside the bar is too long without the bar as well, which would take time
  // to find out.
  if (height <= kMuchTooLong * size.GetHeight()) {
    const int heightWithoutBar = needed(size.GetWidth());
    if (heightWithoutBar <= size.GetHeight()) {
      width = size.GetWidth();
      height = heightWithoutBar;
    }
  }
  SetLength(height);
  const wxPoint origin = mWindow->CalcScrolledPosition(wxPoint(0, 0));
  mView->Place({origin.x, origin.y, width, std::max(height, size.GetHeight())});
  if (isAtEnd) ScrollToEnd();
}

void ScrollArea::SetLength(int height) {
  mWindow->SetVirtualSize(0, height);
}

int ScrollArea::GetPosition() const {
  return mWindow->CalcUnscrolledPosition(wxPoint(0, 0)).y;
}

void ScrollArea::SetPosition(int position) {
  mEnd.reset();
  int unit = 0;
  mWindow->GetScrollPixelsPerUnit(nullptr, &unit);
  if (unit > 0) mWindow->Scroll(-1, std::max(0, position) / unit);
}

void ScrollArea::ScrollToShow(const wxWindow& inside) {
  mEnd.reset();
  int unit = 0;
  mWindow->GetScrollPixelsPerUnit(nullptr, &unit);
  const int top = TopWithin(*mWindow, inside);
  const int bottom = top + inside.GetSize().GetHeight();
  const int height = mWindow->GetClientSize().GetHeight();
  if (top >= 0 && bottom <= height) return;
  if (top < 0 || bottom - top > height) {
    SetPosition(GetPosition() + top);
  } else {
    // Rounded up to whole steps, so that the end is seen.
    SetPosition(GetPosition() + bottom - height + unit - 1);
  }
}

void ScrollArea::ScrollBy(int lines, int pages) {
  int unit = 0;
  mWindow->GetScrollPixelsPerUnit(nullptr, &unit);
  if (unit == 0) return;
  // A page keeps a line in common with the one before.
  const int linesOfPage = std::max(1, mWindow->GetClientSize().GetHeight() / unit - 1);
  SetPosition(GetPosition() + (lines + pages * linesOfPage) * unit);
}

void ScrollArea::ScrollToTop() {
  SetPosition(0);
}

void ScrollArea::ScrollToEnd() {
  SetPosition(mWindow->GetVirtualSize().GetHeight());
  mEnd = GetPosition();
}

}  // namespace qelui::native
