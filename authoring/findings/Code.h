// What `scr lint` can find. docs/lint.md describes each code.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace authoring {

enum class Severity {
  kNote,     ///< worth knowing; nothing need change
  kWarning,  ///< works, but hardly as meant
  kError,    ///< is not read as it is written, or can never work
};

/// "note", "warning" or "error".
[[nodiscard]] std::string_view SeverityToString(Severity severity);

/// Codes are stable: a number, once given, keeps its meaning.
enum class Code {
  // The document
  kNotJson,
  kNotAnObject,
  kVersionRefused,
  kWrongType,
  kDefaultMissing,
  kDuplicateKey,
  kUnknownKey,
  kNoRules,
  kTooManyFindings,
  // The form of a rule
  kNotARule,
  kUnknownKind,
  kWrongTypeInRule,
  kRuleVersionRefused,
  kUnknownLevel,
  kIgnoredKey,
  // Versions
  kNotAVersion,
  kOpenEnd,
  kReversedRange,
  kUnlimitedRange,
  kUnreachableRange,
  kBoundOutOfReach,
  kCoveredRange,
  kPartialMask,
  kMaskWithoutRange,
  kBehindPlus,
  kNoVersionOfWindows,
  // Names and expressions
  kMalformedExpression,
  kRefusedExpression,
  kEmptyName,
  kPlainNameWithSigns,
  kLiteralBrackets,
  kPartOfName,
  kLetterInBrackets,
  kMalformedPlainName,
  kControlCharacter,
  kNameOfNoSystem,
  // Properties
  kMixedComparisons,
  kNumbersAsText,
  kOperandNoInteger,
  kImpossibleComparisons,
  kNoComparison,
  // Files
  kUnknownPlaceholder,
  kOpenPlaceholder,
  kRelativePath,
  kPatternInPath,
  // Texts and identifiers
  kMessageWithoutLink,
  kNotAWebAddress,
  kSharedIdentifier,
  // Rules beside rules
  kCoveredRule,
  kDependencyNeverHolds,
  kTooManyRulesToCompare,
  kCoveredRuleWithMessage,
  // Languages
  kLanguagesDiffer,
  // Examples
  kUnreadableExample,
  kMissedHit,
  kUnexpectedHit,
};

/// What is true of every finding of a code.
struct CodeDescription {
  Code mCode;
  std::string_view mID;    ///< "BL303"
  std::string_view mName;  ///< "reversed-range"
  Severity mSeverity;
  std::string_view mSummary;  ///< one sentence
};

/// All codes, in the order of their numbers.
[[nodiscard]] std::span<const CodeDescription> AllCodes();

[[nodiscard]] const CodeDescription& DescriptionOf(Code code);

}  // namespace authoring
