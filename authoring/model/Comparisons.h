// The comparisons of a property rule as sets of values.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "authoring/json/JsonTree.h"

namespace authoring {

/// An operand as the library reads it: white space, a sign and digits, the rest ignored; 0 without digits.
[[nodiscard]] std::int64_t ToInteger(const std::string& operand);

/// Whether the operand is a number of 64 bits and nothing else.
[[nodiscard]] bool IsInteger(const std::string& operand);

/// The values that comparisons leave. What an expression leaves is not known: it counts as everything.
class ComparedValues {
 public:
  /// Those of a readable property rule.
  explicit ComparedValues(const JsonNode& rule);

  /// Whether there are any comparisons.
  [[nodiscard]] bool HasComparisons() const { return mHasTexts || mHasIntegers; }

  /// Whether there are both kinds, of which the integers are then not evaluated.
  [[nodiscard]] bool AreMixed() const { return mHasTexts && mHasIntegers; }

  /// No value is left. A "no" may be wrong.
  [[nodiscard]] bool AreEmpty() const;

  /// An expression that does not match the only text that is left; nothing when there is none, or more than
  /// one text is left. Asks the library's engine, and so for the main thread only.
  [[nodiscard]] std::optional<std::string> FindContradiction() const;

  /// The values that satisfy both. Comparisons of different kinds are not weighed against each other.
  void Intersect(const ComparedValues& other);

  /// Whether all of `other` is certainly in here.
  [[nodiscard]] bool Cover(const ComparedValues& other) const;

 private:
  void ReadTexts(const JsonNode& rule);
  void ReadIntegers(const JsonNode& rule);
  [[nodiscard]] bool HaveNoText() const;
  [[nodiscard]] bool HaveNoInteger() const;
  void RaiseText(const std::string& text, bool isIncluded);
  void LowerText(const std::string& text, bool isIncluded);

  struct Bound {
    std::string mText;
    bool mIsIncluded = true;

    friend bool operator==(const Bound&, const Bound&) = default;
  };

  bool mHasTexts = false;
  bool mHasIntegers = false;
  std::set<std::string> mExpressions;
  std::optional<Bound> mLeastText;
  std::optional<Bound> mGreatestText;
  std::set<std::string> mOtherTexts;  ///< those that the value may not be
  bool mIsEmpty = false;              ///< a bound was beyond all integers
  std::int64_t mLeast = INT64_MIN;
  std::int64_t mGreatest = INT64_MAX;
  std::set<std::int64_t> mOthers;
};

}  // namespace authoring
