// The matching of one rule, watched or not.
//
// A report matches with `NoObserver`, of which nothing is left once it is compiled; `ExplainMatch` with a
// `MatchObserver`. It is the same code that decides for both.
#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/Candidates.h"
#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "qelsystemcompatibilityreport/rules/FileComponents.h"
#include "qelsystemcompatibilityreport/rules/MatchingSwitches.h"
#include "qelsystemcompatibilityreport/rules/PropertyOperator.h"

namespace qelsystemcompatibilityreport {

inline constexpr std::string_view kMatchingContext =
    "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents";
inline constexpr std::string_view kPropertyContext =
    "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent";

/// Nobody watches.
struct NoObserver {
  void BeginCandidate(const std::shared_ptr<OSComponent>&) {}
  void OnForced(MatchForce) {}
  void OnVersion(const VersionStep&) {}
  void OnRange(const RangeStep&) {}
  void OnName(const NameStep&) {}
  void BeginDependency(std::size_t, const SCRRule&) {}
  void EndDependency(bool, bool) {}
  void EndCandidate(MatchVerdict) {}
};

/// Nobody watches, and nothing is logged: for what is asked for an explanation alone.
struct AsideObserver : NoObserver {};

/// The matching of one rule against one registry, with the rules that it depends on.
///
/// Dependencies are conditions on the machine and are asked afresh for every candidate, as if each candidate
/// came alone. Taken literally, a nest of dependencies that each hit several components would take a time
/// that grows with every level as a power. An outcome cannot change within a run, though, and asking again
/// can be noticed only where it logs, so an outcome that was reached silently is remembered, and so is one
/// that logged, once it was asked for often enough.
template <typename Observer>
class SCRRule::MatchingRun {
 public:
  using Components = OSComponentRegistry::Components;

  MatchingRun(Candidates& candidates, Observer& observer) : mCandidates(candidates), mObserver(observer) {}

  Components FindHits(const SCRRule& rule) {
    Components hits;
    std::optional<Expression> name;
    if (rule.GetType() == OSComponentType::kFile) {
      const auto component = rule.FindMatchingFileComponent();
      if constexpr (kIsObserved) {
        const FileAnswer& answer = FindFile(rule.GetName());
        mObserver.OnFile({answer.mOutcome, answer.mExpandedPath});
      }
      if (component && IsHit(rule, Candidate(component), name)) hits.push_back(component);
      return hits;
    }
    for (const Candidate& candidate : mCandidates.OfType(rule.GetType())) {
      if (IsHit(rule, candidate, name)) hits.push_back(candidate.mComponent);
    }
    return hits;
  }

  /// Whether a property satisfies a property rule. `isOfThisName` says whether its name does. Throws when an
  /// expression is malformed.
  static bool MatchesProperty(const SCRRule& rule, const OSComponent& component, Observer& observer,
                              bool& isOfThisName) {
    isOfThisName = component.GetType() == OSComponentType::kProperty && component.GetName() == rule.GetName();
    observer.OnName({isOfThisName ? NameStep::Outcome::kEqual : NameStep::Outcome::kDiffers, false, {}});
    return isOfThisName && SatisfiesComparisons(rule, component.GetPropertyValue(), observer);
  }

 private:
  static constexpr bool kIsObserved = std::is_same_v<Observer, MatchObserver>;

  struct Outcome {
    bool mFoundSomething = false;
    bool mIsFinal = false;
    int mTimesAsked = 0;
  };

  /// From this many times on a dependency that logs is not asked again.
  static constexpr int kMostTimesAsked = 1000;

  /// `name` is the rule's name, once a candidate needed it.
  bool IsHit(const SCRRule& rule, const Candidate& candidate, std::optional<Expression>& name) {
    mObserver.BeginCandidate(candidate.mComponent);
    const MatchVerdict verdict = Judge(rule, candidate, name);
    if constexpr (kIsObserved) {
      if (verdict != MatchVerdict::kHit && verdict != MatchVerdict::kDependency) {
        AskDependenciesAside(rule);
      }
    }
    mObserver.EndCandidate(verdict);
    return verdict == MatchVerdict::kHit;
  }

