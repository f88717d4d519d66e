// Rules and machines for the tests of rules and blocklists.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/TestHost.h"

namespace testsupport {

using Components = qelcore::utility::OSComponentRegistry::Components;

/// Reads a rule from JSON text; the test fails when it cannot be read.
[[nodiscard]] inline qelsystemcompatibilityreport::SCRRule ReadRule(const std::string& json) {
  qelsystemcompatibilityreport::SCRRule rule;
  EXPECT_TRUE(rule.FromJSON(qelcore::json::Parse(json))) << json;
  return rule;
}

/// Components of one kind, from pairs of name and version.
[[nodiscard]] inline Components ComponentsOfKind(
    qelcore::utility::OSComponentType kind,
    const std::vector<std::pair<std::string, std::string>>& namesAndVersions) {
  Components components;
  for (const auto& [name, version] : namesAndVersions) components.push_back(Component(kind, name, version));
  return components;
}

/// The names of the components, in their order.
[[nodiscard]] inline std::vector<std::string> Names(const Components& components) {
  std::vector<std::string> names;
  for (const auto& component : components) names.push_back(component->GetName());
  return names;
}

/// The names of the components that a rule hits.
[[nodiscard]] inline std::vector<std::string> HitNames(const std::string& ruleJson,
                                                       const Components& machine) {
  return Names(ReadRule(ruleJson).FindMatchingOSComponents(qelcore::utility::OSComponentRegistry(machine)));
}

}  // namespace testsupport
