// Components as lines, for comparing and for messages.
#pragma once

#include <string>
#include <vector>

#include "platform/qelcore/Components.h"

namespace testsupport {

/// One line for each component: "Video | name | version" or "Property | name | value".
[[nodiscard]] inline std::vector<std::string> Lines(
    const qelcore::utility::OSComponentRegistry::Components& components) {
  using namespace qelcore::utility;
  std::vector<std::string> lines;
  for (const auto& component : components) {
    const std::string last = component->GetType() == OSComponentType::kProperty
                                 ? component->GetPropertyValue()
                                 : component->GetVersion().ToString();
    lines.push_back(ComponentTypeToString(component->GetType()) + " | " + component->GetName() + " | " +
                    last);
  }
  return lines;
}

}  // namespace testsupport
