#include "host/qelui/native/Layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace qelui::native {

namespace {

constexpr int kGap = 10;
constexpr int kLine = 20;

/// A text of so many letters, each 10 wide, that breaks anywhere.
class Text final : public LayoutItem {
 public:
  explicit Text(int letters) : mLetters(letters) {}

  [[nodiscard]] bool IsShown() const override { return mIsShown; }
  [[nodiscard]] int GetMinimumWidth() override { return std::min(mLetters * 10, 50); }
  [[nodiscard]] int GetPreferredWidth() override { return mLetters * 10; }
  [[nodiscard]] int GetPreferredHeight(int width) override {
    const int lettersInLine = std::max(1, width / 10);
    return (mLetters + lettersInLine - 1) / lettersInLine * kLine;
  }
  [[nodiscard]] bool FillsWidth() const override { return true; }
  void Place(const Rectangle& rectangle) override { mPlace = rectangle; }

  int mLetters;
  bool mIsShown = true;
  Rectangle mPlace;
};

/// Has one size, unless it takes the room that is left.
class Box final : public LayoutItem {
 public:
  Box(int width, int height) : mWidth(width), mHeight(height) {}

  [[nodiscard]] bool IsShown() const override { return true; }
  [[nodiscard]] int GetMinimumWidth() override { return mWidth; }
  [[nodiscard]] int GetPreferredWidth() override { return mWidth; }
  [[nodiscard]] int GetPreferredHeight(int /*width*/) override { return mHeight; }
  [[nodiscard]] int GetMinimumHeight(int /*width*/) override { return mTakesRoom ? kLine : mHeight; }
  [[nodiscard]] bool TakesWidth() const override { return mTakesRoom; }
  [[nodiscard]] bool TakesHeight() const override { return mTakesRoom; }
  [[nodiscard]] bool StandsAtTop() const override { return mStandsAtTop; }
  void Place(const Rectangle& rectangle) override { mPlace = rectangle; }

