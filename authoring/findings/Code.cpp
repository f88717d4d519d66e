#include "authoring/findings/Code.h"

#include <algorithm>
#include <array>

namespace authoring {

namespace {

constexpr Severity kNote = Severity::kNote;
constexpr Severity kWarning = Severity::kWarning;
constexpr Severity kError = Severity::kError;

constexpr std::array kCodes{
    CodeDescription{Code::kNotJson, "BL101", "not-json", kError, "The file is not JSON."},
    CodeDescription{Code::kNotAnObject, "BL102", "not-an-object", kError,
                    "The document is not a JSON object."},
    CodeDescription{Code::kVersionRefused, "BL103", "version-refused", kError,
                    "\"blocklist_version\" is missing or 0, so nothing is read."},
    CodeDescription{Code::kWrongType, "BL104", "wrong-type", kError,
                    "A value of the document has the wrong JSON type."},
    CodeDescription{Code::kDefaultMissing, "BL105", "default-missing", kError,
                    "A default text is missing, so a download of the list would be refused."},
    CodeDescription{Code::kDuplicateKey, "BL106", "duplicate-key", kError,
                    "A key stands twice in an object; only the last one counts."},
    CodeDescription{Code::kUnknownKey, "BL107", "unknown-key", kWarning, "A key is unknown and ignored."},
    CodeDescription{Code::kNoRules, "BL108", "no-rules", kNote, "The list has no rules."},
    CodeDescription{Code::kTooManyFindings, "BL109", "too-many-findings", kNote,
                    "A file has more findings than anybody reads."},
    CodeDescription{Code::kNotARule, "BL201", "not-a-rule", kError,
                    "An element is not a rule: no object, or without a name or a kind."},
    CodeDescription{Code::kUnknownKind, "BL202", "unknown-kind", kError, "The kind of a rule is unknown."},
    CodeDescription{Code::kWrongTypeInRule, "BL203", "wrong-type-in-rule", kError,
                    "A value of a rule has the wrong JSON type."},
    CodeDescription{Code::kRuleVersionRefused, "BL204", "rule-version-refused", kError,
                    "\"osblc_version\" is 0, which makes the rule invalid."},
    CodeDescription{Code::kUnknownLevel, "BL205", "unknown-level", kError,
                    "The text of a level is none of the four, and so means INFO."},
    CodeDescription{Code::kIgnoredKey, "BL206", "ignored-key", kWarning,
                    "A key has no effect on matches where it stands."},
    CodeDescription{Code::kNotAVersion, "BL301", "not-a-version", kError,
                    "A text is not a version, and so counts as missing."},
    CodeDescription{Code::kOpenEnd, "BL302", "open-end", kError,
                    "A range that ends with a hyphen is one exact version."},
    CodeDescription{Code::kReversedRange, "BL303", "reversed-range", kError,
                    "The ends of a range are reversed, so it holds nothing."},
    CodeDescription{Code::kUnlimitedRange, "BL304", "unlimited-range", kWarning,
                    "An empty range holds every version."},
    CodeDescription{Code::kUnreachableRange, "BL305", "unreachable-range", kError,
                    "No version that is left by mask and modulus lies in the range."},
    CodeDescription{Code::kBoundOutOfReach, "BL306", "bound-out-of-reach", kWarning,
                    "An end of a range lies beyond what mask and modulus leave."},
    CodeDescription{Code::kCoveredRange, "BL307", "covered-range", kWarning,
                    "A range lies within another range of the same rule."},
    CodeDescription{Code::kPartialMask, "BL308", "partial-mask", kWarning,
                    "A number of a mask keeps some bits only."},
    CodeDescription{Code::kMaskWithoutRange, "BL309", "mask-without-range", kWarning,
                    "A mask or modulus has no effect without ranges."},
    CodeDescription{Code::kBehindPlus, "BL310", "behind-plus", kWarning,
                    "Nothing behind a \"+\" of a version is read."},
    CodeDescription{Code::kNoVersionOfWindows, "BL311", "no-version-of-windows", kWarning,
                    "A range holds no version that a Windows has."},
    CodeDescription{Code::kMalformedExpression, "BL401", "malformed-expression", kError,
                    "An expression is malformed and never matches."},
    CodeDescription{Code::kRefusedExpression, "BL402", "refused-expression", kError,
                    "An expression is beyond the engine's bounds and never matches."},
    CodeDescription{Code::kEmptyName, "BL403", "empty-name", kError, "An empty name never matches."},
    CodeDescription{Code::kPlainNameWithSigns, "BL404", "plain-name-with-signs", kNote,
                    "A plain name holds signs that mean something else in an expression."},
    CodeDescription{Code::kLiteralBrackets, "BL405", "literal-brackets", kWarning,
                    "An expression holds \"(R)\" or the like, which matches the letter only."},
    CodeDescription{Code::kPartOfName, "BL406", "part-of-name", kWarning,
                    "A name is only a part of names, and the whole name must match."},
    CodeDescription{Code::kLetterInBrackets, "BL407", "letter-in-brackets", kWarning,
                    "A letter beyond ASCII inside brackets matches a part of it only."},
    CodeDescription{Code::kMalformedPlainName, "BL408", "malformed-plain-name", kWarning,
                    "A plain name is no valid expression, which is logged for every other component."},
    CodeDescription{
        Code::kControlCharacter, "BL409", "control-character", kError,
        "A name, a path or an operand holds a control character, which nothing that is compared has."},
    CodeDescription{Code::kNameOfNoSystem, "BL410", "name-of-no-system", kWarning,
                    "A rule of kind \"OS\" has a name that no system is listed by."},
    CodeDescription{Code::kMixedComparisons, "BL501", "mixed-comparisons", kError,
                    "Beside text comparisons, integer comparisons are not evaluated."},
    CodeDescription{Code::kNumbersAsText, "BL502", "numbers-as-text", kWarning,
                    "Numbers are compared as texts, by which \"10\" is less than \"9\"."},
    CodeDescription{Code::kOperandNoInteger, "BL503", "operand-no-integer", kError,
                    "The operand of an integer comparison is not an integer."},
    CodeDescription{Code::kImpossibleComparisons, "BL504", "impossible-comparisons", kError,
                    "No value satisfies all comparisons of a rule."},
    CodeDescription{Code::kNoComparison, "BL505", "no-comparison", kNote,
                    "A property rule without comparisons matches every value."},
    CodeDescription{Code::kUnknownPlaceholder, "BL601", "unknown-placeholder", kWarning,
                    "A placeholder in a path is not one that systems set."},
    CodeDescription{Code::kOpenPlaceholder, "BL602", "open-placeholder", kError,
                    "A placeholder in a path is not closed, so nothing is found."},
    CodeDescription{Code::kRelativePath, "BL603", "relative-path", kWarning,
                    "A path is relative to wherever the host happens to run."},
    CodeDescription{Code::kPatternInPath, "BL604", "pattern-in-path", kWarning,
                    "A path holds the signs of a pattern, but paths are no patterns."},
    CodeDescription{Code::kMessageWithoutLink, "BL701", "message-without-link", kWarning,
                    "A rule with a message of its own and no link has issues without a link."},
    CodeDescription{Code::kNotAWebAddress, "BL702", "not-a-web-address", kError,
                    "A link is not an address of the web, so it is not opened."},
    CodeDescription{Code::kSharedIdentifier, "BL703", "shared-identifier", kWarning,
                    "Rules share one identifier, so their issues cannot be told apart."},
    CodeDescription{Code::kCoveredRule, "BL801", "covered-rule", kWarning,
                    "Another rule of the same or a higher level covers everything that a rule hits, with the "
                    "same message."},
    CodeDescription{Code::kDependencyNeverHolds, "BL802", "dependency-never-holds", kError,
                    "A dependency can never hold, so the rule hits nothing."},
    CodeDescription{Code::kTooManyRulesToCompare, "BL803", "too-many-rules-to-compare", kNote,
                    "So many rules are alike that not all of them were compared."},
    CodeDescription{Code::kCoveredRuleWithMessage, "BL804", "covered-rule-with-message", kNote,
                    "Another rule covers everything that a rule hits, with another message."},
    CodeDescription{Code::kLanguagesDiffer, "BL901", "languages-differ", kError,
                    "The lists of two languages do not have the same rules."},
    CodeDescription{Code::kUnreadableExample, "BL911", "unreadable-example", kError,
                    "An example is not a component."},
    CodeDescription{Code::kMissedHit, "BL912", "missed-hit", kError,
                    "The rule does not hit an example of a hit."},
    CodeDescription{Code::kUnexpectedHit, "BL913", "unexpected-hit", kError,
                    "The rule hits an example of a miss."},
};

}  // namespace

std::string_view SeverityToString(Severity severity) {
  switch (severity) {
    case Severity::kNote:
      return "note";
    case Severity::kWarning:
      return "warning";
    case Severity::kError:
      break;
  }
  return "error";
}

std::span<const CodeDescription> AllCodes() {
  return kCodes;
}

const CodeDescription& DescriptionOf(Code code) {
  // The table has every enumerator, in their order; a test holds that.
  return kCodes[static_cast<std::size_t>(code)];
}

}  // namespace authoring
