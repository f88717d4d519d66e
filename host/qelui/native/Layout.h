// Where the controls of a view stand: one below or beside the other, with texts that wrap at the width that
// there is. Plain arithmetic in pixels, without a toolkit.
#pragma once

#include <functional>
#include <vector>

#include "platform/qelui/Controls.h"

namespace qelui::native {

struct Rectangle {
  int mLeft = 0;
  int mTop = 0;
  int mWidth = 0;
  int mHeight = 0;

  friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

/// Something that has a place in a view.
class LayoutItem {
 public:
  LayoutItem() = default;
  virtual ~LayoutItem() = default;
  LayoutItem(const LayoutItem&) = delete;
  LayoutItem& operator=(const LayoutItem&) = delete;

  /// An item that is not shown takes no place.
  [[nodiscard]] virtual bool IsShown() const = 0;

  /// The least width in which the item is of use.
  [[nodiscard]] virtual int GetMinimumWidth() = 0;
  /// The width that the item would like, without wrapping.
  [[nodiscard]] virtual int GetPreferredWidth() = 0;
  /// The height that shows the whole item at that width.
  [[nodiscard]] virtual int GetPreferredHeight(int width) = 0;
  /// The least height in which the item is of use, less than the preferred one where it can scroll.
  [[nodiscard]] virtual int GetMinimumHeight(int width) { return GetPreferredHeight(width); }

  /// Whether the item takes the width or height that is left over.
  [[nodiscard]] virtual bool TakesWidth() const { return false; }
  [[nodiscard]] virtual bool TakesHeight() const { return false; }
  /// Whether an item in a view that goes down is as wide as the view.
  [[nodiscard]] virtual bool FillsWidth() const { return TakesWidth(); }

  /// Whether the item stands at the top of a row instead of in its middle.
  [[nodiscard]] virtual bool StandsAtTop() const { return false; }

  virtual void Place(const Rectangle& rectangle) = 0;
};

/// Lays items out in one direction. Items across a row stand in its middle or at its top. A row that is too
/// narrow for what is in it goes down instead.
class StackLayout {
 public:
  StackLayout(Direction direction, int gap) : mDirection(direction), mGap(gap) {}

  void Add(LayoutItem& item) { mItems.push_back(&item); }

  /// Puts height that nobody takes before the last item instead of after it.
  void KeepLastAtEnd() { mKeepsLastAtEnd = true; }

  [[nodiscard]] int GetMinimumWidth() const;
  [[nodiscard]] int GetPreferredWidth() const;
  [[nodiscard]] int GetPreferredHeight(int width) const;
  [[nodiscard]] int GetMinimumHeight(int width) const;
  [[nodiscard]] bool TakesHeight() const;
  void Place(const Rectangle& rectangle) const;

 private:
  using HeightOf = std::function<int(LayoutItem&, int width)>;

  [[nodiscard]] std::vector<LayoutItem*> ShownItems() const;
  [[nodiscard]] int Together(const std::vector<int>& widths, int gaps) const;
  [[nodiscard]] bool GoesAcrossIn(int width) const;
  [[nodiscard]] std::vector<int> WidthsAcross(const std::vector<LayoutItem*>& items, int width) const;
  [[nodiscard]] int Height(int width, const HeightOf& heightOf) const;
  void PlaceAcross(const Rectangle& rectangle) const;
  void PlaceDown(const Rectangle& rectangle) const;

  Direction mDirection;
  int mGap;
  bool mKeepsLastAtEnd = false;
  std::vector<LayoutItem*> mItems;
};

}  // namespace qelui::native
