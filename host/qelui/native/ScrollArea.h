// A window that scrolls a view vertically when the view is higher than the window.
#pragma once

#include <memory>
#include <optional>

#include "host/qelui/native/ViewControl.h"

class wxScrolledWindow;

namespace qelui::native {

class ScrollArea {
 public:
  ScrollArea(ControlHost& host, wxWindow& parent, int gapInBorders, ViewRole role);
  ~ScrollArea();
  ScrollArea(const ScrollArea&) = delete;
  ScrollArea& operator=(const ScrollArea&) = delete;

  [[nodiscard]] wxScrolledWindow& GetWindow() const { return *mWindow; }
  [[nodiscard]] ViewControl& GetView() const { return *mView; }

  /// Gives the view the width that there is, and at least the height that `needed` says for a width.
  void LayOut(const std::function<int(int width)>& needed);

  /// Scrolls so far that the window inside is seen, its beginning if it is larger.
  void ScrollToShow(const wxWindow& inside);
  /// Scrolls by lines of text and by pages, downwards when positive.
  void ScrollBy(int lines, int pages);
  void ScrollToTop();
  /// The end stays in view while the view grows, until something else is scrolled to.
  void ScrollToEnd();

  /// The focus goes to a window inside, which needs no scrolling, as when the whole window is activated.
  void ExpectFocus(const wxWindow& inside) { mLastFocused = &inside; }

  void SetLength(int height);

  /// The width that a vertical scroll bar takes, with the gap before it.
  [[nodiscard]] int GetBarWidth() const;

 private:
  [[nodiscard]] int GetPosition() const;
  void SetPosition(int position);

  wxScrolledWindow* mWindow;  ///< belongs to its parent window
  std::unique_ptr<ViewControl> mView;
  std::optional<int> mEnd;  ///< the position that was the end, when the end is what was scrolled to
  const wxWindow* mLastFocused = nullptr;  ///< to compare with, not to look into
};

}  // namespace qelui::native
