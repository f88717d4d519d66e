// Where a long array may be cut, so that its text can be parsed piece by piece.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/qelcore/JsonView.h"

namespace qelcore::json {

/// Looks for the array that an object has at `key`. The first offset stands behind the array's bracket, each
/// other one at the end of a piece: a comma between two elements, and the closing bracket at last, or, with
/// `kByLines`, what looks like them. A piece has at least `pieceLength` bytes where the array goes on. No
/// offsets when the member is no array or is not there. Nothing when the text is no object, has the key twice
/// or a key with escapes, or is not sound where that was noticed.
///
/// Little is checked. But if the text with an empty array in the place of this one is JSON, and each piece
/// with brackets around it, too, and no piece of several is empty, then the whole text is JSON and was cut
/// between elements.
[[nodiscard]] std::optional<std::vector<std::size_t>> CutLongArray(std::string_view text,
                                                                   std::string_view key,
                                                                   std::size_t pieceLength, Cutting cutting);

}  // namespace qelcore::json
