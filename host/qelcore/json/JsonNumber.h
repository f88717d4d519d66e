// JSON numbers: the strict grammar, and the choice of the type in memory.
#pragma once

#include <any>
#include <string>
#include <string_view>

namespace qelcore::json {

/// Reads a text that must be one JSON number from end to end. An integer becomes `std::int64_t`, or
/// `std::uint64_t` above its range, or `double` when it fits neither; everything with a point or an exponent
/// becomes `double`, rounded to the nearest one. Returns an empty `std::any` when the text is not a number
/// ("01", "+1", "1.", ".5", "NaN") or is too large for a `double`.
[[nodiscard]] std::any ReadNumber(std::string_view text);

/// Writes a finite `double` so that it reads back as the same `double`: the shortest digits, always with a
/// point or an exponent.
[[nodiscard]] std::string WriteNumber(double value);

}  // namespace qelcore::json
