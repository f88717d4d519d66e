// Why a rule hits a component, or does not: the steps of a match, as they are taken.
//
//   class Misses : public MatchObserver {
//     void BeginCandidate(const std::shared_ptr<OSComponent>& component) override { mComponent = component; }
//     void EndCandidate(MatchVerdict verdict) override {
//       if (verdict == MatchVerdict::kVersion) ...   // the version of `mComponent` lies in no range
//     }
//     ...
//   };
//   Misses misses;
//   ExplainMatch(rule, registry, misses);
//
// It is the match itself that tells its steps, so they cannot differ from what a report does. For tools; a
// host has no use for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/Export.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

namespace qelsystemcompatibilityreport {

/// What became of a candidate: a hit, or the test that it failed first. Later tests were not made.
enum class MatchVerdict : std::int32_t {
  kHit = 0,
  kPropertiesOff = 1,  ///< a property rule, where property components are not available
  kVersion = 2,        ///< no range holds its version
  kName = 3,           ///< its name does not match
  kValue = 4,          ///< a property of the rule's name whose value fails a comparison
  kDependency = 5,     ///< a dependency finds nothing on the machine
};

/// A switch that keeps tests from being made.
enum class MatchForce : std::int32_t {
  kByType = 0,  ///< the candidate is a hit without any test
  kByName = 1,  ///< the version is not looked at
};

// The steps. Their references and views hold until the call returns.

/// A file rule's path is looked up. Where a file or directory is there, it is the one candidate.
struct FileStep {
  enum class Outcome : std::int32_t { kNoPath, kUnknownPlaceholder, kNothingThere, kFile, kDirectory };

  Outcome mOutcome;
  const std::string& mExpandedPath;  ///< as the rule has it when its placeholders cannot be expanded
};

/// The candidate's version is masked, then reduced. An empty mask or modulus changes nothing.
struct VersionStep {
  const OSComponentVersion& mVersion;
  const OSComponentVersion& mMask;
  const OSComponentVersion& mMasked;
  const OSComponentVersion& mModulus;
  const OSComponentVersion& mCompared;  ///< what the ranges see
  std::size_t mRangeCount;              ///< none holds every version
};

/// A range is asked. Those behind the first that holds the version are not.
struct RangeStep {
  std::size_t mIndex;
  const VersionRange& mRange;
  const OSComponentVersion& mCompared;
  bool mHolds;
};

/// The names are compared.
struct NameStep {
  enum class Outcome : std::int32_t {
    kEqual,        ///< byte for byte
    kMatches,      ///< the rule's name, as an expression, matches the whole name
    kDiffers,      ///< it does not; of a property: the names are not equal
    kMalformed,    ///< the rule's name is no expression: logged, and no match
    kRefused,      ///< it is beyond the bounds of expressions: the same
    kRuleHasNone,  ///< the rule's name is empty
    kComponentHasNone,
  };

  Outcome mOutcome;
  /// The candidate had failed by its version already. The names were compared for the explanation alone,
  /// which logs nothing and uses up nothing of the time that expressions may take in a match.
  bool mIsAside;
  std::string_view mReason;  ///< why an expression is malformed or refused

  /// Whether the name test is passed.
  [[nodiscard]] bool Matches() const { return mOutcome == Outcome::kEqual || mOutcome == Outcome::kMatches; }
};

/// A property's value is compared with an operand.
struct ComparisonStep {
  enum class Outcome : std::int32_t {
    kHolds,
    kFails,
    kMalformed,    ///< the operand is no expression: logged, and no match
    kRefused,      ///< it is beyond the bounds of expressions: the same
    kNotLookedAt,  ///< text comparisons have decided alone, or an earlier one has failed
  };

  SCRPropertyOperator mOperator;
  const std::string& mValue;
  const std::string& mOperand;
  Outcome mOutcome;
  /// What is read of the two texts when integers are compared.
  std::optional<std::int64_t> mIntegerValue;
  std::optional<std::int64_t> mIntegerOperand;
  std::string_view mReason;  ///< why an expression is malformed or refused
};

/// Hears of the steps of a match in the order in which they are taken. What it does not override it does not
/// hear of. Nothing is kept for it, so a long match takes no memory. Its functions must not throw and must
/// not match anything themselves.
///
/// A rule's steps stand between `BeginRule` and `EndRule`; a candidate's, between `BeginCandidate` and
/// `EndCandidate`, are `OnForced`, or `OnVersion` and `OnRange`, `OnName`, `OnComparison`, and then the
/// dependencies. Within a dependency everything comes again, from `OnFile` or `BeginCandidate` on.
class MatchObserver {
 public:
  MatchObserver() = default;
  MatchObserver(const MatchObserver&) = delete;
  MatchObserver& operator=(const MatchObserver&) = delete;
  virtual ~MatchObserver() = default;

  /// The rule at this index comes next. When it returns false the rule is matched without a word, and nothing
  /// more is heard of it, not even its end.
  virtual bool BeginRule(std::size_t, const SCRRule&) { return true; }
  virtual void EndRule(std::size_t /*hitCount*/) {}

  virtual void OnFile(const FileStep&) {}
  virtual void BeginCandidate(const std::shared_ptr<OSComponent>&) {}
  virtual void OnForced(MatchForce) {}
  virtual void OnVersion(const VersionStep&) {}
  virtual void OnRange(const RangeStep&) {}
  virtual void OnName(const NameStep&) {}
  virtual void OnComparison(const ComparisonStep&) {}

  /// The candidate passed all else, and the dependency at this index is asked. The outcome of one that was
  /// asked before in the match of this rule may be remembered: then no steps come before its end.
  virtual void BeginDependency(std::size_t, const SCRRule&) {}
  virtual void EndDependency(bool /*foundSomething*/, bool /*isRemembered*/) {}

  /// The candidate has failed, so the dependencies count for nothing. They were asked for the explanation
  /// alone, as the names of `NameStep::mIsAside` are: the index of the first that finds nothing, or nothing
  /// when all of them find something. Not heard of for a rule without dependencies.
  virtual void OnDependenciesAside(std::optional<std::size_t> /*firstThatFindsNothing*/) {}

  virtual void EndCandidate(MatchVerdict) {}
};

/// Matches the rule as `SCRRule::FindMatchingOSComponents` does, with the same hits and the same log lines,
/// and shows the steps. The rule's index is 0. Does not throw.
QELSCR_EXPORT void ExplainMatch(const SCRRule& rule, const OSComponentRegistry& registry,
                                MatchObserver& observer);

/// Matches the rules of a blocklist one after the other, as `SCRBlocklist::MatchToOSComponents` does, and
/// shows the steps of those that `observer` wants to hear of. The others are matched, too: what their
/// expressions cost counts. The switches of `SCRRule` hold as they stand. Does not throw.
QELSCR_EXPORT void ExplainMatch(const std::vector<SCRRule>& rules, const OSComponentRegistry& registry,
                                MatchObserver& observer);

}  // namespace qelsystemcompatibilityreport
