// Which components a rule hits.
#include <cstdlib>
#include <optional>
#include <unordered_map>

#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/Candidates.h"
#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "qelsystemcompatibilityreport/rules/FileComponents.h"
#include "qelsystemcompatibilityreport/rules/MatchingSwitches.h"

namespace qelsystemcompatibilityreport {

namespace {

using Components = OSComponentRegistry::Components;

constexpr std::string_view kContext = "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents";
constexpr std::string_view kPropertyContext =
    "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent";

bool Holds(SCRPropertyOperator propertyOperator, int comparison) {
  switch (propertyOperator) {
    case SCRPropertyOperator::kEqual:
    case SCRPropertyOperator::kIntegerEqual:
      return comparison == 0;
    case SCRPropertyOperator::kNotEqual:
    case SCRPropertyOperator::kIntegerNotEqual:
      return comparison != 0;
    case SCRPropertyOperator::kLess:
    case SCRPropertyOperator::kIntegerLess:
      return comparison < 0;
    case SCRPropertyOperator::kLessOrEqual:
    case SCRPropertyOperator::kIntegerLessOrEqual:
      return comparison <= 0;
    case SCRPropertyOperator::kGreater:
    case SCRPropertyOperator::kIntegerGreater:
      return comparison > 0;
    case SCRPropertyOperator::kGreaterOrEqual:
    case SCRPropertyOperator::kIntegerGreaterOrEqual:
      return comparison >= 0;
    case SCRPropertyOperator::kRegularExpression:
      break;
  }
  return false;
}

/// White space, a sign and decimal digits are read, the rest is ignored; a text without digits is 0, one
/// beyond 64 bits the nearest that fits.
long long ToInteger(const std::string& text) {
  return std::strtoll(text.c_str(), nullptr, 10);
}

int Compare(long long left, long long right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

}  // namespace

/// The matching of one rule against one registry, with the rules that it depends on.
///
/// Dependencies are conditions on the machine and are asked afresh for every candidate, as if each candidate
/// came alone. Taken literally, a nest of dependencies that each hit several components would take a time
/// that grows with every level as a power. An outcome cannot change within a run, though, and asking again
/// can be noticed only where it logs, so an outcome that was reached silently is remembered, and so is one
/// that logged, once it was asked for often enough.
class SCRRule::MatchingRun {
 public:
  explicit MatchingRun(Candidates& candidates) : mCandidates(candidates) {}

  Components FindHits(const SCRRule& rule) {
    Components hits;
    std::optional<Expression> name;
    if (rule.GetType() == OSComponentType::kFile) {
      const auto component = rule.FindMatchingFileComponent();
      if (component && IsHit(rule, Candidate(component), name)) hits.push_back(component);
      return hits;
    }
    for (const Candidate& candidate : mCandidates.OfType(rule.GetType())) {
      if (IsHit(rule, candidate, name)) hits.push_back(candidate.mComponent);
    }
    return hits;
  }

 private:
  struct Outcome {
    bool mFoundSomething = false;
    bool mIsFinal = false;
    int mTimesAsked = 0;
  };

  /// From this many times on a dependency that logs is not asked again.
  static constexpr int kMostTimesAsked = 1000;

  /// `name` is the rule's name, once a candidate needed it.
  bool IsHit(const SCRRule& rule, const Candidate& candidate, std::optional<Expression>& name) {
    if (MatchingSwitches::Instance().mForceByType) return true;
    if (rule.GetType() == OSComponentType::kProperty) {
      if (!OSComponent::SupportsProperties()) return false;
      if (!Passes(kPropertyContext, [&] { return rule.MatchesProperty(*candidate.mComponent); }))
        return false;
    } else {
      const bool isForced = MatchingSwitches::Instance().mForceByName;
      if (!isForced && !rule.MatchesVersion(candidate.mVersion)) return false;
      // A file rule's name has chosen the candidate already.
      const bool hasNameTest = rule.GetType() != OSComponentType::kFile;
      if (hasNameTest && !MatchesName(rule, candidate.mName, name)) return false;
    }
    for (const SCRRule& dependency : rule.mDependencies) {
      if (!FindsSomething(dependency)) return false;
    }
    return true;
  }

