// What the author of a name seems to have meant by it.
#pragma once

#include <string>
#include <string_view>

namespace authoring {

/// Whether a name was written as an expression: it holds an anchor, a wildcard, an escape or an alternative.
/// Brackets and points alone do not make one: "Intel(R) HD Graphics", "Realtek Co., Ltd.".
[[nodiscard]] bool LooksLikeExpression(std::string_view name);

/// Whether a name holds a sign that means something else in an expression.
[[nodiscard]] bool HasSigns(std::string_view name);

/// The expression that matches exactly this text.
[[nodiscard]] std::string Escape(std::string_view text);

/// The first "(R)", "(TM)" or "(C)" of an expression that is not escaped; empty when there is none.
[[nodiscard]] std::string FindLiteralBrackets(std::string_view expression);

/// The expression with each of these escaped.
[[nodiscard]] std::string EscapeLiteralBrackets(const std::string& expression);

/// For an expression that is written as if it were searched for, the one that matches the whole of a text
/// that holds it; empty for any other: "^NVIDIA" becomes "^NVIDIA.*$".
[[nodiscard]] std::string Complete(std::string_view expression);

/// For a name with a "*" that repeats nothing sensible, as in the patterns of shells, the expression that
/// says what it means there; empty for any other: "NVIDIA*" becomes "^NVIDIA.*$".
[[nodiscard]] std::string FromShellPattern(std::string_view name);

/// Whether the text is one word of letters.
[[nodiscard]] bool IsOneWord(std::string_view text);

/// Whether the text is a maker's series of graphics cards without a model, or a model without its maker:
/// "NVIDIA GeForce", "GeForce RTX 3060". Drivers name both.
[[nodiscard]] bool IsNameOfSeries(std::string_view text);

/// Whether a letter beyond ASCII stands inside square brackets of an expression.
[[nodiscard]] bool HasLetterInBrackets(std::string_view expression);

}  // namespace authoring
