#include "qelsystemcompatibilityreport/rules/ExpressionSize.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using qelsystemcompatibilityreport::ExpressionSize;
using qelsystemcompatibilityreport::MeasureExpression;

TEST(ExpressionSizeTest, Measures) {
  constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();
  const struct {
    const char* mExpression;
    std::size_t mCharacters;
    std::size_t mGroups;
    std::size_t mLookAheads;
  } rows[] = {
      {"", 0, 0, 0},
      {"abc", 3, 0, 0},
      {"a*b+c?", 6, 0, 0},
      {"a|b", 3, 0, 0},
      {"\\(\\)\\[", 3, 0, 0},
      {"[abc]", 1, 0, 0},
      {"[a\\]b]", 1, 0, 0},
      {"[[:alpha:](]", 1, 0, 0},
      // "[.].]" is a name inside the bracket, "]" ends the bracket, and "(" opens a group.
      {"[[.].]](]", 3, 1, 0},
      {"(abc)", 4, 1, 0},
      {"(?:abc)", 4, 1, 0},
      {"((a)(b))", 5, 2, 0},
      {"(?=a)", 2, 1, 1},
      {"(?!a(?=b))", 4, 2, 2},
      {"(?=a)(?=b)", 4, 1, 1},
      // Counted repeats are written out.
      {"a{3}", 3, 0, 0},
      {"a{3,5}", 5, 0, 0},
      {"a{3,}", 4, 0, 0},
      {"(?:ab){10}", 30, 1, 0},
      {"(?:(?:ab){10}){10}", 310, 2, 0},
      {"a{10}{10}", 100, 0, 0},
      {"a*{10}", 20, 0, 0},
      {"[a-z]{9}", 9, 0, 0},
      {"a{99999999999999999999999}", largest, 0, 0},
      {"((a{9999999999}){9999999999}){9999999999}", largest, 2, 0},
      {"a{0}", 1, 0, 0},
      {"a{1}", 1, 0, 0},
      // Malformed ones do no harm.
      {"(", 1, 1, 0},
      {"(((", 3, 3, 0},
      {")))", 0, 0, 0},
      {"[", 1, 0, 0},
      {"[a\\", 1, 0, 0},
      {"[[:", 1, 0, 0},
      {"\\", 1, 0, 0},
      {"{5}", 0, 0, 0},
      {"a{", 1, 0, 0},
      {"(?", 1, 1, 0},
  };
  for (const auto& row : rows) {
    const ExpressionSize size = MeasureExpression(row.mExpression);
    EXPECT_EQ(size.mGroupDepth, row.mGroups) << row.mExpression;
    EXPECT_EQ(size.mLookAheadDepth, row.mLookAheads) << row.mExpression;
    EXPECT_EQ(size.mExpandedCharacters, row.mCharacters) << row.mExpression;
  }
}

TEST(ExpressionSizeTest, CountsCharacterClasses) {
  const struct {
    const char* mExpression;
    std::size_t mClasses;
  } rows[] = {{"abc", 0},
              {"[a-z][[:alpha:]]", 2},
              {"\\w\\W\\d\\D\\s\\S", 6},
              {"\\b\\.\\n\\\\w", 0},
              {"\\", 0},
              {"[A-Za-z]", 1},
              {"[^0-9_ .]", 1},
              {"[\\W\\W\\W\\W\\W\\W\\W\\W]", 2},
              {"[abcdefghijklmnop]", 3}};
  for (const auto& row : rows) {
    EXPECT_EQ(MeasureExpression(row.mExpression).mCharacterClasses, row.mClasses) << row.mExpression;
  }
  // A bracket that costs as much as hundreds of classes counts as such.
  std::string longBracket = "[";
  for (int part = 0; part < 2000; ++part) longBracket += "\\W";
  EXPECT_EQ(MeasureExpression(longBracket + "]").mCharacterClasses, 251U);
}

TEST(ExpressionSizeTest, KnowsBackReferences) {
  const struct {
    const char* mExpression;
    bool mHasBackReference;
  } rows[] = {
      {"(a)\\1", true}, {"\\9", true},  {"\\2222222222222222222222222", true},
      {"(a)1", false},  {"\\0", false}, {"\\\\1", false},
      {"[\\1]", false}, {"\\", false},  {"", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MeasureExpression(row.mExpression).mHasBackReference, row.mHasBackReference) << row.mExpression;
  }
}

}  // namespace
