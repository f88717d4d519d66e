// The order of issues, before they are made.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

/// A rule's hit on a component.
struct Hit {
  std::shared_ptr<const OSComponent> mComponent;
  std::size_t mRule = 0;  ///< index of the rule
};

/// Sorts hits as `SCRIssue` sorts the issues that become of them. `rules` are the rules that hit, with the
/// texts that the issues will have.
void SortHits(std::vector<Hit>& hits, const std::vector<SCRRule>& rules);

}  // namespace qelsystemcompatibilityreport
