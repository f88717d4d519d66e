// One rule of a blocklist.
//
// A rule names a component of the machine by kind and name, the versions of it that are known to cause
// trouble, how grave the trouble is, and what to tell the user. Its JSON form:
//
//   {"type": "Video", "name": "^NVIDIA Quadro P[0-9]+$", "versions": ["0.0.4.0-0.0.4.+"],
//    "version_mask": "0.0.+", "version_mod": "0.0.10.+", "error_level": "WARN",
//    "info_message": "This driver is known to hang.", "info_url": "https://example.com/help"}
//
// Names. A rule's name hits a component of that very name; any other name is tried as an ECMAScript regular
// expression, case-sensitive, that must match the component's whole name:
//
//   "Miniport"                  does not hit "WAN Miniport (PPTP)"
//   "^.*\\bMiniport\\b.*$"      hits it
//   "^.*\\bminiport\\b.*$"      does not
//
// Expressions come from a file that was downloaded, so they are bounded before they are run (see
// docs/formats/blocklist.md); one that is malformed or beyond the bounds is logged and matches nothing.
//
// Versions. A component's version is first masked (part-wise AND), then reduced (part-wise remainder), then
// held against the ranges. With the mask and modulus above, 24.21.14.1195 becomes 0.0.14.1195, then
// 0.0.4.1195, which lies in the range.
//
// Files. A file rule's name is a path, whose environment placeholders are expanded; it hits when a file or
// directory is there, and its version is the file's version.
//
// Properties. A property rule names a property exactly and compares its value, as text ("eq", "ne", "lt",
// "lte", "gt", "gte", "regex") or as an integer ("ieq", "ine", "ilt", "ilte", "igt", "igte").
//
// Dependencies are rules of which each must find something on the machine for the rule to hit at all.
#pragma once

#include <any>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/JsonView.h"
#include "qelsystemcompatibilityreport/Export.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

// A system header defines a macro of this name, which would destroy the enumerator.
#pragma push_macro("ERROR")
#undef ERROR

namespace qelsystemcompatibilityreport {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;

class Candidates;
class RuleList;
class MatchObserver;

/// How grave an issue is. The numbers are hashed and reported: do not renumber.
enum class SCRRuleErrorLevel : std::int32_t { INFO = 0, WARN = 1, ERROR = 2, FATAL = 3 };

/// How a property rule compares a property's value with an operand. The numbers order the comparisons: do not
/// renumber.
enum class SCRPropertyOperator : std::int32_t {
  kEqual = 0,                   ///< "eq"
  kNotEqual = 1,                ///< "ne"
  kLess = 2,                    ///< "lt"
  kLessOrEqual = 3,             ///< "lte"
  kGreater = 4,                 ///< "gt"
  kGreaterOrEqual = 5,          ///< "gte"
  kIntegerEqual = 6,            ///< "ieq"
  kIntegerNotEqual = 7,         ///< "ine"
  kIntegerLess = 8,             ///< "ilt"
  kIntegerLessOrEqual = 9,      ///< "ilte"
  kIntegerGreater = 10,         ///< "igt"
  kIntegerGreaterOrEqual = 11,  ///< "igte"
  kRegularExpression = 12,      ///< "regex": the whole value matches
};

/// A rule. It is a component whose name and kind say what it is about, so it takes over a component's JSON
/// reading and identity. A value: copies are deep and independent. One thread at a time may match rules in a
/// process, and beside it those that hold a `SeparateMatching`.
class QELSCR_EXPORT SCRRule : public OSComponent {
 public:
  using PropertyComparisons = std::map<SCRPropertyOperator, std::string>;

  // ---- Construction ---------------------------------------------------------------------------------------

  /// An empty rule, which matches nothing: kind `kInvalid`, level INFO.
  SCRRule();

  /// Reads a JSON value as `FromJSON` does, whose failure leaves the rule half read.
  template <std::same_as<std::any> Any>
  explicit SCRRule(const Any& json) {
    static_cast<void>(SCRRule::FromJSON(json));
  }

