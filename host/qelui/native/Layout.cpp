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

void StackLayout::ForgetItem(const LayoutItem& item) {
  // Mostly it is the last one, to which more is added.
  const auto place = std::find(mItems.rbegin(), mItems.rend(), &item);
  const auto number = static_cast<std::size_t>(mItems.rend() - place);
  const auto forget = [number](auto& known) {
    if (known.mCount >= number) known = {};
  };
  forget(mMemory.mShown);
  forget(mMemory.mMinimumWidth);
  forget(mMemory.mPreferredWidth);
  forget(mMemory.mTakesHeight);
  forget(mMemory.mColumn);
  for (KnownHeight& height : mMemory.mHeights) forget(height.mHeight);
}

template <class Combine>
int StackLayout::CarryOn(Known& known, const Combine& combine) const {
  for (; known.mCount < mItems.size(); ++known.mCount) {
    LayoutItem& item = *mItems[known.mCount];
    if (item.IsShown()) known.mValue = combine(known.mValue, item);
  }
  return known.mValue;
}

StackLayout::Known& StackLayout::HeightAt(int width) const {
  for (KnownHeight& height : mMemory.mHeights) {
    if (height.mWidth == width) return height.mHeight;
  }
  KnownHeight& height = mMemory.mHeights[mMemory.mNextHeight];
  mMemory.mNextHeight = (mMemory.mNextHeight + 1) % mMemory.mHeights.size();
  height = {width, {}};
  return height.mHeight;
}

int StackLayout::CountShown() const {
  return CarryOn(mMemory.mShown, [](int count, const LayoutItem&) { return count + 1; });
}

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
  if (mDirection == Direction::kDown) {
    return CarryOn(mMemory.mMinimumWidth,
                   [](int width, LayoutItem& item) { return std::max(width, item.GetMinimumWidth()); });
  }
  const std::vector<LayoutItem*> items = ShownItems();
  return Sum(Widths(items, &LayoutItem::GetMinimumWidth)) + Gaps(items, mGap);
}

int StackLayout::GetPreferredWidth() const {
  if (mDirection == Direction::kDown) {
    return CarryOn(mMemory.mPreferredWidth,
                   [](int width, LayoutItem& item) { return std::max(width, item.GetPreferredWidth()); });
  }
  const std::vector<LayoutItem*> items = ShownItems();
  return Sum(Widths(items, &LayoutItem::GetPreferredWidth)) + Gaps(items, mGap);
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
  if (mDirection == Direction::kDown) {
    const int height = CarryOn(HeightAt(width), [&](int above, LayoutItem& item) {
      const int itemWidth = WidthInColumn(item, item.GetPreferredWidth(), width);
      return above + item.GetPreferredHeight(itemWidth) + mGap;
    });
    // There is no gap below the last one.
    return std::max(0, height - mGap);
  }
  return Height(width, [](LayoutItem& item, int itemWidth) { return item.GetPreferredHeight(itemWidth); });
}

int StackLayout::GetMinimumHeight(int width) const {
  return Height(width, [](LayoutItem& item, int itemWidth) { return item.GetMinimumHeight(itemWidth); });
}

bool StackLayout::TakesHeight() const {
  return CarryOn(mMemory.mTakesHeight, [](int takes, const LayoutItem& item) {
           return takes != 0 || item.TakesHeight() ? 1 : 0;
         }) != 0;
}

void StackLayout::Place(const Rectangle& rectangle) const {
  const bool isColumn = mDirection == Direction::kDown && !mKeepsLastAtEnd && !TakesHeight() &&
                        GetPreferredHeight(rectangle.mWidth) <= rectangle.mHeight;
  if (isColumn) {
    PlaceColumn(rectangle);
    return;
  }
  mMemory.mColumn = {};
  if (GoesAcrossIn(rectangle.mWidth)) {
    PlaceAcross(rectangle);
  } else {
    PlaceDown(rectangle);
  }
}

void StackLayout::PlaceColumn(const Rectangle& rectangle) const {
  Column& column = mMemory.mColumn;
  const bool isSame =
      column.mLeft == rectangle.mLeft && column.mTop == rectangle.mTop && column.mWidth == rectangle.mWidth;
  if (!isSame || column.mCount == 0)
    column = {0, rectangle.mLeft, rectangle.mTop, rectangle.mWidth, rectangle.mTop};
  for (; column.mCount < mItems.size(); ++column.mCount) {
    LayoutItem& item = *mItems[column.mCount];
    if (!item.IsShown()) continue;
    const int width = WidthInColumn(item, item.GetPreferredWidth(), column.mWidth);
    const int height = item.GetPreferredHeight(width);
    item.Place({column.mLeft, column.mNextTop, width, height});
    column.mNextTop += height + mGap;
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
