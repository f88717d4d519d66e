#include "qelsystemcompatibilityreport/rules/Expression.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <string_view>

#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "tests/support/SmallStack.h"

namespace {

using qelsystemcompatibilityreport::MatchesWhole;

std::string Repeated(const std::string& text, int times) {
  std::string result;
  for (int time = 0; time < times; ++time) result += text;
  return result;
}

TEST(ExpressionTest, MatchesTheWholeText) {
  const struct {
    const char* mExpression;
    const char* mText;
    bool mMatches;
  } rows[] = {
      {"abc", "abc", true},
      {"abc", "abcd", false},
      {"abc", "ABC", false},
      {"", "", true},
      {"", "a", false},
      {"Miniport", "WAN Miniport (PPTP)", false},
      {"^.*\\bMiniport\\b.*$", "WAN Miniport (PPTP)", true},
      {"^.*\\bminiport\\b.*$", "WAN Miniport (PPTP)", false},
      {"^.*\\b[M|m]iniport\\b.*$", "WAN miniport (PPTP)", true},
      {"^.*\\b[M|m]iniport\\b.*$", "WAN Miniport (PPTP)", true},
      {"NVIDIA GeForce GTX 10[5-8]0.*", "NVIDIA GeForce GTX 1060 6GB", true},
      {"^(?!.*Microsoft).*$", "Intel", true},
      {"^(?!.*Microsoft).*$", "Microsoft Basic Render Driver", false},
      {"Intel(R) HD Graphics", "Intel(R) HD Graphics", false},  // the brackets are a group
      {"Intel(R) HD Graphics", "IntelR HD Graphics", true},
      {"\\d{1,3}(\\.\\d+)*", "127.0.0.1", true},
      {"[[:alpha:]]+", "abc", true},
      {"a|b", "b", true},
      {"\xC3\xA9.", "\xC3\xA9x", true},
      {".", "\xC3\xA9", false},  // bytes are characters
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MatchesWhole(row.mExpression, row.mText), row.mMatches)
        << row.mExpression << " on " << row.mText;
  }
}

TEST(ExpressionTest, MalformedExpressionsThrow) {
  for (const char* const expression : {"(", ")", "[", "a{", "a{1", "*", "a**b(", "\\", "(?<name>a)", "[b-a]",
                                       "[[:nope:]]", "(?", "a{2,1}"}) {
    EXPECT_THROW(static_cast<void>(MatchesWhole(expression, "text")), std::regex_error) << expression;
  }
}

TEST(ExpressionTest, BackReferencesAreRefused) {
  // The last one's number is beyond all numbers, which the engine does not look out for.
  for (const char* const expression : {"(a)\\1", "\\9", "(a*)*\\1*z", "x\\2222222222222222222222222"}) {
    try {
      static_cast<void>(MatchesWhole(expression, "aa"));
      ADD_FAILURE() << expression;
    } catch (const std::regex_error& error) {
      EXPECT_EQ(error.what(), "the expression \"" + std::string(expression) +
                                  "\" is refused: too complex: it refers back to a group");
      EXPECT_EQ(error.code(), std::regex_constants::error_complexity);
    }
  }
}

TEST(ExpressionTest, TheProcessLocaleDoesNotCount) {
  std::setlocale(LC_ALL, "");
  EXPECT_FALSE(MatchesWhole("\\w", "\xE9"));
}

struct Hostile {
  std::string mWhat;
  std::string mExpression;
  std::string mText;
};

