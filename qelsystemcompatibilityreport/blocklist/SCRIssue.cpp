#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace qelsystemcompatibilityreport {

SCRIssue::SCRIssue(const OSComponent& component, const SCRRule& rule) : mComponent(component), mRule(rule) {}

bool SCRIssue::operator<(const SCRIssue& other) const {
  if (GetErrorLevel() != other.GetErrorLevel()) return GetErrorLevel() > other.GetErrorLevel();
  if (mComponent < other.mComponent) return true;
  if (!(mComponent == other.mComponent)) return false;
  return GetInfoMessage() < other.GetInfoMessage();
}

}  // namespace qelsystemcompatibilityreport
