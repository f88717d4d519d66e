#include "qelsystemcompatibilityreport/rules/PlainExpression.h"

#include <array>
#include <utility>

namespace qelsystemcompatibilityreport {

namespace {

constexpr std::string_view kPunctuation = "^$\\.*+?()[]{}|";

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool IsLetterOrDigit(char character) {
  return IsDigit(character) || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z');
}

bool IsOfWord(char character) {
  return IsLetterOrDigit(character) || character == '_';
}

bool IsControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

std::size_t ByteOf(char character) {
  return static_cast<unsigned char>(character);
}

}  // namespace

/// Reads an expression by recursive descent. Every function answers whether all was understood.
class PlainExpressionReader {
 public:
  explicit PlainExpressionReader(std::string_view text) : mText(text) {
    mResult.mSteps.reserve(text.size() + 8);
  }

  std::optional<PlainExpression> Read() {
    if (mText.starts_with(kNotAhead) && !ReadForbidden()) return std::nullopt;
    bool canBeEmpty = false;
    if (!ReadAlternatives(canBeEmpty) || mPlace != mText.size()) return std::nullopt;
    EndPiece();
    if (mHasOuterAlternatives) {
      // It would only be forbidden to the first of them.
      if (!mResult.mForbidden.empty()) return std::nullopt;
      // What stands in one of several alternatives is not required.
      mResult.mRequired = {};
    }
    if (mResult.mSteps.size() > PlainExpression::kMostSteps) return std::nullopt;
    return std::move(mResult);
  }

 private:
  using Operation = PlainExpression::Operation;
  using Class = PlainExpression::Class;
  using Step = PlainExpression::Step;

  static constexpr int kDeepestGroups = 8;
  static constexpr std::string_view kNotAhead = "(?!";

  /// What stands in the look-ahead that the text begins with becomes an expression of its own.
  bool ReadForbidden() {
    PlainExpressionReader reader(mText);
    reader.mPlace = kNotAhead.size();
    reader.mDepth = 1;
    bool canBeEmpty = false;
    const bool isRead = reader.ReadAlternatives(canBeEmpty) && reader.mPlace < mText.size() &&
                        reader.mResult.mSteps.size() <= PlainExpression::kMostSteps;
    mPlace = reader.mPlace + 1;
    mResult.mForbidden.push_back(std::move(reader.mResult));
    return isRead;
  }

  bool ReadAlternatives(bool& canBeEmpty) {
    canBeEmpty = false;
    const std::size_t begin = mResult.mSteps.size();
    std::vector<std::size_t> jumps;
    for (std::size_t ofThis = begin;;) {
      bool thisCanBeEmpty = true;
      const std::size_t firstPlace = mPlace;
      if (!ReadSequence(thisCanBeEmpty) || mPlace == firstPlace) return false;
      canBeEmpty |= thisCanBeEmpty;
      if (mPlace == mText.size() || mText[mPlace] != '|') break;
      ++mPlace;
      EndPiece();
      if (mDepth == 0) mHasOuterAlternatives = true;
      // From the beginning of this alternative to the next; from its end, behind the last.
      jumps.push_back(mResult.mSteps.size() + 1);
      mResult.mSteps.push_back({Operation::kJump});
      if (!InsertSplit(ofThis, mResult.mSteps.size() + 1 - ofThis)) return false;
      ofThis = mResult.mSteps.size();
    }
    for (const std::size_t jump : jumps) {
      mResult.mSteps[jump].mDistance = static_cast<std::int16_t>(mResult.mSteps.size() - jump);
    }
    return true;
  }

  bool ReadSequence(bool& canBeEmpty) {
    canBeEmpty = true;
    while (mPlace < mText.size() && mText[mPlace] != '|' && mText[mPlace] != ')') {
      const std::size_t begin = mResult.mSteps.size();
      bool partCanBeEmpty = false;
      if (mResult.mSteps.size() >= PlainExpression::kMostSteps || !ReadPart(partCanBeEmpty)) return false;
      if (mPlace < mText.size() && (mText[mPlace] == '*' || mText[mPlace] == '+' || mText[mPlace] == '?')) {
        if (partCanBeEmpty || !ReadRepeat(begin)) return false;
        partCanBeEmpty = mText[mPlace - 1] != '+';
      }
      canBeEmpty &= partCanBeEmpty;
    }
    return true;
  }

  /// A character, a class, a group, or an end or boundary, which takes nothing of the text.
  bool ReadPart(bool& canBeEmpty) {
    const char character = mText[mPlace++];
    switch (character) {
      case '^':
        return AddPosition(Operation::kBegin, canBeEmpty);
      case '$':
        return AddPosition(Operation::kEnd, canBeEmpty);
      case '.':
        EndPiece();
        mResult.mSteps.push_back({Operation::kAny});
        return true;
      case '(':
        return ReadGroup(canBeEmpty);
      case '[':
        return ReadBracket();
      case '\\':
        return ReadEscape(canBeEmpty);
      case '*':
      case '+':
      case '?':
      case ']':
      case '{':
      case '}':
        return false;
      default:
        return !IsControl(character) && AddCharacter(character);
    }
  }