std::vector<Hostile> HostileExpressions() {
  return {
      {"a long text", "^.*x.*$", Repeated("a", 1'000'000)},
      {"nested repeats", "^(.*\\b)*z$", "NVIDIA GeForce RTX 3070 Ti Laptop GPU x x x"},
      {"nested repeats on a longer text", "^((a*)*)*z$", Repeated("a", 2000)},
      {"the longest literal", Repeated("a", 4096), Repeated("a", 4096)},
      {"too long a literal", Repeated("a", 100'000), "a"},
      {"many alternatives", Repeated("a|", 2047), Repeated("a", 100)},
      {"ten thousand alternatives", Repeated("abc|", 10'000), "abd"},
      {"empty alternatives", "(?:" + Repeated("|", 2000) + ")", "a"},
      {"counted repeats", "a{100000}", Repeated("a", 100)},
      {"counted repeats of counted repeats", "((((a{99}){99}){99}){99}){99}", "aaaa"},
      {"counted repeats in a row", "a{99}{99}{99}", "aaaa"},
      {"a counted repeat without an end", "(?:a{4000,}){3000,}", "aaaa"},
      {"an empty alternative counted", "(?:|a){11000}", "aaaa"},
      {"a count beyond all numbers", "a{99999999999999999999999999}", "a"},
      {"nested groups", Repeated("(", 20'000) + Repeated(")", 20'000), "a"},
      {"groups nested to the bound", Repeated("(", 32) + "a" + Repeated(")*", 32), Repeated("a", 1000)},
      {"many groups", Repeated("(a)", 5000), "a"},
      {"look-aheads in a row", "^" + Repeated("(?=.*x)", 200) + ".*", Repeated("a", 100) + "x"},
      {"a look-ahead under a repeat", "(?:(?=.*b).)*", Repeated("a", 1000) + "b"},
      {"a tower of look-aheads", Repeated("(?:(?=", 8) + ".*b" + Repeated(").)*", 8),
       Repeated("a", 60) + "b"},
      {"a back-reference under repeats", "(a*)*\\1*\\1*z", Repeated("a", 40)},
      {"many character classes", Repeated("[a-z]", 800), Repeated("a", 800)},
      {"bytes that are no UTF-8", "[\x80-\xFF]*", "\xFF\xFE\x80"},
  };
}

/// Each ends, with an answer or a refusal, on the stack of a Windows thread. What it would do otherwise is
/// crash the process or run for ever, so that the test never ends.
TEST(ExpressionTest, HostileExpressionsEndOnASmallStack) {
  for (const Hostile& hostile : HostileExpressions()) {
    std::string outcome = "nothing";
    testsupport::RunOnStackOfOneMebibyte([&] {
      try {
        outcome = MatchesWhole(hostile.mExpression, hostile.mText) ? "matches" : "does not match";
      } catch (const std::regex_error& error) {
        outcome = std::string("refused: ") + error.what();
      }
    });
    EXPECT_NE(outcome, "nothing") << hostile.mWhat;
  }
}

TEST(ExpressionTest, WithinTheBoundsTheAnswerIsRight) {
  EXPECT_TRUE(MatchesWhole(Repeated("a", 4096), Repeated("a", 4096)));
  EXPECT_FALSE(MatchesWhole("^.*x.*$", Repeated("a", 1'000'000)));
  EXPECT_TRUE(MatchesWhole("^.*x.*$", Repeated("a", 500'000) + "x" + Repeated("a", 500'000)));
  EXPECT_FALSE(MatchesWhole("^(.*\\b)*z$", "NVIDIA GeForce RTX 3070 Ti Laptop GPU x x x"));
  EXPECT_TRUE(MatchesWhole("(?:(?=.*b).)*", Repeated("a", 900) + "b"));
  EXPECT_TRUE(MatchesWhole(Repeated("(", 32) + "a" + Repeated(")*", 32), Repeated("a", 1000)));
}

TEST(ExpressionTest, BeyondTheBoundsTheRefusalSaysWhich) {
  const struct {
    std::string mExpression;
    std::string mText;
    std::string mMessage;
  } rows[] = {
      {Repeated("a", 4097), "a",
       "the expression \"" + Repeated("a", 100) +
           "...\" is refused: too complex: its length is 4097, at most 4096 allowed"},
      {Repeated("(", 33) + Repeated(")", 33), "a",
       "the expression \"" + Repeated("(", 33) + Repeated(")", 33) +
           "\" is refused: too complex: its groups are nested 33, at most 32 allowed"},
      {"(?=(?=(?=a)))", "a",
       "the expression \"(?=(?=(?=a)))\" is refused: too complex: its look-aheads are nested 3, at most 2 "
       "allowed"},
      {"a{4097}", "a",
       "the expression \"a{4097}\" is refused: too complex: with its repeats written out its length is 4097, "
       "at most 4096 allowed"},
      {"^.*" + Repeated("x", 90), Repeated("a", 1'000'000),
       "the expression \"^.*" + Repeated("x", 90) + "\" is refused: too complex for a text of 1000000 bytes"},
  };
  for (const auto& row : rows) {
    try {
      static_cast<void>(MatchesWhole(row.mExpression, row.mText));
      ADD_FAILURE() << row.mMessage;
    } catch (const std::regex_error& error) {
      EXPECT_EQ(error.what(), row.mMessage);
    }
  }
}

TEST(ExpressionTest, AMalformedExpressionIsQuoted) {
  try {
    static_cast<void>(MatchesWhole("Intel(R", "Intel"));
    FAIL();
  } catch (const std::regex_error& error) {
    EXPECT_EQ(std::string(error.what()).rfind("the expression \"Intel(R\" is refused: ", 0), 0U)
        << error.what();
    EXPECT_EQ(error.code(), std::regex_constants::error_paren);
  }
}

/// A thousand costly expressions must not add up to a stall. Ordinary ones still work when they are refused.
TEST(ExpressionTest, CostlyExpressionsUseUpTheBudgetOfAMatch) {
  // It fails at the first character, but that cannot be known before.
  const std::string costly = Repeated("a", 2000);
  const std::string text = Repeated("b", 4000);
  int ran = 0;
  int refused = 0;
  for (int time = 0; time < 1000; ++time) {
    try {
      EXPECT_FALSE(MatchesWhole(costly, text));
      ++ran;
    } catch (const std::regex_error&) {
      ++refused;
    }
  }
  // One costs 8 million steps; 200 million are there at the start.
  EXPECT_GT(ran, 20);
  EXPECT_LT(ran, 30);
  EXPECT_EQ(ran + refused, 1000);
  for (int time = 0; time < 10'000; ++time)
    EXPECT_TRUE(MatchesWhole("^.*\\bMiniport\\b.*$", "WAN Miniport (PPTP)"));

  qelsystemcompatibilityreport::ExpressionBudget::Start();
  EXPECT_FALSE(MatchesWhole(costly, text));
}

TEST(ExpressionTest, LongBracketsUseUpTheBudgetOfAMatch) {
  // The engine asks each of the 2,040 parts about each character, before it finds that the last bracket is
  // not closed.
  std::string costly = "[";
  for (int part = 0; part < 2040; ++part) costly += "\\W";
  costly += "][";
  int refused = 0;
  for (int time = 0; time < 1000; ++time) {
    try {
      static_cast<void>(MatchesWhole(costly, "a"));
    } catch (const std::regex_error& error) {
      if (std::string_view(error.what()).find("used up the time") != std::string_view::npos) ++refused;
    }
  }
  EXPECT_GT(refused, 150);
}

}  // namespace
