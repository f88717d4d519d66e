// Unknown and duplicate keys of one object.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "authoring/model/Document.h"

namespace authoring {

/// Adds a finding for each key that is not among the known ones, and for each that a later one outdoes. The
/// object belongs to the rule, when there is one.
void CheckKeys(Document& document, std::optional<std::size_t> rule, const JsonNode& object,
               std::span<const std::string_view> known);

}  // namespace authoring
