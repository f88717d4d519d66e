// The JSON grammar once more, as plain as it can be, to compare the real parser with.
#pragma once

#include <string_view>

namespace fuzz {

/// Whether the text is what `qelcore::json::Parse` promises to take: one value of UTF-8 text, perhaps after a
/// byte-order mark, with paired surrogates, numbers that a double can hold, and at most 256 levels of arrays
/// and objects.
[[nodiscard]] bool IsPlainJson(std::string_view text);

}  // namespace fuzz
