// One hit of one rule on one component of the machine.
#pragma once

#include <string>

#include "qelsystemcompatibilityreport/Export.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

/// An issue: copies of the component as the registry reported it and of the rule that hit it, with the
/// blocklist's default texts adopted. A value.
///
/// An issue is remembered by its rule's identifier: two components hit by one rule give two issues of one
/// identifier.
class QELSCR_EXPORT SCRIssue {
 public:
  SCRIssue(const OSComponent& component, const SCRRule& rule);

  // ---- The component --------------------------------------------------------------------------------------

  [[nodiscard]] std::string GetName() const { return mComponent.GetName(); }
  /// The name in a form that logs and events may carry.
  [[nodiscard]] std::string GetPIISafeName() const { return mComponent.GetPIISafeName(); }
  [[nodiscard]] OSComponentType GetType() const { return mComponent.GetType(); }
  [[nodiscard]] OSComponentVersion GetVersion() const { return mComponent.GetVersion(); }
  [[nodiscard]] std::string GetPropertyValue() const { return mComponent.GetPropertyValue(); }
  /// Whether the issue is about this component, or one equal to it.
  [[nodiscard]] bool IsOSComponent(const OSComponent& component) const { return mComponent == component; }

  // ---- The rule -------------------------------------------------------------------------------------------

  [[nodiscard]] SCRRuleErrorLevel GetErrorLevel() const { return mRule.GetErrorLevel(); }
  /// By what the issue is remembered.
  [[nodiscard]] std::string GetID() const { return mRule.GetID(); }
  [[nodiscard]] std::string GetInfoMessage() const { return mRule.GetInfoMessage(); }
  [[nodiscard]] std::string GetInfoURL() const { return mRule.GetInfoURL(); }
  [[nodiscard]] bool IsSeriousError() const { return mRule.IsSeriousError(); }

  /// The order in which issues are shown: the graver level first, then by component, then by message, byte
  /// for byte.
  bool operator<(const SCRIssue& other) const;

 private:
  OSComponent mComponent;
  SCRRule mRule;
};

}  // namespace qelsystemcompatibilityreport