  bool ReadGroup(bool& canBeEmpty) {
    EndPiece();
    if (mDepth == kDeepestGroups || (mPlace < mText.size() && mText[mPlace] == '?')) return false;
    ++mDepth;
    if (!ReadAlternatives(canBeEmpty) || mPlace == mText.size()) return false;
    --mDepth;
    ++mPlace;
    return true;
  }

  /// From behind "[" to behind "]". A hyphen is only understood between two ends of a range.
  bool ReadBracket() {
    EndPiece();
    Class characters;
    const bool isNegated = mPlace < mText.size() && mText[mPlace] == '^';
    if (isNegated) ++mPlace;
    const std::size_t begin = mPlace;
    while (mPlace < mText.size() && mText[mPlace] != ']') {
      const char first = mText[mPlace++];
      const bool isUnclear = first == '[' || first == '\\' || first == '-' || first == '^';
      if (isUnclear || IsControl(first) || ByteOf(first) > 0x7F) return false;
      char last = first;
      if (mPlace < mText.size() && mText[mPlace] == '-') {
        last = mText.substr(mPlace).size() > 1 ? mText[mPlace + 1] : '\0';
        if (!IsLetterOrDigit(first) || !IsLetterOrDigit(last) || last < first) return false;
        mPlace += 2;
      }
      for (std::size_t byte = ByteOf(first); byte <= ByteOf(last); ++byte) characters.set(byte);
    }
    if (mPlace == mText.size() || mPlace == begin) return false;
    ++mPlace;
    AddClass(isNegated ? ~characters : characters);
    return true;
  }

  bool ReadEscape(bool& canBeEmpty) {
    if (mPlace == mText.size()) return false;
    const char escaped = mText[mPlace++];
    if (kPunctuation.find(escaped) != std::string_view::npos) {
      // A piece is one stretch of the expression's text, so the backslash ends it.
      EndPiece();
      return AddCharacter(escaped);
    }
    if (escaped == 'b') return AddPosition(Operation::kBoundary, canBeEmpty);
    EndPiece();
    Class characters;
    for (std::size_t byte = 0; byte < 0x80; ++byte) {
      const char character = static_cast<char>(byte);
      const bool isSpace = character == ' ' || (character >= '\t' && character <= '\r');
      characters.set(byte, escaped == 'd'   ? IsDigit(character)
                           : escaped == 'w' ? IsOfWord(character)
                                            : isSpace);
    }
    if (escaped == 'd' || escaped == 'w' || escaped == 's') {
      AddClass(characters);
      return true;
    }
    return false;
  }

  /// Applies the sign at the present place to the steps from `begin` on.
  bool ReadRepeat(std::size_t begin) {
    const char sign = mText[mPlace++];
    // A second sign would make the first one lazy, or be an error.
    constexpr std::string_view kSigns = "*+?{";
    if (mPlace < mText.size() && kSigns.find(mText[mPlace]) != std::string_view::npos) return false;
    if (sign != '+' && mPieceEnd == mPlace - 1 && mPieceEnd > mPieceBegin) --mPieceEnd;
    EndPiece();
    const std::size_t length = mResult.mSteps.size() - begin;
    if (sign == '+') {
      // Behind the part: either back to it, or on.
      mResult.mSteps.push_back(
          {Operation::kSplit, 0, 0, static_cast<std::int16_t>(-static_cast<int>(length))});
      return true;
    }
    if (!InsertSplit(begin, sign == '*' ? length + 2 : length + 1)) return false;
    if (sign == '*') {
      mResult.mSteps.push_back(
          {Operation::kJump, 0, 0, static_cast<std::int16_t>(-static_cast<int>(length) - 1)});
    }
    return true;
  }

  /// Puts a split in front of the steps from `place` on, which only refer to each other.
  bool InsertSplit(std::size_t place, std::size_t distance) {
    if (mResult.mSteps.size() > PlainExpression::kMostSteps) return false;
    mResult.mSteps.insert(mResult.mSteps.begin() + static_cast<std::ptrdiff_t>(place),
                          Step{Operation::kSplit, 0, 0, static_cast<std::int16_t>(distance)});
    return true;
  }

  bool AddPosition(Operation operation, bool& canBeEmpty) {
    EndPiece();
    canBeEmpty = true;
    mResult.mSteps.push_back({operation});
    return true;
  }

  bool AddCharacter(char character) {
    if (mDepth == 0) {
      if (mPieceEnd != mPlace - 1) mPieceBegin = mPlace - 1;
      mPieceEnd = mPlace;
    }
    mResult.mSteps.push_back({Operation::kCharacter, character});
    return true;
  }

