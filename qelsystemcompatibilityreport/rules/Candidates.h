// The components of a machine as matching looks at them, once for each rule and component.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/qelcore/Components.h"

namespace qelsystemcompatibilityreport {

/// A component with its name and version beside it, which its accessors copy at each call.
struct Candidate {
  explicit Candidate(std::shared_ptr<qelcore::utility::OSComponent> component)
      : mVersion(component->GetVersion()), mName(component->GetName()), mComponent(std::move(component)) {}

  qelcore::utility::OSComponentVersion mVersion;
  std::string mName;
  std::shared_ptr<qelcore::utility::OSComponent> mComponent;
};

/// The candidates of one registry, which must outlive this. Each kind is prepared when it is first asked for.
/// Not synchronised.
class Candidates {
 public:
  explicit Candidates(const qelcore::utility::OSComponentRegistry& registry) : mRegistry(registry) {}

  /// The components of a kind, in the registry's order.
  [[nodiscard]] const std::vector<Candidate>& OfType(qelcore::utility::OSComponentType type) {
    static const std::vector<Candidate> none;
    const auto index = static_cast<std::int32_t>(type);
    if (index < 0 || index >= qelcore::utility::kOSComponentTypeCount) return none;
    std::optional<std::vector<Candidate>>& ofType = mByType[static_cast<std::size_t>(index)];
    if (!ofType) {
      const auto& components = mRegistry.GetComponentsOfType(type);
      ofType.emplace(components.begin(), components.end());
    }
    return *ofType;
  }

 private:
  const qelcore::utility::OSComponentRegistry& mRegistry;
  std::array<std::optional<std::vector<Candidate>>, qelcore::utility::kOSComponentTypeCount> mByType;
};

}  // namespace qelsystemcompatibilityreport
