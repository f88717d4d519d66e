#include "qelsystemcompatibilityreport/MatchExplanation.h"

#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/Candidates.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "qelsystemcompatibilityreport/rules/MatchingRun.h"

namespace qelsystemcompatibilityreport {

namespace {

constexpr std::string_view kContext = "qelsystemcompatibilityreport::ExplainMatch";

}  // namespace

void SCRRule::Explain(std::size_t index, Candidates& candidates, MatchObserver& observer) const {
  if (!observer.BeginRule(index, *this)) {
    static_cast<void>(FindMatchingCandidates(candidates));
    return;
  }
  std::size_t hitCount = 0;
  AtBoundary(kMatchingContext,
             [&] { hitCount = MatchingRun<MatchObserver>(candidates, observer).FindHits(*this).size(); });
  observer.EndRule(hitCount);
}

void ExplainMatch(const SCRRule& rule, const OSComponentRegistry& registry, MatchObserver& observer) {
  AtBoundary(kContext, [&] {
    Candidates candidates(registry);
    rule.Explain(0, candidates, observer);
  });
}

void ExplainMatch(const std::vector<SCRRule>& rules, const OSComponentRegistry& registry,
                  MatchObserver& observer) {
  AtBoundary(kContext, [&] {
    ExpressionBudget::Start();
    Candidates candidates(registry);
    for (std::size_t index = 0; index < rules.size(); ++index) {
      if (rules[index].GetType() == OSComponentType::kInvalid) continue;
      rules[index].Explain(index, candidates, observer);
    }
  });
}

}  // namespace qelsystemcompatibilityreport