  void AddClass(const Class& characters) {
    mResult.mSteps.push_back({Operation::kClass, 0, static_cast<std::uint8_t>(mResult.mClasses.size())});
    mResult.mClasses.push_back(characters);
  }

  /// The longest piece is the one that is looked for.
  void EndPiece() {
    if (mPieceEnd - mPieceBegin > mResult.mRequired.size()) {
      mResult.mRequired = mText.substr(mPieceBegin, mPieceEnd - mPieceBegin);
    }
    mPieceBegin = mPieceEnd = 0;
  }

  std::string_view mText;
  std::size_t mPlace = 0;
  int mDepth = 0;
  bool mHasOuterAlternatives = false;
  /// The characters outside groups that were read last, as places in the text.
  std::size_t mPieceBegin = 0;
  std::size_t mPieceEnd = 0;
  PlainExpression mResult;
};

/// One match: the steps that can be reached with what was read of the text so far.
class PlainExpressionRun {
 public:
  PlainExpressionRun(const PlainExpression& expression, std::string_view text)
      : mExpression(expression), mText(text) {}
  PlainExpressionRun(const PlainExpressionRun&) = delete;
  PlainExpressionRun& operator=(const PlainExpressionRun&) = delete;

  /// Whether the whole text matches, or else whether some beginning of it does.
  bool Matches(bool whole) {
    Reach(0);
    while (mPlace < mText.size()) {
      if (mHasReachedEnd && !whole) return true;
      mHasReachedEnd = false;
      if (mCount == 0) return false;
      std::swap(mReached, mBefore);
      const std::size_t count = std::exchange(mCount, 0);
      const char character = mText[mPlace++];
      for (std::size_t index = 0; index < count; ++index) {
        const std::size_t step = mBefore[index];
        if (Takes(mExpression.mSteps[step], character)) Reach(step + 1);
      }
    }
    return mHasReachedEnd;
  }

 private:
  using Operation = PlainExpression::Operation;
  using Step = PlainExpression::Step;

  static constexpr std::size_t kMost = PlainExpression::kMostSteps;

  bool Takes(const Step& step, char character) const {
    switch (step.mOperation) {
      case Operation::kCharacter:
        return character == step.mCharacter;
      case Operation::kAny:
        return character != '\n' && character != '\r';
      default:
        return mExpression.mClasses[step.mClass].test(ByteOf(character));
    }
  }

  /// Notes a step, or those that it leads to without taking anything. What splits goes here by recursion,
  /// each step at most once for each place of the text.
  void Reach(std::size_t step) {
    for (;;) {
      if (step == mExpression.mSteps.size()) {
        mHasReachedEnd = true;
        return;
      }
      const auto place = static_cast<std::uint32_t>(mPlace + 1);
      if (std::exchange(mPlacesReached[step], place) == place) return;
      const Step& reached = mExpression.mSteps[step];
      const auto target = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(step) + reached.mDistance);
      switch (reached.mOperation) {
        case Operation::kJump:
          step = target;
          break;
        case Operation::kSplit:
          Reach(step + 1);
          step = target;
          break;
        case Operation::kBegin:
        case Operation::kEnd:
        case Operation::kBoundary:
          if (!IsAt(reached.mOperation)) return;
          ++step;
          break;
        default:
          mReached[mCount++] = static_cast<std::uint8_t>(step);
          return;
      }
    }
  }

  bool IsAt(Operation position) const {
    const bool isAtBegin = mPlace == 0;
    const bool isAtEnd = mPlace == mText.size();
    if (position == Operation::kBegin) return isAtBegin;
    if (position == Operation::kEnd) return isAtEnd;
    return (!isAtBegin && IsOfWord(mText[mPlace - 1])) != (!isAtEnd && IsOfWord(mText[mPlace]));
  }

  const PlainExpression& mExpression;
  std::string_view mText;
  std::size_t mPlace = 0;
  bool mHasReachedEnd = false;  ///< with what was read of the text so far
  using Steps = std::array<std::uint8_t, kMost>;
  std::array<Steps, 2> mRooms{};
  std::uint8_t* mReached = mRooms[0].data();
  std::uint8_t* mBefore = mRooms[1].data();
  std::size_t mCount = 0;                             ///< of `mReached`
  std::array<std::uint32_t, kMost> mPlacesReached{};  ///< by step, the last place, counted from 1
};

std::optional<PlainExpression> PlainExpression::Read(std::string_view expression) {
  return PlainExpressionReader(expression).Read();
}

bool PlainExpression::MatchesWhole(std::string_view text) const {
  if (text.find(mRequired) == std::string_view::npos) return false;
  for (const PlainExpression& forbidden : mForbidden) {
    if (PlainExpressionRun(forbidden, text).Matches(false)) return false;
  }
  return PlainExpressionRun(*this, text).Matches(true);
}

}  // namespace qelsystemcompatibilityreport
