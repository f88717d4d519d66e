// Which components a rule hits.
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/rules/Candidates.h"
#include "qelsystemcompatibilityreport/rules/FileComponents.h"
#include "qelsystemcompatibilityreport/rules/MatchingRun.h"
#include "qelsystemcompatibilityreport/rules/MatchingSwitches.h"

namespace qelsystemcompatibilityreport {

namespace {

using Components = OSComponentRegistry::Components;

}  // namespace

Components SCRRule::FindMatchingOSComponents(const OSComponentRegistry& registry) const {
  return AtBoundary(kMatchingContext, Components(), [&] {
    Candidates candidates(registry);
    NoObserver nobody;
    return MatchingRun<NoObserver>(candidates, nobody).FindHits(*this);
  });
}

Components SCRRule::FindMatchingCandidates(Candidates& candidates) const {
  return AtBoundary(kMatchingContext, Components(), [&] {
    NoObserver nobody;
    return MatchingRun<NoObserver>(candidates, nobody).FindHits(*this);
  });
}

std::shared_ptr<OSComponent> SCRRule::FindMatchingFileComponent() const {
  return FindFile(GetName()).mComponent;
}

bool SCRRule::MatchesPropertyComponent(const OSComponent& component) const {
  return AtBoundary(kPropertyContext, false, [&] {
    NoObserver nobody;
    bool isOfThisName = false;
    return MatchingRun<NoObserver>::MatchesProperty(*this, component, nobody, isOfThisName);
  });
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
