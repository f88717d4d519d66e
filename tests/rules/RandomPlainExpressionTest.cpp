// Plain expressions against the engine, on random pairs. They are made of the same few pieces, so that they
// meet; many are malformed.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "tests/support/RandomCases.h"

namespace {

using qelsystemcompatibilityreport::MatchesWholeByEngine;
using qelsystemcompatibilityreport::PlainExpression;
using testsupport::CheckOnRandomCases;

std::string Joined(const std::vector<std::string>& pieces) {
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  return text;
}

rc::Gen<std::string> AnyOf(const std::vector<std::string>& pieces, int most) {
  const auto count = rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, most + 1));
  return rc::gen::mapcat(count, [pieces](int wanted) {
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(static_cast<std::size_t>(wanted),
                                                                     rc::gen::elementOf(pieces)),
                        Joined);
  });
}

const std::vector<std::string> kExpressionPieces{
    "a",   "b",     "1",   "_",    "ab",    " ",       "-",     "\xC3\xA9", ".",      ".*",    "^", "$",
    "\\b", "\\d",   "\\w", "\\s",  "\\(",   "\\.",     "\\\\",  "*",        "+",      "?",     "|", "(",
    "(",   ")",     ")",   "(ab)", "(a|b)", "(1|a )*", "[ab]",  "[^a]",     "[a-c1]", "[/|(]", "[", "]",
    "(R)", "\\b.*", "a*",  "b+",   "1?",    "{2}",     "(?:a)", "\\-",      "[b-a]",  "[1-]",  "]", "\\B"};
const std::vector<std::string> kTextPieces{"a",  "b", "c",  "1",        "_",  " ",  "-",  "(", "/", "|", ".",
                                           "\\", "R", "ab", "\xC3\xA9", "\n", "\r", "\t", "]", "2", "^", "$"};

TEST(RandomPlainExpressionTest, PlainExpressionsDecideAsTheEngineDoes) {
  std::size_t pairs = 0;
  std::size_t matches = 0;
  CheckOnRandomCases("plain expressions decide as the engine does", [&] {
    std::string expression = *AnyOf(kExpressionPieces, 8);
    if (*rc::gen::arbitrary<bool>()) expression = "(?!" + *AnyOf(kExpressionPieces, 4) + ")" + expression;
    const auto plain = PlainExpression::Read(expression);
    if (!plain) return;
    for (int time = 0; time < 16; ++time) {
      const std::string text = *AnyOf(kTextPieces, 7);
      ++pairs;
      matches += MatchesWholeByEngine(expression, text) ? 1 : 0;
      RC_ASSERT(plain->MatchesWhole(text) == MatchesWholeByEngine(expression, text));
    }
  });
  testing::Test::RecordProperty("Pairs", std::to_string(pairs));
  std::cout << pairs << " pairs, of which " << matches << " match\n";
  // Expressions that never match, or are never understood, would prove nothing.
  EXPECT_GT(pairs, 1000u);
  EXPECT_GT(matches, 10u);
}

}  // namespace