  bool MatchesName(const SCRRule& rule, const std::string& candidate, std::optional<Expression>& name) {
    if (!name) name.emplace(rule.GetName());
    if (name->Text().empty() || candidate.empty()) return false;
    return name->Text() == candidate || Passes(kContext, [&] { return name->MatchesWhole(candidate); });
  }

  /// Runs a test whose expression may be malformed: that is logged, and counts as no match for this
  /// candidate.
  template <typename Test>
  bool Passes(std::string_view context, Test&& test) {
    bool hasEnded = false;
    const bool passes = AtBoundary(context, false, [&] {
      const bool result = test();
      hasEnded = true;
      return result;
    });
    if (!hasEnded) ++mTimesLogged;
    return passes;
  }

  bool FindsSomething(const SCRRule& dependency) {
    Outcome& outcome = mOutcomes[&dependency];
    if (outcome.mIsFinal) return outcome.mFoundSomething;
    const std::size_t timesLoggedBefore = mTimesLogged;
    const bool foundSomething = !FindHits(dependency).empty();
    // Asking a nested dependency may have moved the table, but never its elements.
    outcome.mFoundSomething = foundSomething;
    outcome.mIsFinal = mTimesLogged == timesLoggedBefore || ++outcome.mTimesAsked >= kMostTimesAsked;
    return foundSomething;
  }

  Candidates& mCandidates;
  std::unordered_map<const SCRRule*, Outcome> mOutcomes;
  std::size_t mTimesLogged = 0;
};

Components SCRRule::FindMatchingOSComponents(const OSComponentRegistry& registry) const {
  return AtBoundary(kContext, Components(), [&] {
    Candidates candidates(registry);
    return MatchingRun(candidates).FindHits(*this);
  });
}

Components SCRRule::FindMatchingCandidates(Candidates& candidates) const {
  return AtBoundary(kContext, Components(), [&] { return MatchingRun(candidates).FindHits(*this); });
}

std::shared_ptr<OSComponent> SCRRule::FindMatchingFileComponent() const {
  return FindFileComponent(GetName());
}

bool SCRRule::MatchesVersion(const OSComponentVersion& version) const {
  OSComponentVersion compared = version;
  if (mVersionMask) compared = compared & mVersionMask;
  if (mVersionMod) compared = compared % mVersionMod;
  if (mVersions.empty()) return true;
  for (const VersionRange& range : mVersions) {
    if (range.IsVersionInRange(compared)) return true;
  }
  return false;
}

bool SCRRule::MatchesPropertyComponent(const OSComponent& component) const {
  return AtBoundary(kPropertyContext, false, [&] { return MatchesProperty(component); });
}

bool SCRRule::MatchesProperty(const OSComponent& component) const {
  return component.GetType() == OSComponentType::kProperty && component.GetName() == GetName() &&
         SatisfiesComparisons(component.GetPropertyValue());
}

bool SCRRule::SatisfiesComparisons(const std::string& value) const {
  // Text comparisons decide alone, even beside integer comparisons. That is intended.
  if (!mStringComparisons.empty()) {
    bool allHold = true;
    for (const auto& [propertyOperator, operand] : mStringComparisons) {
      // Every one is evaluated: a malformed expression is logged even where another comparison fails.
      allHold &= propertyOperator == SCRPropertyOperator::kRegularExpression
                     ? MatchesWhole(operand, value)
                     : Holds(propertyOperator, value.compare(operand));
    }
    return allHold;
  }
  for (const auto& [propertyOperator, operand] : mIntegerComparisons) {
    if (!Holds(propertyOperator, Compare(ToInteger(value), ToInteger(operand)))) return false;
  }
  return true;
}

void SCRRule::ForceMatchByTypeForTesting(bool force) {
  MatchingSwitches::Instance().mForceByType = force;
}

void SCRRule::ForceMatchByNameForTesting(bool force) {
  MatchingSwitches::Instance().mForceByName = force;
}

void SCRRule::ForgetFileComponents() {
  qelsystemcompatibilityreport::ForgetFileComponents();
}

}  // namespace qelsystemcompatibilityreport
