// What `scr` prints.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace app {

/// Something that the user has to know and can do something about. `main` prints it as the one line "scr:
/// <message>" on standard error and returns 1.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Nobody reads standard output any more. `main` says nothing of it and returns 1.
class OutputClosed : public UserError {
 public:
  using UserError::UserError;
};

/// Writes to standard output. Throws `UserError` when that fails, as on a full disk.
void Print(std::string_view text);

/// Writes the line "scr: <text>" to standard error.
void PrintDiagnostic(std::string_view text);

/// The text with control characters, terminal escapes among them, written as "?". Line feeds become blanks.
/// For texts that come from files and end on a terminal.
[[nodiscard]] std::string Printable(std::string_view text);

/// The same for texts of several lines: line ends and tabs stay.
[[nodiscard]] std::string PrintableLines(std::string_view text);

}  // namespace app
