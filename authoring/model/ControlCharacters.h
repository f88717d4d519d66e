// Texts in which JSON made a control character of a backslash that was meant to stand for itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace authoring {

/// The first control character of ASCII.
[[nodiscard]] std::optional<char> FindControlCharacter(std::string_view text);

/// The same in an expression, where blanks such as a tab may stand in square brackets: "[ \t]" is a way to
/// write any blank.
[[nodiscard]] std::optional<char> FindControlCharacterOfExpression(std::string_view expression);

/// What the character is called: "a backspace", "the control character U+0001".
[[nodiscard]] std::string NameOfControlCharacter(char character);

/// The text with a backslash and a letter for each control character that JSON writes so; empty when it has
/// another one, too.
[[nodiscard]] std::string WithBackslashes(std::string_view text);

}  // namespace authoring
