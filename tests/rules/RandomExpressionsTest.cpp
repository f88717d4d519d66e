// Random expressions on short texts: every way to an answer against the standard library's default engine.
//
// The default engine goes back and forth, so repeats are nested two deep at most and texts have at most eight
// bytes. RC_PARAMS="max_success=100000" makes the run longer.
#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "tests/support/RandomCases.h"

namespace {

using qelsystemcompatibilityreport::MatchesWhole;
using qelsystemcompatibilityreport::MatchesWholeByEngine;

/// Nothing for a refusal.
using Outcome = std::optional<bool>;

struct Way {
  const char* mName;
  std::function<bool(const std::string& expression, const std::string& text)> mMatches;
};

/// All that must agree. A cheaper way to the same answers belongs here.
const Way kWays[] = {
    {"as rules ask", MatchesWhole},
    {"the engine alone", MatchesWholeByEngine},
};

Outcome AskDefaultEngine(const std::string& expression, const std::string& text) {
  try {
    return std::regex_match(text, std::regex(expression, std::regex::ECMAScript));
  } catch (const std::regex_error&) {
    return std::nullopt;
  }
}

Outcome Ask(const Way& way, const std::string& expression, const std::string& text) {
  qelsystemcompatibilityreport::ExpressionBudget::Start();
  try {
    return way.mMatches(expression, text);
  } catch (const std::regex_error&) {
    return std::nullopt;
  }
}

std::size_t Below(std::size_t bound) {
  return *rc::gen::resize(100, rc::gen::inRange<std::size_t>(0, bound));
}

std::string OneOf(const std::vector<std::string>& choices) {
  return choices[Below(choices.size())];
}

std::string AnyAlternatives(int depth, int repeats, int lookAheads);

std::string AnyRepeat() {
  return OneOf({"*", "+", "?", "{2}", "{1,3}", "{0,2}", "{1,}", "{0}"}) + OneOf({"", "", "", "?"});
}

/// A part that a repeat may follow.
std::string AnyAtom(int depth, int repeats, int lookAheads) {
  if (depth > 0 && Below(3) == 0) {
    return OneOf({"(", "(?:"}) + AnyAlternatives(depth - 1, repeats, lookAheads) + ")";
  }
  return OneOf({"a",    "b",           "-",       "1",           "B",     ".",        "[ab]",
                "[^a]", "[a-c1]",      "[-a]",    "[[:digit:]]", "[\\w]", "[^\\s]",   "[\\]b]",
                "\\w",  "\\W",         "\\d",     "\\D",         "\\s",   "\\S",      "\\.",
                "\\-",  "\\x61",       "\\u0062", "\\t",         "\\n",   "\xC3\xA9", "[[:alpha:]-]",
                "\xFF", "[\x80-\xFF]", "[^\xC3]"});
}

std::string AnyPart(int depth, int repeats, int lookAheads) {
  switch (Below(8)) {
    case 0:
      return OneOf({"^", "$", "\\b", "\\B"});
    case 1:
      if (depth == 0 || lookAheads == 0) return "a";
      return OneOf({"(?=", "(?!"}) + AnyAlternatives(depth - 1, repeats, lookAheads - 1) + ")";
    case 2:
    case 3:
      if (repeats == 0) return "b";
      return AnyAtom(depth, repeats - 1, lookAheads) + AnyRepeat();
    default:
      return AnyAtom(depth, repeats, lookAheads);
  }
}

std::string AnyAlternatives(int depth, int repeats, int lookAheads) {
  std::string result;
  const std::size_t alternatives = 1 + (Below(3) == 0 ? Below(3) : 0);
  for (std::size_t alternative = 0; alternative < alternatives; ++alternative) {
    if (alternative > 0) result += '|';
    for (std::size_t part = Below(5); part > 0; --part) result += AnyPart(depth, repeats, lookAheads);
  }
  return result;
}

/// The default engine knows back-references, which are refused.
bool RefersBack(const std::string& expression) {
  return std::regex_search(expression, std::regex(R"(\\[1-9])"));
}

/// Most are well formed; one in eight lost a character or got one too many.
std::string AnyExpression() {
  const std::string expression = AnyAlternatives(3, 2, 2);
  if (Below(8) != 0 || expression.empty()) return expression;
  std::string damaged = expression;
  const std::size_t place = Below(expression.size());
  // A repeat sign too many would nest repeats deeper than the default engine can bear.
  if (Below(2) == 0) {
    damaged.erase(place, 1);
  } else {
    damaged.insert(place, OneOf({"(", ")", "[", "]", "{", "}", "|", "\\", "a"}));
  }
  return RefersBack(damaged) ? expression : damaged;
}

std::string AnyText() {
  std::string text;
  for (std::size_t part = Below(8); part > 0; --part) {
    // Halves of a character, bytes that are in none, and what ends a text for C are texts like any other.
    if (Below(8) == 0) {
      text += static_cast<char>(Below(256));
    } else {
      text += OneOf({"a", "a", "a", "b", "b", "c", "-", "1", " ", "A", "\n", ".", "\xC3\xA9", "\xFF"});
    }
  }
  return text;
}

TEST(RandomExpressionsTest, EveryWayAgreesWithTheDefaultEngine) {
  int cases = 0;
  int matches = 0;
  int refusals = 0;
  testsupport::CheckOnRandomCases("every way agrees with the default engine", [&] {
    const std::string expression = AnyExpression();
    const std::string text = AnyText();
    const Outcome expected = AskDefaultEngine(expression, text);
    ++cases;
    if (expected == true) ++matches;
    if (!expected) ++refusals;
    for (const Way& way : kWays) {
      RC_LOG() << way.mName << ": /" << expression << "/ on \"" << text << "\"\n";
      RC_ASSERT(Ask(way, expression, text) == expected);
    }
  });
  // Generators that never match anything would prove nothing.
  EXPECT_GE(matches, cases / 50) << matches << " of " << cases;
  EXPECT_GE(refusals, cases / 100) << refusals << " of " << cases;
  std::cout << cases << " cases, " << matches << " matches, " << refusals << " refusals\n";
}

}  // namespace
