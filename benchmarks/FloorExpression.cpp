#include "benchmarks/FloorExpression.h"

#include <utility>

namespace benchmarks {

namespace {

/// Reads an expression from left to right and keeps the longest run of plain characters outside groups.
class Pieces {
 public:
  explicit Pieces(std::string_view text) : mText(text) {}

  std::string Find() {
    if (!TakeAlternatives(0) || mPlace != mText.size() || mHasOuterAlternatives) return {};
    EndRun();
    return std::move(mLongest);
  }

 private:
  bool TakeAlternatives(int depth) {
    for (;;) {
      bool hasAtom = false;
      while (mPlace < mText.size() && mText[mPlace] != '|' && mText[mPlace] != ')') {
        if (!TakeOne(depth, hasAtom)) return false;
      }
      if (mPlace == mText.size() || mText[mPlace] == ')') return true;
      if (depth == 0) mHasOuterAlternatives = true;
      ++mPlace;
    }
  }

  bool TakeOne(int depth, bool& hasAtom) {
    const char character = mText[mPlace++];
    switch (character) {
      case '^':
      case '$':
        EndRun();
        hasAtom = false;
        return true;
      case '.':
        EndRun();
        hasAtom = true;
        return true;
      case '*':
      case '+':
      case '?':
        if (!hasAtom) return false;
        if (character != '+' && depth == 0 && !mRun.empty()) mRun.pop_back();
        EndRun();
        hasAtom = false;
        return true;
      case '[':
        EndRun();
        hasAtom = true;
        return TakeClass();
      case '(':
        EndRun();
        if (depth == kDeepest || (mPlace < mText.size() && mText[mPlace] == '?')) return false;
        if (!TakeAlternatives(depth + 1) || mPlace == mText.size()) return false;
        ++mPlace;
        hasAtom = true;
        return true;
      case '\\':
        return TakeEscape(depth, hasAtom);
      case ']':
      case '{':
      case '}':
        return false;
      default:
        if (depth == 0) mRun += character;
        hasAtom = true;
        return true;
    }
  }

  bool TakeEscape(int depth, bool& hasAtom) {
    constexpr std::string_view kPunctuation = "^$\\.*+?()[]{}|";
    if (mPlace == mText.size()) return false;
    const char escaped = mText[mPlace++];
    if (kPunctuation.find(escaped) != std::string_view::npos) {
      if (depth == 0) mRun += escaped;
      hasAtom = true;
      return true;
    }
    EndRun();
    hasAtom = escaped != 'b';
    return escaped == 'b' || escaped == 'w' || escaped == 'd' || escaped == 's';
  }

  /// Letters, digits and ranges of them.
  bool TakeClass() {
    while (mPlace < mText.size() && mText[mPlace] != ']') {
      const char character = mText[mPlace++];
      if (!IsPlain(character)) return false;
      if (mPlace + 1 < mText.size() && mText[mPlace] == '-') {
        const char last = mText[mPlace + 1];
        if (!IsPlain(last) || last < character) return false;
        mPlace += 2;
      }
    }
    return mPlace++ < mText.size();
  }

  static bool IsPlain(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == ' ';
  }

  void EndRun() {
    if (mRun.size() > mLongest.size()) mLongest = mRun;
    mRun.clear();
  }

  static constexpr int kDeepest = 8;

  std::string_view mText;
  std::size_t mPlace = 0;
  bool mHasOuterAlternatives = false;
  std::string mRun;
  std::string mLongest;
};

}  // namespace

std::string FindRequiredPiece(std::string_view expression) {
  return Pieces(expression).Find();
}

}  // namespace benchmarks