  /// Parses JSON text and reads it as `FromJSON` does.
  explicit SCRRule(const std::string& jsonText);

  /// A rule about the versions from `version` to `maxVersion`. It has exactly one range even when both are
  /// empty, which then holds every version.
  SCRRule(OSComponentType type, const std::string& name, const OSComponentVersion& version,
          const OSComponentVersion& maxVersion, const OSComponentVersion& versionMask,
          const OSComponentVersion& versionMod, const std::string& infoMessage, const std::string& infoURL,
          const std::vector<SCRRule>& dependencies, SCRRuleErrorLevel level);

  /// A rule about the versions of any of these ranges; no range means any version.
  SCRRule(OSComponentType type, const std::string& name, const std::vector<VersionRange>& versions,
          const OSComponentVersion& versionMask, const OSComponentVersion& versionMod,
          const std::string& infoMessage, const std::string& infoURL,
          const std::vector<SCRRule>& dependencies, SCRRuleErrorLevel level);

  /// A property rule.
  SCRRule(OSComponentType type, const std::string& name, const PropertyComparisons& comparisons,
          const std::string& infoMessage, const std::string& infoURL,
          const std::vector<SCRRule>& dependencies, SCRRuleErrorLevel level);

  SCRRule(const SCRRule&);
  SCRRule(SCRRule&&) noexcept;
  SCRRule& operator=(const SCRRule&);
  SCRRule& operator=(SCRRule&&) noexcept;

  // ---- A component's virtual operations -------------------------------------------------------------------

  ~SCRRule() override;

  /// The JSON form, a dictionary. A rule that was read with "version" and "max_version" is written with
  /// "versions". After a failure, which is logged, it holds what was written until then.
  [[nodiscard]] std::any ToJSON() const override;

  /// Reads the JSON form. Unknown keys are ignored. Returns false when the value is no object, "name" or
  /// "type" is unusable, "osblc_version" is 0, or a key has the wrong JSON type; the last is logged. Does not
  /// throw. The rule then holds what was read until then.
  [[nodiscard]] bool FromJSON(const std::any& json) override;

  /// The component's hash, with the ranges, the texts, the dependencies and the level mixed in. The mask, the
  /// modulus and the comparisons are left out: that is intended.
  [[nodiscard]] qelcore::MixHashGuidT<qelcore::HashValueMixerState> Hash() const override;

  /// By what an issue of this rule is remembered: the component's identifier, or, since rules have none,
  /// "HASH:" followed by the 36 characters of the hash. Rules that differ only in mask, modulus or
  /// comparisons share one.
  [[nodiscard]] std::string GetID() const override;

  // ---- Content --------------------------------------------------------------------------------------------

  [[nodiscard]] std::vector<VersionRange> GetVersions() const { return mVersions; }
  [[nodiscard]] const std::vector<SCRRule>& GetDependencies() const { return mDependencies; }
  [[nodiscard]] SCRRuleErrorLevel GetErrorLevel() const { return mErrorLevel; }
  [[nodiscard]] std::string GetInfoMessage() const { return mInfoMessage; }
  [[nodiscard]] std::string GetInfoURL() const { return mInfoURL; }

  /// All comparisons, those of text and those of integers.
  [[nodiscard]] PropertyComparisons GetPropertyComparisons() const;

  /// Whether the level is WARN or higher.
  [[nodiscard]] bool IsSeriousError() const;

  /// Equality of everything, the dependencies included.
  bool operator==(const SCRRule& other) const;
  bool operator!=(const SCRRule& other) const;

  /// "INFO", "WARN", "ERROR" or "FATAL"; "INFO" for every other value.
  [[nodiscard]] static const std::string& ErrorLevelToString(SCRRuleErrorLevel level);

  /// The inverse, compared byte for byte. Every other text, "warn" and "Fatal" included, gives INFO.
  [[nodiscard]] static SCRRuleErrorLevel StringToErrorLevel(const std::string& text);

