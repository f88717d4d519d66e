// What a text must hold to match an expression, as far as that is plain to see.
#pragma once

#include <string>
#include <string_view>

namespace benchmarks {

/// A piece of text that every match of `expression` holds; empty when the expression is not certainly
/// well-formed, or has no such piece. Only what real lists are written with is understood.
[[nodiscard]] std::string FindRequiredPiece(std::string_view expression);

}  // namespace benchmarks
