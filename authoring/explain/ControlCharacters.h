// Control characters in texts of rules: mostly a backslash that should have been two.
#pragma once

#include <string>
#include <string_view>

namespace authoring {

/// What to append to a sentence about a text that hits nothing: which control character `subject` holds and
/// how JSON writes a backslash. It begins with a semicolon; empty when there is no control character.
[[nodiscard]] std::string ControlCharacterHint(std::string_view subject, std::string_view text);

}  // namespace authoring
