// Expressions of a blocklist: the input's first line on the rest.
//
// The answer is compared with the standard library's default engine where that one can be asked. A cheaper
// way to the same answer, once there is one, is to be compared here as well.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "tests/fuzz/support/Require.h"

namespace {

using fuzz::Require;

/// Nothing for an expression that is refused.
std::optional<bool> Ask(const std::string& expression, const std::string& text) {
  qelsystemcompatibilityreport::ExpressionBudget::Start();
  try {
    return qelsystemcompatibilityreport::MatchesWhole(expression, text);
  } catch (const qelsystemcompatibilityreport::ExpressionError& error) {
    Require(std::string_view(error.what()).starts_with("the expression \""),
            "a refusal quotes the expression");
    return std::nullopt;
  }
}

std::optional<bool> AskDefaultEngine(const std::string& expression, const std::string& text) {
  try {
    return std::regex_match(text, std::regex(expression, std::regex::ECMAScript));
  } catch (const std::regex_error&) {
    return std::nullopt;
  }
}

bool IsRepeat(char sign) {
  return sign == '*' || sign == '+' || sign == '?';
}

/// Whether the default engine ends soon and means the same. It goes back and forth, so that a repeat of a
/// repeat takes it years even on a short text, and it knows back-references.
bool IsHarmless(std::string_view expression, std::string_view text) {
  if (expression.size() > 24 || text.size() > 8 || expression.find('{') != std::string_view::npos)
    return false;
  // Deeper nesting of look-aheads is refused.
  std::size_t lookAheads = 0;
  for (std::size_t place = 0; place + 2 < expression.size(); ++place) {
    const std::string_view opening = expression.substr(place, 3);
    if (opening == "(?=" || opening == "(?!") ++lookAheads;
  }
  if (lookAheads > 2) return false;
  const auto repeats = std::count_if(expression.begin(), expression.end(), IsRepeat);
  if (repeats > 4) return false;
  for (std::size_t place = 0; place + 1 < expression.size(); ++place) {
    const char sign = expression[place];
    const char next = expression[place + 1];
    if (sign == '\\' && next >= '0' && next <= '9') return false;
    if (repeats > 1 && IsRepeat(next) && (sign == ')' || IsRepeat(sign))) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const std::size_t lineEnd = std::min(input.find('\n'), input.size());
  const std::string expression = input.substr(0, lineEnd);
  const std::string text = input.substr(std::min(lineEnd + 1, input.size()));

  const std::optional<bool> answer = Ask(expression, text);
  Require(Ask(expression, text) == answer, "the same question has the same answer");
  if (IsHarmless(expression, text)) {
    Require(AskDefaultEngine(expression, text) == answer, "both engines agree");
  }
  return 0;
}
