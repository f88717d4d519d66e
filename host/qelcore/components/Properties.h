// A system's properties: named texts about the machine, for rules and for people who read a report.
//
// `docs/components.md` lists them all. None holds a serial number, an address, or the name of a person or of
// a machine. A property whose value cannot be read is left out.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace qelcore::host::components {

/// Values by name, both UTF-8. The order of the names is the order of the components, so that properties that
/// were saved stand where fresh ones do and the registry's hash stays the same.
using Properties = std::map<std::string, std::string, std::less<>>;

/// Adds a property, its value cleaned; does nothing when no value is left.
void AddProperty(Properties& properties, std::string_view name, std::string_view value);

}  // namespace qelcore::host::components
