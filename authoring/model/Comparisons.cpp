#include "authoring/model/Comparisons.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <system_error>

#include "authoring/model/KnownKeys.h"
#include "authoring/model/Matcher.h"

namespace authoring {

std::int64_t ToInteger(const std::string& operand) {
  return std::strtoll(operand.c_str(), nullptr, 10);
}

bool IsInteger(const std::string& operand) {
  const bool hasPlus = operand.starts_with('+') && !operand.starts_with("+-");
  const char* const end = operand.data() + operand.size();
  std::int64_t value = 0;
  const auto result = std::from_chars(operand.data() + (hasPlus ? 1 : 0), end, value);
  return result.ec == std::errc() && result.ptr == end;
}

ComparedValues::ComparedValues(const JsonNode& rule) {
  ReadTexts(rule);
  ReadIntegers(rule);
}

void ComparedValues::ReadTexts(const JsonNode& rule) {
  for (const std::string_view key : TextComparisonKeys()) {
    const std::string* const operand = rule.FindText(key);
    if (operand == nullptr) continue;
    mHasTexts = true;
    if (key == "regex") mExpressions.insert(*operand);
    if (key == "ne") mOtherTexts.insert(*operand);
    if (key == "eq" || key == "gte") RaiseText(*operand, true);
    if (key == "gt") RaiseText(*operand, false);
    if (key == "eq" || key == "lte") LowerText(*operand, true);
    if (key == "lt") LowerText(*operand, false);
  }
}

void ComparedValues::ReadIntegers(const JsonNode& rule) {
  for (const std::string_view key : IntegerComparisonKeys()) {
    const std::string* const operand = rule.FindText(key);
    if (operand == nullptr) continue;
    mHasIntegers = true;
    const std::int64_t value = ToInteger(*operand);
    if (key == "ine") mOthers.insert(value);
    if (key == "ieq" || key == "igte") mLeast = std::max(mLeast, value);
    if (key == "ieq" || key == "ilte") mGreatest = std::min(mGreatest, value);
    if (key == "igt") {
      mIsEmpty |= value == INT64_MAX;
      mLeast = std::max(mLeast, value == INT64_MAX ? value : value + 1);
    }
    if (key == "ilt") {
      mIsEmpty |= value == INT64_MIN;
      mGreatest = std::min(mGreatest, value == INT64_MIN ? value : value - 1);
    }
  }
}

void ComparedValues::RaiseText(const std::string& text, bool isIncluded) {
  if (mLeastText && (text < mLeastText->mText || (text == mLeastText->mText && isIncluded))) return;
  mLeastText = Bound{text, isIncluded};
}

void ComparedValues::LowerText(const std::string& text, bool isIncluded) {
  if (mGreatestText && (text > mGreatestText->mText || (text == mGreatestText->mText && isIncluded))) return;
  mGreatestText = Bound{text, isIncluded};
}

bool ComparedValues::HaveNoText() const {
  if (mGreatestText && !mGreatestText->mIsIncluded && mGreatestText->mText.empty()) return true;
  if (!mLeastText || !mGreatestText) return false;
  if (mLeastText->mText != mGreatestText->mText) return mLeastText->mText > mGreatestText->mText;
  return !mLeastText->mIsIncluded || !mGreatestText->mIsIncluded || mOtherTexts.contains(mLeastText->mText);
}

bool ComparedValues::HaveNoInteger() const {
  return mIsEmpty || mLeast > mGreatest || (mLeast == mGreatest && mOthers.contains(mLeast));
}

bool ComparedValues::AreEmpty() const {
  return mHasTexts ? HaveNoText() : mHasIntegers && HaveNoInteger();
}

std::optional<std::string> ComparedValues::FindContradiction() const {
  if (!mLeastText || !mGreatestText || mLeastText->mText != mGreatestText->mText || HaveNoText())
    return std::nullopt;
  for (const std::string& expression : mExpressions) {
    // A malformed expression is told of elsewhere.
    if (ExpressionJudge().Judge(expression).IsSound() && !MatchesValue(expression, mLeastText->mText))
      return expression;
  }
  return std::nullopt;
}

void ComparedValues::Intersect(const ComparedValues& other) {
  if (mHasTexts != other.mHasTexts || mHasIntegers != other.mHasIntegers) {
    if (!HasComparisons()) *this = other;
    return;
  }
  if (other.mLeastText) RaiseText(other.mLeastText->mText, other.mLeastText->mIsIncluded);
  if (other.mGreatestText) LowerText(other.mGreatestText->mText, other.mGreatestText->mIsIncluded);
  mOtherTexts.insert(other.mOtherTexts.begin(), other.mOtherTexts.end());
  mExpressions.insert(other.mExpressions.begin(), other.mExpressions.end());
  mIsEmpty |= other.mIsEmpty;
  mLeast = std::max(mLeast, other.mLeast);
  mGreatest = std::min(mGreatest, other.mGreatest);
  mOthers.insert(other.mOthers.begin(), other.mOthers.end());
}

bool ComparedValues::Cover(const ComparedValues& other) const {
  if (!HasComparisons()) return true;
  if (mHasTexts != other.mHasTexts) return false;
  if (mHasTexts) {
    return mExpressions == other.mExpressions && mLeastText == other.mLeastText &&
           mGreatestText == other.mGreatestText && mOtherTexts == other.mOtherTexts;
  }
  return other.mHasIntegers && mLeast <= other.mLeast && other.mGreatest <= mGreatest &&
         std::includes(other.mOthers.begin(), other.mOthers.end(), mOthers.begin(), mOthers.end());
}

}  // namespace authoring
