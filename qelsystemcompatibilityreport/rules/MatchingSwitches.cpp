#include "qelsystemcompatibilityreport/rules/MatchingSwitches.h"

#include "qelsystemcompatibilityreport/rules/SeparateState.h"

namespace qelsystemcompatibilityreport {

MatchingSwitches& MatchingSwitches::Instance() {
  static MatchingSwitches switches;
  SeparateState* const separate = SeparateState::Current();
  return separate == nullptr ? switches : separate->mSwitches;
}

}  // namespace qelsystemcompatibilityreport
