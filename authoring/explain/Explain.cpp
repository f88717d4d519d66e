#include "authoring/explain/Explain.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "authoring/explain/ExplanationBuilder.h"

namespace authoring {

using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr std::size_t kMostHits = 20;
constexpr std::size_t kMostMisses = 10;
constexpr std::size_t kMostWhenAsked = 50;

class Collector : public ExplanationBuilder {
 public:
  Collector(const ExplainQuestion& question, Explained& explained)
      : mQuestion(question),
        mExplained(explained),
        mMostHits(IsAsked() ? kMostWhenAsked : kMostHits),
        mMostMisses(IsAsked() ? kMostWhenAsked : kMostMisses) {}

 protected:
  bool WantsRule(std::size_t index, const SCRRule&) override {
    mHasCandidates = false;
    return mQuestion.mRules.empty() || mQuestion.mRules.contains(index);
  }

  bool WantsCandidate(const OSComponent& component) override {
    mHasCandidates = true;
    return mQuestion.mComponents.empty() || mQuestion.mComponents.contains(component.GetName());
  }

  void Take(Explanation& explanation) override {
    ++mExplained.mVerdicts.at(static_cast<std::size_t>(explanation.mVerdict));
    if (explanation.IsHit()) {
      if (++mExplained.mHitCount <= mMostHits) mExplained.mHits.push_back(Tell(explanation));
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
    const bool isFull = misses.size() == mMostMisses;
    if (isFull && place == misses.end()) return;
    misses.insert(place, Tell(explanation));
    if (isFull) misses.pop_back();
  }

  const ExplainQuestion& mQuestion;
  Explained& mExplained;
  std::size_t mMostHits;
  std::size_t mMostMisses;
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