  int mWidth;
  int mHeight;
  bool mTakesRoom = false;
  bool mStandsAtTop = false;
  Rectangle mPlace;
};

TEST(LayoutTest, ItemsAcrossStandInTheMiddleOrAtTheTop) {
  StackLayout layout(Direction::kAcross, kGap);
  Box high(30, 100);
  Box middle(30, 20);
  Box top(30, 20);
  top.mStandsAtTop = true;
  layout.Add(high);
  layout.Add(middle);
  layout.Add(top);
  layout.Place({0, 5, 110, 100});
  EXPECT_EQ(middle.mPlace.mTop, 45);
  EXPECT_EQ(top.mPlace.mTop, 5);
}

TEST(LayoutTest, NothingTakesNoRoom) {
  const StackLayout layout(Direction::kDown, kGap);
  EXPECT_EQ(layout.GetMinimumWidth(), 0);
  EXPECT_EQ(layout.GetPreferredWidth(), 0);
  EXPECT_EQ(layout.GetPreferredHeight(100), 0);
  layout.Place({0, 0, 100, 100});
}

TEST(LayoutTest, GoesDown) {
  Text text(15);
  Box box(70, 30);
  StackLayout layout(Direction::kDown, kGap);
  layout.Add(text);
  layout.Add(box);
  EXPECT_EQ(layout.GetPreferredWidth(), 150);
  EXPECT_EQ(layout.GetMinimumWidth(), 70);
  EXPECT_EQ(layout.GetPreferredHeight(150), 20 + 10 + 30);
  EXPECT_EQ(layout.GetPreferredHeight(100), 40 + 10 + 30) << "the text wraps";
  layout.Place({5, 6, 100, 200});
  EXPECT_EQ(text.mPlace, (Rectangle{5, 6, 100, 40})) << "as wide as the view, to wrap in it";
  EXPECT_EQ(box.mPlace, (Rectangle{5, 56, 70, 30})) << "as wide as it likes";
}

TEST(LayoutTest, HiddenItemsTakeNoRoomAndNoGap) {
  Text first(5);
  Text hidden(5);
  Text last(5);
  hidden.mIsShown = false;
  StackLayout layout(Direction::kDown, kGap);
  for (Text* const text : {&first, &hidden, &last}) layout.Add(*text);
  EXPECT_EQ(layout.GetPreferredHeight(100), 20 + 10 + 20);
  layout.Place({0, 0, 100, 100});
  EXPECT_EQ(last.mPlace.mTop, 30);
  EXPECT_EQ(hidden.mPlace, Rectangle{});
}

TEST(LayoutTest, GoesAcrossInTheMiddleOfTheRow) {
  Box small(20, 10);
  Box large(40, 30);
  StackLayout layout(Direction::kAcross, kGap);
  layout.Add(small);
  layout.Add(large);
  EXPECT_EQ(layout.GetMinimumWidth(), 70);
  EXPECT_EQ(layout.GetPreferredWidth(), 70);
  EXPECT_EQ(layout.GetPreferredHeight(100), 30);
  layout.Place({0, 0, 100, 30});
  EXPECT_EQ(small.mPlace, (Rectangle{0, 10, 20, 10}));
  EXPECT_EQ(large.mPlace, (Rectangle{30, 0, 40, 30}));
}

TEST(LayoutTest, WhatTakesRoomGetsTheRestOfTheWidth) {
  Box first(20, 10);
  Box space(0, 10);
  space.mTakesRoom = true;
  Box last(40, 10);
  StackLayout layout(Direction::kAcross, kGap);
  for (Box* const box : {&first, &space, &last}) layout.Add(*box);
  layout.Place({0, 0, 200, 10});
  EXPECT_EQ(space.mPlace.mWidth, 200 - 20 - 40 - 2 * kGap);
  EXPECT_EQ(last.mPlace.mLeft + last.mPlace.mWidth, 200);
}

TEST(LayoutTest, ALongTextBesideAButtonWrapsAndTheButtonStaysWhole) {
  Text text(100);
  Box button(60, 30);
  StackLayout layout(Direction::kAcross, kGap);
  layout.Add(text);
  layout.Add(button);
  EXPECT_EQ(layout.GetPreferredHeight(300), (100 * 10 + 229) / 230 * 20);
  layout.Place({0, 0, 300, 200});
  EXPECT_EQ(text.mPlace.mWidth, 300 - kGap - 60);
  EXPECT_EQ(button.mPlace.mWidth, 60);
  EXPECT_EQ(button.mPlace.mLeft, 240);
}

TEST(LayoutTest, TheLongerOfTwoTextsShrinksFirst) {
  Text shortText(8);
  Text longText(50);
  StackLayout layout(Direction::kAcross, kGap);
  layout.Add(shortText);
  layout.Add(longText);
  layout.Place({0, 0, 300, 100});
  EXPECT_EQ(shortText.mPlace.mWidth, 80);
  EXPECT_EQ(longText.mPlace.mWidth, 210);
}

TEST(LayoutTest, ARowThatIsTooNarrowGoesDown) {
  Box first(60, 10);
  Box last(60, 10);
  StackLayout layout(Direction::kAcross, kGap);
  layout.Add(first);
  layout.Add(last);
  EXPECT_EQ(layout.GetPreferredHeight(130), 10);
  EXPECT_EQ(layout.GetPreferredHeight(129), 10 + kGap + 10);
  layout.Place({0, 0, 129, 30});
  EXPECT_EQ(last.mPlace, (Rectangle{0, 20, 60, 10}));
}

TEST(LayoutTest, WhatTakesRoomGetsTheRestOfTheHeightAndGivesItBack) {
  Box list(100, 500);
  list.mTakesRoom = true;
  Box button(50, 30);
  StackLayout layout(Direction::kDown, kGap);
  layout.Add(list);
  layout.Add(button);
  EXPECT_TRUE(layout.TakesHeight());
  EXPECT_EQ(layout.GetPreferredHeight(100), 540);
  EXPECT_EQ(layout.GetMinimumHeight(100), 20 + kGap + 30);
  for (const int height : {60, 200, 540, 800}) {
    layout.Place({0, 0, 100, height});
    EXPECT_EQ(list.mPlace.mHeight, height - kGap - 30) << height;
    EXPECT_EQ(button.mPlace.mTop + button.mPlace.mHeight, height);
  }
}

TEST(LayoutTest, RoomThatNobodyTakesStandsBeforeTheLastItemOrAfterIt) {
  Box first(50, 30);
  Box last(50, 30);
  StackLayout layout(Direction::kDown, kGap);
  layout.Add(first);
  layout.Add(last);
  layout.Place({0, 0, 100, 200});
  EXPECT_EQ(last.mPlace.mTop, 40);
  layout.KeepLastAtEnd();
  layout.Place({0, 0, 100, 200});
  EXPECT_EQ(first.mPlace.mTop, 0);
  EXPECT_EQ(last.mPlace.mTop, 170);
}

}  // namespace

}  // namespace qelui::native