  // ---- Matching -------------------------------------------------------------------------------------------

  /// The components that the rule hits, in the registry's order, each at most once. They are shared with the
  /// registry, or with the process's memory of files. Does not throw; a name that is no valid expression is
  /// logged once for each component that it is tried on. A dependency is asked afresh for each candidate, but
  /// one that logs at most 1,000 times, so that nested ones come to an end.
  ///
  /// What a file rule finds under a path is remembered for the rest of the process: a file that appears or
  /// changes later is not seen.
  [[nodiscard]] std::vector<std::shared_ptr<OSComponent>> FindMatchingOSComponents(
      const OSComponentRegistry& registry) const;

  /// Whether a property satisfies this property rule. When there are text comparisons they alone decide, and
  /// all of them must hold; else all integer comparisons must hold. False, and logged, when an expression is
  /// malformed.
  [[nodiscard]] bool MatchesPropertyComponent(const OSComponent& component) const;

  /// Makes every component of a rule's kind a hit, with no further test. Off at start; process-wide, but for
  /// a thread that holds a `SeparateMatching`.
  static void ForceMatchByTypeForTesting(bool force);

  /// Makes rules skip the version test. Likewise.
  static void ForceMatchByNameForTesting(bool force);

  /// Forgets what file rules found. For a tool that judges several recorded machines in one process, and
  /// calls this between them; a host has no use for it.
  static void ForgetFileComponents();

 private:
  friend class RuleList;
  friend class SCRBlocklist;
  friend QELSCR_EXPORT void ExplainMatch(const SCRRule& rule, const OSComponentRegistry& registry,
                                         MatchObserver& observer);
  friend QELSCR_EXPORT void ExplainMatch(const std::vector<SCRRule>& rules,
                                         const OSComponentRegistry& registry, MatchObserver& observer);
  template <typename Observer>
  class MatchingRun;

  /// Empties the fields that a rule adds to a component's.
  void Clear();

  /// What becomes of a dependency with a wrong type: it is logged and left empty, or all is given up.
  enum class WrongDependency { kLog, kThrow };

  /// Reads the JSON form as `FromJSON` does, into fields that are empty.
  [[nodiscard]] bool ReadRule(const qelcore::json::View& value);
  /// The same, but throws `TypeError` where that logs.
  [[nodiscard]] bool ReadFields(const qelcore::json::View& value, WrongDependency wrongDependency);

  /// `FindMatchingOSComponents` on components that were prepared for many rules.
  [[nodiscard]] std::vector<std::shared_ptr<OSComponent>> FindMatchingCandidates(
      Candidates& candidates) const;

  /// The same for `ExplainMatch`.
  void Explain(std::size_t index, Candidates& candidates, MatchObserver& observer) const;

  /// Takes the given message when the rule has none, and, only in that case, also the given link when the
  /// rule has none. A rule with a message of its own and no link keeps no link: that is intended.
  void AdoptInfoIfNeeded(const std::string& message, const std::string& url);

  /// From the members "versions", "max_version", "version_mask" and "version_mod".
  void DeserializeVersionFieldsFromJSON(const qelcore::json::View& versions,
                                        const qelcore::json::View& maxVersion,
                                        const qelcore::json::View& mask, const qelcore::json::View& modulus);
  // The name is misspelt and stays so.
  void DeserializeProprtyFieldsFromJSON(const qelcore::json::View& object);

  [[nodiscard]] std::shared_ptr<OSComponent> FindMatchingFileComponent() const;

  std::string mInfoMessage;
  std::string mInfoURL;
  std::vector<VersionRange> mVersions;
  OSComponentVersion mVersionMask;
  OSComponentVersion mVersionMod;
  std::vector<SCRRule> mDependencies;
  SCRRuleErrorLevel mErrorLevel = SCRRuleErrorLevel::INFO;
  PropertyComparisons mStringComparisons;
  PropertyComparisons mIntegerComparisons;
};

}  // namespace qelsystemcompatibilityreport

#pragma pop_macro("ERROR")
