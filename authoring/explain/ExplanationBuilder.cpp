#include "authoring/explain/ExplanationBuilder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "authoring/explain/ControlCharacters.h"

namespace authoring {

using qelsystemcompatibilityreport::RangeStep;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::VersionStep;

namespace {

/// Between two integers, which may be the least and the largest there are.
std::uint64_t Difference(std::int64_t left, std::int64_t right) {
  const auto [less, more] = std::minmax(left, right);
  return static_cast<std::uint64_t>(more) - static_cast<std::uint64_t>(less);
}

void MeasureValue(const Explanation& candidate, Nearness& nearness) {
  nearness.mKind = Nearness::Kind::kValue;
  for (const ComparisonFacts& comparison : candidate.mComparisons) {
    if (!comparison.Failed()) continue;
    ++nearness.mFailedComparisons;
    if (comparison.mIntegerValue && comparison.mIntegerOperand && nearness.mFailedComparisons == 1) {
      nearness.mValueDistance = Difference(*comparison.mIntegerValue, *comparison.mIntegerOperand);
    }
  }
}

/// As near as the nearest candidate of the dependency that finds nothing.
Nearness MeasureDependency(const DependencyFacts& dependency) {
  Nearness nearness;
  if (!dependency.mCandidates.empty()) nearness = dependency.mCandidates.front().mNearness;
  const bool isLost =
      nearness.mKind == Nearness::Kind::kDependencyLost || nearness.mKind == Nearness::Kind::kFar;
  nearness.mKind = isLost ? Nearness::Kind::kDependencyLost : Nearness::Kind::kDependency;
  return nearness;
}

/// Empty again, with the memory that it has.
void Clear(Explanation& candidate) {
  candidate.mComponent = nullptr;
  candidate.mForced.reset();
  candidate.mVersion.reset();
  candidate.mRanges.clear();
  candidate.mRangesLeftOut = 0;
  candidate.mName.reset();
  candidate.mComparisons.clear();
  candidate.mDependencies.clear();
  candidate.mDependenciesLeftOut = 0;
  candidate.mDependenciesNotAsked = 0;
  candidate.mWasAskedAside = false;
  candidate.mFailsAside.reset();
  candidate.mNearness = Nearness();
}

}  // namespace

const RangeFacts* Explanation::NearestRange() const {
  const auto nearest = std::min_element(
      mRanges.begin(), mRanges.end(),
      [](const RangeFacts& left, const RangeFacts& right) { return left.mDistance < right.mDistance; });
  return nearest == mRanges.end() ? nullptr : &*nearest;
}

bool ExplanationBuilder::BeginRule(std::size_t index, const SCRRule& rule) {
  if (!WantsRule(index, rule)) return false;
  mRuleIndex = index;
  mName.emplace(rule.GetName());
  mFile.reset();
  if (mLevels.empty()) mLevels.emplace_back();
  mLevels.front().mRule = &rule;
  mIsSkipped = false;
  return true;
}

void ExplanationBuilder::EndRule(std::size_t) {
  EndOfRule();
}

void ExplanationBuilder::OnFile(const FileStep& step) {
  if (!IsKept()) return;
  FileFacts facts{step.mOutcome, step.mExpandedPath, mFiles};
  if (mLevels.size() == 1) {
    mFile = std::move(facts);
  } else {
    mLevels[mLevels.size() - 2].mDependency.mFile = std::move(facts);
  }
}

void ExplanationBuilder::BeginCandidate(const std::shared_ptr<OSComponent>& component) {
  if (mLevels.size() == 1) {
    mCandidatesBelow = 0;
    mIsSkipped = !WantsCandidate(component);
  }
  if (!IsKept()) return;
  Clear(Candidate());
  Candidate().mComponent = component;
}

void ExplanationBuilder::OnForced(MatchForce force) {
  if (IsKept()) Candidate().mForced = force;
}

void ExplanationBuilder::OnVersion(const VersionStep& step) {
  if (!IsKept()) return;
  Candidate().mVersion = {step.mVersion, step.mMask,     step.mMasked,
                          step.mModulus, step.mCompared, step.mRangeCount};
}

void ExplanationBuilder::OnRange(const RangeStep& step) {
  if (!IsKept()) return;
  Explanation& candidate = Candidate();
  RangeFacts facts{step.mIndex, step.mRange, step.mHolds, DistanceTo(step.mRange, step.mCompared)};
  if (candidate.mRanges.size() < kMostRanges) {
    candidate.mRanges.push_back(facts);
    return;
  }
  ++candidate.mRangesLeftOut;
  const auto farthest = std::max_element(
      candidate.mRanges.begin(), candidate.mRanges.end(),
      [](const RangeFacts& left, const RangeFacts& right) { return left.mDistance < right.mDistance; });
  if (!step.mHolds && !(facts.mDistance < farthest->mDistance)) return;
  candidate.mRanges.erase(farthest);
  candidate.mRanges.push_back(facts);
}

void ExplanationBuilder::OnName(const NameStep& step) {
  if (!IsKept()) return;
  NameFacts facts{step.mOutcome, step.mIsAside, std::string(step.mReason)};
  if (!step.Matches()) facts.mHint = ControlCharacterHint("the rule's name", mLevels.back().mRule->GetName());
  Candidate().mName = std::move(facts);
}

void ExplanationBuilder::OnComparison(const ComparisonStep& step) {
  if (!IsKept()) return;
  Candidate().mComparisons.push_back({step.mOperator, step.mValue, step.mOperand, step.mOutcome,
                                      step.mIntegerValue, step.mIntegerOperand, std::string(step.mReason)});
}

void ExplanationBuilder::BeginDependency(std::size_t index, const SCRRule& dependency) {
  const bool isKept = IsKept() && mCandidatesBelow < kMostCandidatesBelow && mLevels.size() <= kDeepest;
  if (IsKept()) {
    mLevels.back().mDependency = {};
    mLevels.back().mDependency.mIndex = index;
    mLevels.back().mDependency.mType = dependency.GetType();
    mLevels.back().mDependency.mName = dependency.GetName();
  }
  Level& level = mLevels.emplace_back();
  level.mRule = &dependency;
  level.mIsKept = isKept;
}

void ExplanationBuilder::EndDependency(bool foundSomething, bool isRemembered) {
  mLevels.pop_back();
  if (!IsKept()) return;
  Explanation& candidate = Candidate();
  DependencyFacts& dependency = mLevels.back().mDependency;
  dependency.mFoundSomething = foundSomething;
  dependency.mIsRemembered = isRemembered;
  // The one that finds nothing is the last one, and decides.
  if (candidate.mDependencies.size() < kMostDependencies || !foundSomething) {
    candidate.mDependencies.push_back(std::move(dependency));
  } else {
    ++candidate.mDependenciesLeftOut;
  }
}

void ExplanationBuilder::OnDependenciesAside(std::optional<std::size_t> firstThatFindsNothing) {
  if (!IsKept()) return;
  Candidate().mWasAskedAside = true;
  Candidate().mFailsAside = firstThatFindsNothing;
}

void ExplanationBuilder::EndCandidate(MatchVerdict verdict) {
  if (!IsKept()) {
    // Of a dependency of which nothing more is kept, how many there were is.
    if (!mIsSkipped && mLevels.size() > 1 && mLevels[mLevels.size() - 2].mIsKept) {
      ++mLevels[mLevels.size() - 2].mDependency.mCandidatesLeftOut;
    }
    return;
  }
  Explanation& candidate = Candidate();
  candidate.mVerdict = verdict;
  // Beside comparisons of texts those of integers are told first, since they are left out at once.
  std::stable_partition(candidate.mComparisons.begin(), candidate.mComparisons.end(),
                        [](const ComparisonFacts& comparison) {
                          return comparison.mOutcome != ComparisonStep::Outcome::kNotLookedAt;
                        });
  candidate.mDependenciesNotAsked = mLevels.back().mRule->GetDependencies().size() -
                                    candidate.mDependencies.size() - candidate.mDependenciesLeftOut;
  candidate.mNearness = Measure(candidate);
  if (mLevels.size() == 1) {
    Take(candidate);
  } else {
    KeepNearest(mLevels[mLevels.size() - 2].mDependency, candidate);
  }
}

Nearness ExplanationBuilder::Measure(const Explanation& candidate) const {
  Nearness nearness;
  if (candidate.mFailsAside) return nearness;
  switch (candidate.mVerdict) {
    case MatchVerdict::kHit:
      nearness.mKind = Nearness::Kind::kHit;
      break;
    case MatchVerdict::kDependency:
      nearness = MeasureDependency(candidate.mDependencies.back());
      break;
    case MatchVerdict::kVersion:
      // A file has no name test: its path has led to it.
      if (candidate.mName && !candidate.mName->Matches()) break;
      nearness.mKind = Nearness::Kind::kVersion;
      nearness.mIsVersionUnknown = !candidate.mVersion->mVersion;
      if (const RangeFacts* const range = candidate.NearestRange()) nearness.mDistance = range->mDistance;
      break;
    case MatchVerdict::kValue:
      MeasureValue(candidate, nearness);
      break;
    case MatchVerdict::kName: {
      const std::string name = candidate.mComponent->GetName();
      const auto nameNearness = mLevels.size() == 1
                                    ? mName->NearnessTo(name)
                                    : RuleName(mLevels.back().mRule->GetName()).NearnessTo(name);
      if (!nameNearness) break;
      nearness.mKind = Nearness::Kind::kName;
      nearness.mName = *nameNearness;
      break;
    }
    case MatchVerdict::kPropertiesOff:
      break;
  }
  return nearness;
}

void ExplanationBuilder::KeepNearest(DependencyFacts& dependency, Explanation& candidate) {
  ++mCandidatesBelow;
  auto& kept = dependency.mCandidates;
  const auto place = std::upper_bound(
      kept.begin(), kept.end(), candidate.mNearness,
      [](const Nearness& nearness, const Explanation& other) { return nearness < other.mNearness; });
  if (kept.size() == kMostCandidatesOfDependency) {
    ++dependency.mCandidatesLeftOut;
    if (place == kept.end()) return;
    kept.insert(place, std::move(candidate));
    kept.pop_back();
  } else {
    kept.insert(place, std::move(candidate));
  }
}

}  // namespace authoring
