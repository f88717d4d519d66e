#include "authoring/explain/Explain.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>

#include "authoring/explain/ExplanationBuilder.h"

namespace authoring {

using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr std::size_t kMostHits = 20;
constexpr std::size_t kMostMisses = 10;
constexpr std::size_t kMostWhenAsked = 50;
/// Of one rule, where nothing was asked: so that a rule that hits everything leaves room for others.
constexpr std::size_t kMostOfOneRule = 3;

class Collector : public ExplanationBuilder {
 public:
  Collector(const ExplainQuestion& question, Explained& explained)
      : ExplanationBuilder(question.mFiles),
        mQuestion(question),
        mExplained(explained),
        mMostHits(IsAsked() ? kMostWhenAsked : kMostHits),
        mMostMisses(IsAsked() ? kMostWhenAsked : kMostMisses) {}

 protected:
  bool WantsRule(std::size_t index, const SCRRule&) override {
    mHasCandidates = false;
    mHitsOfRule = 0;
    return mQuestion.mRules.empty() || mQuestion.mRules.contains(index);
  }

  bool WantsCandidate(const std::shared_ptr<OSComponent>& component) override {
    mHasCandidates = true;
    return mQuestion.mComponents.empty() || mQuestion.mComponents.contains(component->GetName());
  }

  void Take(Explanation& explanation) override {
    ++mExplained.mVerdicts.at(static_cast<std::size_t>(explanation.mVerdict));
    if (explanation.IsHit()) {
      ++mExplained.mHitCount;
      ++mHitsOfRule;
      const bool hasRoom = IsAsked() || mHitsOfRule <= kMostOfOneRule;
      if (hasRoom && mExplained.mHits.size() < mMostHits) mExplained.mHits.push_back(Tell(explanation));
      return;
    }
    const bool isNear = explanation.mNearness.IsNear();
    if (isNear) ++mExplained.mNearCount;
    if (isNear || !mQuestion.mRules.empty()) KeepNearest(explanation);
  }

  void EndOfRule() override {
    if (mQuestion.mRules.empty() || mHasCandidates) return;
    if (mExplained.mWithoutCandidates.size() == kMostWhenAsked) return;
    mExplained.mWithoutCandidates.push_back(TellRule());
  }

 private:
  [[nodiscard]] bool IsAsked() const { return !mQuestion.mRules.empty() || !mQuestion.mComponents.empty(); }

  [[nodiscard]] ToldRule TellRule() const {
    return {RuleIndex(), Rule().GetName(), Rule().GetType(), Rule().GetID(), File()};
  }

  ToldExplanation Tell(Explanation& explanation) const { return {TellRule(), std::move(explanation)}; }

  void KeepNearest(Explanation& explanation) {
    auto& misses = mExplained.mMisses;
    const auto place = std::upper_bound(misses.begin(), misses.end(), explanation.mNearness,
                                        [](const Nearness& nearness, const ToldExplanation& other) {
                                          return nearness < other.mSteps.mNearness;
                                        });
    if (misses.size() == mMostMisses && place == misses.end()) return;
    misses.insert(place, Tell(explanation));
    if (!IsAsked()) DropFarthestOfRule(misses);
    if (misses.size() > mMostMisses) misses.pop_back();
  }

  void DropFarthestOfRule(std::vector<ToldExplanation>& misses) const {
    const auto isOfRule = [&](const ToldExplanation& told) { return told.mRule.mIndex == RuleIndex(); };
    if (static_cast<std::size_t>(std::count_if(misses.begin(), misses.end(), isOfRule)) <= kMostOfOneRule) {
      return;
    }
    misses.erase(std::find_if(misses.rbegin(), misses.rend(), isOfRule).base() - 1);
  }

  const ExplainQuestion& mQuestion;
  Explained& mExplained;
  std::size_t mMostHits;
  std::size_t mMostMisses;
  std::size_t mHitsOfRule = 0;
  bool mHasCandidates = false;
};

/// The switches of the debug settings, for one match.
class ForcedMatching {
 public:
  explicit ForcedMatching(const ExplainQuestion& question) {
    SCRRule::ForceMatchByTypeForTesting(question.mForcesByType);
    SCRRule::ForceMatchByNameForTesting(question.mForcesByName);
  }
  ~ForcedMatching() {
    SCRRule::ForceMatchByTypeForTesting(false);
    SCRRule::ForceMatchByNameForTesting(false);
  }
  ForcedMatching(const ForcedMatching&) = delete;
  ForcedMatching& operator=(const ForcedMatching&) = delete;
};

}  // namespace

std::size_t Explained::MissCount() const {
  return std::accumulate(mVerdicts.begin(), mVerdicts.end(), std::size_t{0}) - mHitCount;
}

Explained Explain(const std::vector<SCRRule>& rules, const qelcore::utility::OSComponentRegistry& registry,
                  const ExplainQuestion& question) {
  Explained explained;
  explained.mQuestion = question;
  explained.mRuleCount = rules.size();
  Collector collector(question, explained);
  const ForcedMatching forced(question);
  qelsystemcompatibilityreport::ExplainMatch(rules, registry, collector);
  return explained;
}

}  // namespace authoring
