// The expressions that lists are really written with, matched without the engine.
//
// The engine takes several microseconds to compile an expression, more than all else that a rule costs, and a
// list of ten thousand rules asks it a hundred thousand times: "Intel(R) HD Graphics" is an expression too,
// and is tried on every name that it is not equal to. Nearly all of these expressions consist of a few simple
// parts, so they are read here, and only what is not understood for certain is left to the engine:
//
//   abc  \.  é          characters, punctuation behind a backslash
//   .  [0-9a-f /]  [^x]  \d  \w  \s        one character of several
//   ^  $  \b            the ends of the text, a boundary of a word
//   (ab|c)  ab|c        alternatives, none of them empty
//   *  +  ?             repeats of a character, or of a group that cannot be empty
//   (?!.*ab).*c         a look-ahead at the beginning, which names what texts may not begin with
//
// A text is decided in two steps. A piece of text that every match must hold, such as "Miniport" in
// "^.*\bMiniport\b.*$", is looked for first: where it is missing there is no match. Then all ways through the
// expression are followed side by side, as the engine's own mode without backtracking does it.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace qelsystemcompatibilityreport {

/// An expression of the kind above. Whole texts match it, or not, exactly as the engine says. It refers to
/// the text of the expression, which must outlive it.
class PlainExpression {
 public:
  /// Reads an expression. Nothing when it is malformed, too long, or holds anything else than the above: then
  /// the engine must be asked.
  [[nodiscard]] static std::optional<PlainExpression> Read(std::string_view expression);

  /// Whether the whole of `text` matches.
  [[nodiscard]] bool MatchesWhole(std::string_view text) const;

 private:
  friend class PlainExpressionReader;
  friend class PlainExpressionRun;

  using Class = std::bitset<256>;  ///< by the character's byte

  enum class Operation : std::uint8_t { kCharacter, kAny, kClass, kBegin, kEnd, kBoundary, kSplit, kJump };

  /// One step of the way through an expression. Those of characters go on to the next step; `kJump` goes on
  /// at so many steps from itself, and `kSplit` both there and at the next step.
  struct Step {
    Operation mOperation = Operation::kCharacter;
    char mCharacter = 0;
    std::uint8_t mClass = 0;
    std::int16_t mDistance = 0;
  };

  static constexpr std::size_t kMostSteps = 128;

  std::string_view mRequired;  ///< what every match holds; may be empty
  std::vector<Step> mSteps;
  std::vector<Class> mClasses;
  std::vector<PlainExpression> mForbidden;  ///< at most one: no beginning of a text may match it
};

}  // namespace qelsystemcompatibilityreport
