#include "tests/fuzz/support/MachineComponents.h"

#include <algorithm>
#include <set>
#include <string>

#include "platform/qelcore/Text.h"
#include "tests/fuzz/support/Require.h"

namespace fuzz {

using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;

namespace {

/// The longest text that is taken over, twice, with what the readers put round it.
constexpr std::size_t kMostUnits = 600;

void RequireSoundText(const std::string& text) {
  const std::u16string units = qelcore::string::UTF8to16(text);
  Require(qelcore::string::UTF16to8(units) == text, "a component's texts are UTF-8");
  Require(units.size() <= kMostUnits, "a component's texts are bounded");
  Require(std::none_of(units.begin(), units.end(),
                       [](char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }),
          "a component's texts hold no control characters");
}

}  // namespace

void RequireSoundComponents(const OSComponentRegistry::Components& components) {
  std::set<std::string> properties;
  OSComponentType previous = OSComponentType::kOS;
  for (const auto& component : components) {
    Require(component != nullptr && component->GetType() >= previous,
            "components come in the registry's order");
    Require(component->GetType() != OSComponentType::kFile, "files are no components");
    previous = component->GetType();
    Require(!component->GetName().empty(), "a component has a name");
    RequireSoundText(component->GetName());
    RequireSoundText(component->GetPropertyValue());
    if (previous != OSComponentType::kProperty) continue;
    Require(!component->GetPropertyValue().empty(), "a property has a value");
    Require(properties.insert(component->GetName()).second, "a property is there once");
  }
}

void RequireEqualComponents(const OSComponentRegistry::Components& left,
                            const OSComponentRegistry::Components& right) {
  Require(std::equal(left.begin(), left.end(), right.begin(), right.end(),
                     [](const auto& first, const auto& second) { return *first == *second; }),
          "a machine reads the same twice");
}

}  // namespace fuzz
