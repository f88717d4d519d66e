// Parts of the texts of findings.
#pragma once

#include <string>
#include <string_view>

namespace authoring {

/// A text from a blocklist in quotation marks; of a long one the beginning.
[[nodiscard]] std::string Quoted(std::string_view text);

/// The text as JSON writes it, quotation marks included: what an author can paste.
[[nodiscard]] std::string AsJson(std::string_view text);

}  // namespace authoring
