#include "qelsystemcompatibilityreport/rules/ExpressionSize.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace qelsystemcompatibilityreport {

namespace {

constexpr std::size_t kLargest = std::numeric_limits<std::size_t>::max();

std::size_t Add(std::size_t left, std::size_t right) {
  return left > kLargest - right ? kLargest : left + right;
}

std::size_t Multiply(std::size_t left, std::size_t right) {
  return right != 0 && left > kLargest / right ? kLargest : left * right;
}

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// The engine asks every part of a bracket about every character. Ordinary brackets count as one class.
constexpr std::size_t kBracketPartsOfAClass = 8;

class Measurement {
 public:
  explicit Measurement(std::string_view expression) : mText(expression) {}

  ExpressionSize Take() {
    mOpen.push_back({});
    while (mPlace < mText.size()) TakeOne();
    while (mOpen.size() > 1) CloseGroup();
    mSize.mExpandedCharacters = mOpen.back().mCharacters;
    return mSize;
  }

 private:
  /// A group that is open, or the whole expression.
  struct Group {
    std::size_t mCharacters = 0;  ///< of all that the group holds so far
    std::size_t mLastAtom = 0;    ///< of the part that a repeat would apply to
    bool mIsLookAhead = false;
  };

  void TakeOne() {
    switch (mText[mPlace]) {
      case '(':
        OpenGroup();
        break;
      case ')':
        ++mPlace;
        if (mOpen.size() > 1) CloseGroup();
        break;
      case '[':
        mSize.mCharacterClasses += 1 + SkipBracket() / kBracketPartsOfAClass;
        AddAtom(1);
        break;
      case '\\':
        TakeEscape();
        break;
      case '{':
        TakeCountedRepeat();
        break;
      case '*':
      case '+':
      case '?':
        ++mPlace;
        TakeRepeatSign();
        break;
      default:
        ++mPlace;
        AddAtom(1);
    }
  }

  void OpenGroup() {
    const std::string_view rest = mText.substr(mPlace);
    Group group;
    group.mIsLookAhead = rest.starts_with("(?=") || rest.starts_with("(?!");
    mPlace += rest.starts_with("(?") ? std::min<std::size_t>(3, rest.size()) : 1;
    mOpen.push_back(group);
    mSize.mGroupDepth = std::max(mSize.mGroupDepth, mOpen.size() - 1);
    if (group.mIsLookAhead) mSize.mLookAheadDepth = std::max(mSize.mLookAheadDepth, ++mLookAheads);
  }

  void CloseGroup() {
    const Group closed = mOpen.back();
    mOpen.pop_back();
    if (closed.mIsLookAhead) --mLookAheads;
    AddAtom(Add(closed.mCharacters, 1));
  }

  void AddAtom(std::size_t characters) {
    Group& group = mOpen.back();
    group.mCharacters = Add(group.mCharacters, characters);
    group.mLastAtom = characters;
  }

  void TakeEscape() {
    constexpr std::string_view kClasses = "wWdDsS";
    const std::string_view escaped = mText.substr(std::min(mPlace + 1, mText.size()), 1);
    if (!escaped.empty() && kClasses.find(escaped) != std::string_view::npos) ++mSize.mCharacterClasses;
    if (!escaped.empty() && escaped != "0" && IsDigit(escaped.front())) mSize.mHasBackReference = true;
    mPlace = std::min(mPlace + 2, mText.size());
    AddAtom(1);
  }

  /// The sign is a state of the engine, and "a*{9}" repeats what "a*" stands for.
  void TakeRepeatSign() {
    Group& group = mOpen.back();
    group.mCharacters = Add(group.mCharacters, 1);
    group.mLastAtom = Add(group.mLastAtom, 1);
  }

  /// From "[" to the "]" that ends it; returns how many parts it has. Inside, a backslash takes the next
  /// character with it, and "[:" to
  /// ":]", "[." to ".]" and "[=" to "=]" are names.
  std::size_t SkipBracket() {
    std::size_t parts = 0;
    ++mPlace;
    for (; mPlace < mText.size() && mText[mPlace] != ']'; ++parts) {
      const std::string_view rest = mText.substr(mPlace);
      if (rest.front() == '\\') {
        mPlace += 2;
      } else if (rest.size() > 1 && rest.front() == '[' &&
                 (rest[1] == ':' || rest[1] == '.' || rest[1] == '=')) {
        const char ending[] = {rest[1], ']'};
        const std::size_t end = rest.find(std::string_view(ending, 2), 2);
        mPlace += end == std::string_view::npos ? rest.size() : end + 2;
      } else {
        ++mPlace;
      }
    }
    mPlace = std::min(mPlace + 1, mText.size());
    return parts;
  }

  /// "{n}", "{n,}" or "{n,m}": the atom before it is written out as often as the larger number says.
  void TakeCountedRepeat() {
    ++mPlace;
    const std::size_t least = TakeNumber();
    std::size_t most = least;
    if (mPlace < mText.size() && mText[mPlace] == ',') {
      ++mPlace;
      most = std::max(Add(least, 1), TakeNumber());
    }
    if (mPlace < mText.size() && mText[mPlace] == '}') ++mPlace;
    if (most < 2) return;
    Group& group = mOpen.back();
    group.mCharacters = Add(group.mCharacters, Multiply(group.mLastAtom, most - 1));
    group.mLastAtom = Multiply(group.mLastAtom, most);
  }

  std::size_t TakeNumber() {
    std::size_t number = 0;
    for (; mPlace < mText.size() && IsDigit(mText[mPlace]); ++mPlace) {
      number = Add(Multiply(number, 10), static_cast<std::size_t>(mText[mPlace] - '0'));
    }
    return number;
  }

  std::string_view mText;
  std::size_t mPlace = 0;
  std::size_t mLookAheads = 0;
  std::vector<Group> mOpen;
  ExpressionSize mSize;
};

}  // namespace

ExpressionSize MeasureExpression(std::string_view expression) {
  return Measurement(expression).Take();
}

}  // namespace qelsystemcompatibilityreport
