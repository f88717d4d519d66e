#include "host/qelui/native/Layout.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace qelui::native {

namespace {

int WidthInColumn(const LayoutItem& item, int preferredWidth, int width) {
  return item.FillsWidth() ? width : std::min(preferredWidth, width);
}

int Sum(const std::vector<int>& lengths) {
  return std::accumulate(lengths.begin(), lengths.end(), 0);
}

int Gaps(const std::vector<LayoutItem*>& items, int gap) {
  return items.empty() ? 0 : gap * (static_cast<int>(items.size()) - 1);
}

std::vector<int> Widths(const std::vector<LayoutItem*>& items, int (LayoutItem::*widthOf)()) {
  std::vector<int> widths(items.size());
  std::transform(items.begin(), items.end(), widths.begin(),
                 [&](LayoutItem* item) { return (item->*widthOf)(); });
  return widths;
}

/// Brings the sum of the lengths down by `excess`, as far as the least lengths allow: always from the longest
/// first, so that a short text beside a long one keeps its line.
void Shrink(std::vector<int>& lengths, const std::vector<int>& least, int excess) {
  while (excess > 0) {
    int longest = 0;
    int next = 0;
    int count = 0;
    for (std::size_t index = 0; index < lengths.size(); ++index) {
      if (lengths[index] <= least[index]) continue;
      if (lengths[index] > longest) {
        next = longest;
        longest = lengths[index];
        count = 1;
      } else if (lengths[index] == longest) {
        ++count;
      } else {
        next = std::max(next, lengths[index]);
      }
    }
    if (count == 0) return;
    const int step = std::max(1, std::min(longest - next, excess / count));
    for (std::size_t index = 0; index < lengths.size() && excess > 0; ++index) {
      if (lengths[index] != longest || lengths[index] <= least[index]) continue;
      const int shrunk = std::max(least[index], longest - std::min(step, excess));
      excess -= lengths[index] - shrunk;
      lengths[index] = shrunk;
    }
  }
}

/// Spreads `rest` over the lengths that may grow.
void Grow(std::vector<int>& lengths, const std::vector<bool>& grows, int rest) {
  int count = static_cast<int>(std::count(grows.begin(), grows.end(), true));
  for (std::size_t index = 0; index < lengths.size() && count > 0; ++index) {
    if (!grows[index]) continue;
    const int share = rest / count;
    lengths[index] += share;
    rest -= share;
    --count;
  }
}

}  // namespace

std::vector<LayoutItem*> StackLayout::ShownItems() const {
  std::vector<LayoutItem*> shown;
  std::copy_if(mItems.begin(), mItems.end(), std::back_inserter(shown),
               [](const LayoutItem* item) { return item->IsShown(); });
  return shown;
}

bool StackLayout::GoesAcrossIn(int width) const {
  return mDirection == Direction::kAcross && GetMinimumWidth() <= width;
}

int StackLayout::GetMinimumWidth() const {
  const std::vector<LayoutItem*> items = ShownItems();
  return Together(Widths(items, &LayoutItem::GetMinimumWidth), Gaps(items, mGap));
}

int StackLayout::GetPreferredWidth() const {
  const std::vector<LayoutItem*> items = ShownItems();
  return Together(Widths(items, &LayoutItem::GetPreferredWidth), Gaps(items, mGap));
}

int StackLayout::Together(const std::vector<int>& widths, int gaps) const {
  if (mDirection == Direction::kAcross) return Sum(widths) + gaps;
  return widths.empty() ? 0 : *std::max_element(widths.begin(), widths.end());
}

std::vector<int> StackLayout::WidthsAcross(const std::vector<LayoutItem*>& items, int width) const {
  std::vector<int> widths = Widths(items, &LayoutItem::GetPreferredWidth);
  const int rest = width - Gaps(items, mGap) - Sum(widths);
  if (rest >= 0) {
    std::vector<bool> grows(items.size());
    std::transform(items.begin(), items.end(), grows.begin(),
                   [](const LayoutItem* item) { return item->TakesWidth(); });
    Grow(widths, grows, rest);
  } else {
    Shrink(widths, Widths(items, &LayoutItem::GetMinimumWidth), -rest);
  }
  return widths;
}

int StackLayout::Height(int width, const HeightOf& heightOf) const {
  const std::vector<LayoutItem*> items = ShownItems();
  if (GoesAcrossIn(width)) {
    const std::vector<int> widths = WidthsAcross(items, width);
    int highest = 0;
    for (std::size_t index = 0; index < items.size(); ++index)
      highest = std::max(highest, heightOf(*items[index], widths[index]));
    return highest;
  }
  int height = Gaps(items, mGap);
  for (LayoutItem* const item : items)
    height += heightOf(*item, WidthInColumn(*item, item->GetPreferredWidth(), width));
  return height;
}

int StackLayout::GetPreferredHeight(int width) const {
  return Height(width, [](LayoutItem& item, int itemWidth) { return item.GetPreferredHeight(itemWidth); });
}

int StackLayout::GetMinimumHeight(int width) const {
  return Height(width, [](LayoutItem& item, int itemWidth) { return item.GetMinimumHeight(itemWidth); });
}

bool StackLayout::TakesHeight() const {
  const std::vector<LayoutItem*> items = ShownItems();
  return std::any_of(items.begin(), items.end(), [](const LayoutItem* item) { return item->TakesHeight(); });
}

void StackLayout::Place(const Rectangle& rectangle) const {
  if (GoesAcrossIn(rectangle.mWidth)) {
    PlaceAcross(rectangle);
  } else {
    PlaceDown(rectangle);
  }
}

void StackLayout::PlaceAcross(const Rectangle& rectangle) const {
  const std::vector<LayoutItem*> items = ShownItems();
  const std::vector<int> widths = WidthsAcross(items, rectangle.mWidth);
  int left = rectangle.mLeft;
  for (std::size_t index = 0; index < items.size(); ++index) {
    LayoutItem& item = *items[index];
    const int height = item.TakesHeight()
                           ? rectangle.mHeight
                           : std::min(item.GetPreferredHeight(widths[index]), rectangle.mHeight);
    const int above = item.StandsAtTop() ? 0 : (rectangle.mHeight - height) / 2;
    item.Place({left, rectangle.mTop + above, widths[index], height});
    left += widths[index] + mGap;
  }
}

void StackLayout::PlaceDown(const Rectangle& rectangle) const {
  const std::vector<LayoutItem*> items = ShownItems();
  std::vector<int> widths;
  std::vector<int> heights;
  std::vector<int> least;
  std::vector<bool> grows;
  for (LayoutItem* const item : items) {
    widths.push_back(WidthInColumn(*item, item->GetPreferredWidth(), rectangle.mWidth));
    heights.push_back(item->GetPreferredHeight(widths.back()));
    least.push_back(item->GetMinimumHeight(widths.back()));
    grows.push_back(item->TakesHeight());
  }
  const int rest = rectangle.mHeight - Gaps(items, mGap) - Sum(heights);
  if (rest >= 0) {
    Grow(heights, grows, rest);
  } else {
    Shrink(heights, least, -rest);
  }
  const int unused = std::max(0, rectangle.mHeight - Gaps(items, mGap) - Sum(heights));
  int top = rectangle.mTop;
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (mKeepsLastAtEnd && index + 1 == items.size()) top += unused;
    items[index]->Place({rectangle.mLeft, top, widths[index], heights[index]});
    top += heights[index] + mGap;
  }
}

}  // namespace qelui::native
