// Parts of the texts of findings.
#pragma once

#include <string>
#include <string_view>

namespace authoring {

/// A text from a blocklist in quotation marks; of a long one the beginning.
[[nodiscard]] std::string Quoted(std::string_view text);

/// Whether two texts are equal but for upper and lower case in ASCII.
[[nodiscard]] bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// The text as JSON writes it, quotation marks included: what an author can paste.
[[nodiscard]] std::string AsJson(std::string_view text);

}  // namespace authoring
