#include "qelsystemcompatibilityreport/rules/MatchingSwitches.h"

namespace qelsystemcompatibilityreport {

MatchingSwitches& MatchingSwitches::Instance() {
  static MatchingSwitches switches;
  return switches;
}

}  // namespace qelsystemcompatibilityreport
