#include "qelsystemcompatibilityreport/rules/PlainExpression.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qelsystemcompatibilityreport::PlainExpression;

TEST(PlainExpressionTest, DecidesWholeTexts) {
  const struct {
    const char* mExpression;
    const char* mText;
    bool mMatches;
  } rows[] = {
      {"abc", "abc", true},
      {"abc", "abcd", false},
      {"abc", "ab", false},
      {"abc", "ABC", false},
      {"Intel(R) HD Graphics", "Intel(R) HD Graphics", false},  // the brackets are a group
      {"Intel(R) HD Graphics", "IntelR HD Graphics", true},
      {"Intel\\(R\\) HD Graphics", "Intel(R) HD Graphics", true},
      {"^.*\\bMiniport\\b.*$", "WAN Miniport (PPTP)", true},
      {"^.*\\bMiniport\\b.*$", "WAN Miniports", false},
      {"^.*\\b[M|m]iniport\\b.*$", "WAN |iniport", false},  // "|" is no part of a word
      {"^.*\\b[M|m]iniport\\b.*$", "WAN miniport", true},
      {".*\\bIntel\\b.*", "Intel", true},
      {"Card (A|BC|D)+", "Card ABCD", true},
      {"Card (A|BC|D)+", "Card ", false},
      {"Card (A|BC|D)+", "Card AC", false},
      {"ab|cd|ef", "cd", true},
      {"ab|cd|ef", "abcd", false},
      {"ab*c?d+", "ad", true},
      {"ab*c?d+", "abbbcdd", true},
      {"ab*c?d+", "abbbccd", false},
      {"(ab*)*x", "abbabx", true},
      {"[^0-9]+", "abc", true},
      {"[^0-9]+", "a1c", false},
      {"[AMD/ATI]", "/", true},
      {"\\d\\w\\s", "7_\t", true},
      {"\\w", "\xC3", false},
      {".", "\n", false},
      {"[^a]", "\n", true},
      {"a$b", "ab", false},
      {"a^b", "ab", false},
      {"\xC3\xA9.", "\xC3\xA9x", true},
      {".", "\xC3\xA9", false},  // bytes are characters
      {".*", "", true},
      {"(?!.*Pro).*Radeon.*", "AMD Radeon RX", true},
      {"(?!.*Pro).*Radeon.*", "AMD Radeon Pro", false},
      {"(?!.*Pro).*Radeon.*", "AMD Rage", false},
      {"(?!AMD|ATI).*", "ATI Rage", false},
      {"(?!AMD$).*", "AMD Radeon", true},  // only a beginning that is the whole text
      {"(?!AMD$).*", "AMD", false},
      {"(?!a*).*", "b", false},  // what may be empty begins every text
      {"a", "", false},
  };
  for (const auto& row : rows) {
    const auto plain = PlainExpression::Read(row.mExpression);
    ASSERT_TRUE(plain) << row.mExpression;
    EXPECT_EQ(plain->MatchesWhole(row.mText), row.mMatches) << row.mExpression << " on " << row.mText;
  }
}

TEST(PlainExpressionTest, LeavesToTheEngineWhatIsMalformedOrNotUnderstood) {
  for (const char* const expression :
       {"",       "(",     ")",      "[",           "[]",    "[^]",        "a]",     "a{2}",     "a}",
        "*",      "a**",   "a*?",    "a+{2}",       "()",    "(|a)",       "a||b",   "a|",       "(a*)*",
        "(\\b)*", "^*",    "\\",     "\\1",         "\\B",   "\\n",        "\\-",    "[a",       "[b-a]",
        "[a-]",   "[-a]",  "[a\\]]", "[[:a:]]",     "(?:a)", "(?=a)b",     "a(?!b)", "(?!a)b|c", "(?!a)*b",
        "(?!a)",  "(?!)a", "(?!a",   "(?!(?!a)b)c", "a\tb",  "[\xC3\xA9]", "(a",     "a)"}) {
    EXPECT_FALSE(PlainExpression::Read(expression)) << expression;
  }
}

TEST(PlainExpressionTest, LongOrDeepExpressionsAreLeftToTheEngine) {
  EXPECT_TRUE(PlainExpression::Read(std::string(128, 'a')));
  EXPECT_FALSE(PlainExpression::Read(std::string(129, 'a')));
  EXPECT_TRUE(PlainExpression::Read(std::string(8, '(') + 'a' + std::string(8, ')')));
  EXPECT_FALSE(PlainExpression::Read(std::string(9, '(') + 'a' + std::string(9, ')')));
  EXPECT_FALSE(PlainExpression::Read(std::string(100'000, '(')));
}

TEST(PlainExpressionTest, ALongTextTakesNoLongerThanItsLength) {
  const auto plain = PlainExpression::Read("(a|b|ab)*(a|b|ab)*.*(a|b|ab)*c");
  ASSERT_TRUE(plain);
  EXPECT_FALSE(plain->MatchesWhole(std::string(100'000, 'a')));
  EXPECT_TRUE(plain->MatchesWhole(std::string(100'000, 'a') + 'c'));
}

}  // namespace