  MatchVerdict Judge(const SCRRule& rule, const Candidate& candidate, std::optional<Expression>& name) {
    if (MatchingSwitches::Instance().mForceByType) {
      mObserver.OnForced(MatchForce::kByType);
      return MatchVerdict::kHit;
    }
    if (rule.GetType() == OSComponentType::kProperty) {
      if (!OSComponent::SupportsProperties()) return MatchVerdict::kPropertiesOff;
      bool isOfThisName = false;
      const bool passes = Passes(kPropertyContext, [&] {
        return MatchesProperty(rule, *candidate.mComponent, mObserver, isOfThisName);
      });
      if (!passes) return isOfThisName ? MatchVerdict::kValue : MatchVerdict::kName;
    } else {
      // A file rule's name has chosen the candidate already.
      const bool hasNameTest = rule.GetType() != OSComponentType::kFile;
      if (MatchingSwitches::Instance().mForceByName) {
        mObserver.OnForced(MatchForce::kByName);
      } else if (!MatchesVersion(rule, candidate.mVersion)) {
        if constexpr (kIsObserved) {
          if (hasNameTest) CompareNamesAside(rule, candidate.mName, name);
        }
        return MatchVerdict::kVersion;
      }
      if (hasNameTest && !MatchesName(rule, candidate.mName, name)) return MatchVerdict::kName;
    }
    for (std::size_t index = 0; index < rule.mDependencies.size(); ++index) {
      if (!FindsSomething(index, rule.mDependencies[index])) return MatchVerdict::kDependency;
    }
    return MatchVerdict::kHit;
  }

  bool MatchesVersion(const SCRRule& rule, const OSComponentVersion& version) {
    const OSComponentVersion masked = rule.mVersionMask ? version & rule.mVersionMask : version;
    const OSComponentVersion compared = rule.mVersionMod ? masked % rule.mVersionMod : masked;
    mObserver.OnVersion(
        {version, rule.mVersionMask, masked, rule.mVersionMod, compared, rule.mVersions.size()});
    if (rule.mVersions.empty()) return true;
    for (const VersionRange& range : rule.mVersions) {
      const bool holds = range.IsVersionInRange(compared);
      mObserver.OnRange({static_cast<std::size_t>(&range - rule.mVersions.data()), range, compared, holds});
      if (holds) return true;
    }
    return false;
  }

  bool MatchesName(const SCRRule& rule, const std::string& candidate, std::optional<Expression>& name) {
    if (!name) name.emplace(rule.GetName());
    if (name->Text().empty() || candidate.empty()) {
      mObserver.OnName(
          {name->Text().empty() ? NameStep::Outcome::kRuleHasNone : NameStep::Outcome::kComponentHasNone,
           false,
           {}});
      return false;
    }
    if (name->Text() == candidate) {
      mObserver.OnName({NameStep::Outcome::kEqual, false, {}});
      return true;
    }
    return Passes(kMatchingContext, [&] { return MatchesExpression(*name, candidate, false); });
  }

  bool MatchesExpression(Expression& name, const std::string& candidate, bool isAside) {
    return Watch(
        [&] { return name.MatchesWhole(candidate); },
        [&](bool matches) {
          mObserver.OnName(
              {matches ? NameStep::Outcome::kMatches : NameStep::Outcome::kDiffers, isAside, {}});
        },
        [&](bool isMalformed, std::string_view reason) {
          mObserver.OnName(
              {isMalformed ? NameStep::Outcome::kMalformed : NameStep::Outcome::kRefused, isAside, reason});
        });
  }

  /// For the explanation alone.
  void CompareNamesAside(const SCRRule& rule, const std::string& candidate, std::optional<Expression>& name) {
    if (!name) name.emplace(rule.GetName());
    const auto tell = [&](NameStep::Outcome outcome) { mObserver.OnName({outcome, true, {}}); };
    if (name->Text().empty()) return tell(NameStep::Outcome::kRuleHasNone);
    if (candidate.empty()) return tell(NameStep::Outcome::kComponentHasNone);
    if (name->Text() == candidate) return tell(NameStep::Outcome::kEqual);
    const ExpressionBudget::Aside aside;
    try {
      static_cast<void>(MatchesExpression(*name, candidate, true));
    } catch (const std::exception&) {
      // Told already. A match would not have come so far, so nothing is logged.
    }
  }

  /// For the explanation alone.
  void AskDependenciesAside(const SCRRule& rule) {
    if (rule.mDependencies.empty()) return;
    const ExpressionBudget::Aside aside;
    if (!mAside) mAside.emplace(mCandidates, mNobody);
    const auto failed =
        std::find_if(rule.mDependencies.begin(), rule.mDependencies.end(),
                     [&](const SCRRule& dependency) { return !mAside->FindsSomething(0, dependency); });
    mObserver.OnDependenciesAside(
        failed == rule.mDependencies.end()
            ? std::nullopt
            : std::optional(static_cast<std::size_t>(std::distance(rule.mDependencies.begin(), failed))));
  }

  static bool SatisfiesComparisons(const SCRRule& rule, const std::string& value, Observer& observer) {
    // Text comparisons decide alone, even beside integer comparisons. That is intended.
    if (!rule.mStringComparisons.empty()) {
      if constexpr (kIsObserved) {
        for (const auto& [propertyOperator, operand] : rule.mIntegerComparisons) {
          observer.OnComparison(
              {propertyOperator, value, operand, ComparisonStep::Outcome::kNotLookedAt, {}, {}, {}});
        }
      }
      bool allHold = true;
      for (const auto& [propertyOperator, operand] : rule.mStringComparisons) {
        // Every one is evaluated: a malformed expression is logged even where another comparison fails.
        allHold &= CompareTexts(propertyOperator, value, operand, observer);
      }
      return allHold;
    }
    for (auto comparison = rule.mIntegerComparisons.begin(); comparison != rule.mIntegerComparisons.end();
         ++comparison) {
      const auto& [propertyOperator, operand] = *comparison;
      const long long integerValue = ToInteger(value);
      const long long integerOperand = ToInteger(operand);
      const bool holds = ComparisonHolds(propertyOperator, CompareIntegers(integerValue, integerOperand));
      if constexpr (kIsObserved) {
        observer.OnComparison({propertyOperator,
                               value,
                               operand,
                               holds ? ComparisonStep::Outcome::kHolds : ComparisonStep::Outcome::kFails,
                               integerValue,
                               integerOperand,
                               {}});
        if (!holds) {
          while (++comparison != rule.mIntegerComparisons.end()) {
            observer.OnComparison({comparison->first,
                                   value,
                                   comparison->second,
                                   ComparisonStep::Outcome::kNotLookedAt,
                                   {},
                                   {},
                                   {}});
          }
        }
      }
      if (!holds) return false;
    }
    return true;
  }

  static bool CompareTexts(SCRPropertyOperator propertyOperator, const std::string& value,
                           const std::string& operand, Observer& observer) {
    const auto tell = [&](ComparisonStep::Outcome outcome, std::string_view reason) {
      if constexpr (kIsObserved) {
        observer.OnComparison({propertyOperator, value, operand, outcome, {}, {}, reason});
      }
    };
    return Watch(
        [&] {
          return propertyOperator == SCRPropertyOperator::kRegularExpression
                     ? MatchesWhole(operand, value)
                     : ComparisonHolds(propertyOperator, value.compare(operand));
        },
        [&](bool holds) {
          tell(holds ? ComparisonStep::Outcome::kHolds : ComparisonStep::Outcome::kFails, {});
        },
        [&](bool isMalformed, std::string_view reason) {
          tell(isMalformed ? ComparisonStep::Outcome::kMalformed : ComparisonStep::Outcome::kRefused, reason);
        });
  }

  /// Runs a test and tells what it returns, or why its expression is malformed or refused, when somebody
  /// watches. What it throws goes on.
  template <typename Test, typename Tell, typename TellRefusal>
  static bool Watch(Test&& test, Tell&& tell, TellRefusal&& tellRefusal) {
    if constexpr (kIsObserved) {
      bool result = false;
      try {
        result = test();
      } catch (const std::regex_error& error) {
        tellRefusal(error.code() != std::regex_constants::error_complexity, error.what());
        throw;
      } catch (const std::exception& error) {
        tellRefusal(false, error.what());
        throw;
      }
      tell(result);
      return result;
    } else {
      return test();
    }
  }

  /// Runs a test whose expression may be malformed: that is logged, and counts as no match for this
  /// candidate.
  template <typename Test>
  bool Passes(std::string_view context, Test&& test) {
    if constexpr (std::is_same_v<Observer, AsideObserver>) {
      try {
        return test();
      } catch (const std::exception&) {
        return false;
      }
    }
    bool hasEnded = false;
    const bool passes = AtBoundary(context, false, [&] {
      const bool result = test();
      hasEnded = true;
      return result;
    });
    if (!hasEnded) ++mTimesLogged;
    return passes;
  }

  bool FindsSomething(std::size_t index, const SCRRule& dependency) {
    mObserver.BeginDependency(index, dependency);
    Outcome& outcome = mOutcomes[&dependency];
    const bool isRemembered = outcome.mIsFinal;
    if (!isRemembered) {
      const std::size_t timesLoggedBefore = mTimesLogged;
      const bool foundSomething = !FindHits(dependency).empty();
      // Asking a nested dependency may have moved the table, but never its elements.
      outcome.mFoundSomething = foundSomething;
      outcome.mIsFinal = mTimesLogged == timesLoggedBefore || ++outcome.mTimesAsked >= kMostTimesAsked;
    }
    mObserver.EndDependency(outcome.mFoundSomething, isRemembered);
    return outcome.mFoundSomething;
  }

  template <typename>
  friend class MatchingRun;

  Candidates& mCandidates;
  Observer& mObserver;
  std::unordered_map<const SCRRule*, Outcome> mOutcomes;
  std::size_t mTimesLogged = 0;

  struct Nothing {};
  /// What is asked for the explanation alone, with what it remembers.
  [[no_unique_address]] std::conditional_t<kIsObserved, std::optional<MatchingRun<AsideObserver>>, Nothing>
      mAside;
  [[no_unique_address]] AsideObserver mNobody;
};

}  // namespace qelsystemcompatibilityreport
