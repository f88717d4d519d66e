// Expressions that are meant to crash the process or to stall it, on texts that help them.
//
// Each ends on the stack of a Windows thread, with the right answer or with a refusal, and a refusal is one
// entry of the log for each candidate. What would go wrong otherwise is that the process crashes or the test
// never ends.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "tests/support/SmallStack.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::ExpressionBudget;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;

std::string Repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (std::size_t time = 0; time < times; ++time) result += text;
  return result;
}

bool IsOnly(const std::string& text, char sign) {
  return text.find_first_not_of(sign) == std::string::npos;
}

bool Has(const std::string& text, char sign) {
  return text.find(sign) != std::string::npos;
}

/// "." stands for everything but the ends of lines.
bool IsOneLine(const std::string& text) {
  return text.find_first_of("\r\n") == std::string::npos;
}

using Answer = std::function<bool(const std::string& text)>;

struct Hostile {
  std::string mWhat;
  std::string mExpression;
  std::size_t mLongestText;  ///< on longer texts it is refused
  Answer mAnswer;
};

bool Never(const std::string& /*text*/) {
  return false;
}

constexpr std::size_t kAnyLength = 10'000'000;

std::vector<Hostile> AnsweredExpressions() {
  const auto isLineWithX = [](const std::string& text) { return IsOneLine(text) && Has(text, 'x'); };
  return {
      {"a search", "^.*x.*$", kAnyLength, isLineWithX},
      {"nested repeats", "^(.*\\b)*z$", kAnyLength, Never},
      {"three nested repeats", "^((a*)*)*z$", kAnyLength, Never},
      {"nested repeats that match", "((a*)*)*", kAnyLength,
       [](const auto& text) { return IsOnly(text, 'a'); }},
      {"repeats in a row", "a*a*a*a*a*z", kAnyLength, Never},
      {"choices under a repeat", "(a|a|aa)*b", kAnyLength,
       [](const auto& text) {
         return !text.empty() && text.back() == 'b' && IsOnly(text.substr(0, text.size() - 1), 'a');
       }},
      {"optional ones in a row", Repeated("a?", 30) + Repeated("a", 30), 200'000,
       [](const auto& text) { return IsOnly(text, 'a') && text.size() >= 30 && text.size() <= 60; }},
      {"the longest literal", Repeated("a", 4096), 4'800,
       [](const auto& text) { return text == std::string(4096, 'a'); }},
      {"many alternatives", Repeated("a|", 2047) + "b", 4'800, [](const auto& text) { return text == "a"; }},
      {"empty alternatives", "(?:" + Repeated("|", 2000) + ")", 9'900,
       [](const auto& text) { return text.empty(); }},
      {"the largest count", "a{4096}", 4'800,
       [](const auto& text) { return text == std::string(4096, 'a'); }},
      {"groups nested to the bound", Repeated("(", 32) + "a" + Repeated(")*", 32), 300'000,
       [](const auto& text) { return IsOnly(text, 'a'); }},
      {"look-aheads in a row", "^" + Repeated("(?=.*x)", 200) + ".*", 130, isLineWithX},
      {"a look-ahead under a repeat", "(?:(?=.*b).)*", 1'400,
       [](const auto& text) { return text.empty() || (IsOneLine(text) && text.back() == 'b'); }},
      {"two look-aheads nested under repeats", "(?:(?=(?:(?=.*b).)*).)*", 100, IsOneLine},
      {"many character classes", Repeated("[a-z]", 800), 24'000,
       [](const auto& text) { return text == std::string(800, 'a'); }},
      {"bytes that are no UTF-8", "[\x80-\xFF]*", kAnyLength,
       [](const auto& text) { return text.find_first_not_of("\xFE\xFF\x80") == std::string::npos; }},
  };
}

std::vector<Hostile> ExpressionsBeyondTheBounds() {
  return {
      {"a literal of 100 KB", Repeated("a", 100'000), 0, {}},
      {"ten thousand alternatives", Repeated("abc|", 10'000), 0, {}},
      {"an empty choice counted", "(?:|a){11000}", 0, {}},
      {"a count of 100,000", "a{100000}", 0, {}},
      {"a product of counts", "((((a{99}){99}){99}){99}){99}", 0, {}},
      {"counts in a row", "a{99}{99}{99}", 0, {}},
      {"counts without an end", "(?:a{4000,}){3000,}", 0, {}},
      {"a count beyond all numbers", "a{99999999999999999999999999}", 0, {}},
      {"20,000 nested groups", Repeated("(", 20'000) + Repeated(")", 20'000), 0, {}},
      {"2,000 nested groups", Repeated("(", 2'000) + "a" + Repeated(")", 2'000), 0, {}},
      {"33 nested groups", Repeated("(", 33) + "a" + Repeated(")", 33), 0, {}},
      {"5,000 groups", Repeated("(a)", 5'000), 0, {}},
      {"2,000 groups that do not close", Repeated("(", 2'000), 0, {}},
      {"a tower of look-aheads", Repeated("(?:(?=", 8) + ".*b" + Repeated(").)*", 8), 0, {}},
      {"a tower of negated look-aheads", Repeated("(?!", 8) + "a" + Repeated(")", 8), 0, {}},
      {"a back-reference under repeats", "(a*)*\\1*\\1*z", 0, {}},
      {"a back-reference beyond all numbers", "(a)\\99999999999999999999999999", 0, {}},
  };
}

std::vector<Hostile> MalformedExpressions() {
  return {
      {"a bracket without an end", std::string("[") + Repeated("a-z", 1'000), 0, {}},
      {"a class that nobody knows", std::string("[[:") + Repeated("x", 3'000) + ":]]", 0, {}},
      {"a range the wrong way round", "[z-a]*", 0, {}},
  };
}

std::vector<Hostile> RefusedExpressions() {
  std::vector<Hostile> expressions = ExpressionsBeyondTheBounds();
  for (Hostile& hostile : MalformedExpressions()) expressions.push_back(std::move(hostile));
  return expressions;
}

std::string Bytes(std::size_t length) {
  std::string bytes(length, '\0');
  for (std::size_t place = 0; place < length; ++place) bytes[place] = static_cast<char>(place % 256);
  return bytes;
}

std::vector<std::string> ShortTexts() {
  return {"",
          "a",
          "x",
          "NVIDIA GeForce RTX 3070 Ti Laptop GPU x x x",
          std::string(40, 'a'),
          std::string(800, 'a'),
          std::string(2'000, 'a') + "b",
          std::string(4'096, 'a'),
          Bytes(700),
          "\xFF\xFE\x80"};
}

/// Nothing for a refusal.
std::optional<bool> Ask(const std::string& expression, const std::string& text) {
  ExpressionBudget::Start();
  std::optional<bool> answer;
  testsupport::RunOnStackOfOneMebibyte([&] {
    try {
      answer = qelsystemcompatibilityreport::MatchesWhole(expression, text);
    } catch (const qelsystemcompatibilityreport::ExpressionError&) {
      answer.reset();
    }
  });
  return answer;
}

void ExpectAnswer(const Hostile& hostile, const std::string& text) {
  const std::optional<bool> expected =
      text.size() > hostile.mLongestText ? std::nullopt : std::optional(hostile.mAnswer(text));
  EXPECT_EQ(Ask(hostile.mExpression, text), expected)
      << hostile.mWhat << " on " << text.size() << " bytes: " << text.substr(0, 50);
}

TEST(HostileExpressionsTest, TheAnswerIsRightOrRefused) {
  for (const Hostile& hostile : AnsweredExpressions()) {
    for (const std::string& text : ShortTexts()) ExpectAnswer(hostile, text);
  }
}

TEST(HostileExpressionsTest, TheAnswerIsRightOrRefusedOnTextsOfAMegabyte) {
  for (const Hostile& hostile : AnsweredExpressions()) {
    ExpectAnswer(hostile, std::string(1'000'000, 'a'));
    ExpectAnswer(hostile, Bytes(1'000'000));
  }
}

TEST(HostileExpressionsTest, WhatIsBeyondTheBoundsOrMalformedIsRefused) {
  for (const Hostile& hostile : RefusedExpressions()) {
    for (const std::string& text : ShortTexts()) {
      EXPECT_EQ(Ask(hostile.mExpression, text), std::nullopt) << hostile.mWhat;
    }
  }
}

TEST(HostileExpressionsTest, WhatIsBeyondTheBoundsTakesNoStepOnTextsOfAMegabyte) {
  const std::vector<std::string> texts{std::string(1'000'000, 'a'), Bytes(1'000'000)};
  for (const std::string& text : texts) {
    for (const Hostile& hostile : MalformedExpressions())
      EXPECT_EQ(Ask(hostile.mExpression, text), std::nullopt) << hostile.mWhat;
    for (const Hostile& hostile : ExpressionsBeyondTheBounds()) {
      EXPECT_EQ(Ask(hostile.mExpression, text), std::nullopt) << hostile.mWhat;
      // The whole balance is left.
      EXPECT_TRUE(ExpressionBudget::Take(200'000'000)) << hostile.mWhat;
    }
  }
}

TEST(HostileExpressionsTest, AllTextsOfAMatchTogetherTakeNoMoreStepsThanItsBalance) {
  const std::string text(1'000'000, 'a');
  std::size_t answers = 0;
  std::size_t refusals = 0;
  ExpressionBudget::Start();
  testsupport::RunOnStackOfOneMebibyte([&] {
    for (int time = 0; time < 100; ++time) {
      try {
        EXPECT_FALSE(qelsystemcompatibilityreport::MatchesWhole("(a|a|aa)*b", text));
        ++answers;
      } catch (const qelsystemcompatibilityreport::ExpressionError&) {
        ++refusals;
      }
    }
  });
  EXPECT_GT(answers, 0U);
  EXPECT_GT(refusals, answers) << answers << " answers";
}

/// As names of rules, and as comparisons of properties.
class HostileRulesTest : public testing::Test {
 protected:
  HostileRulesTest() { OSComponent::EnableSupportProperties(true); }
  ~HostileRulesTest() override { OSComponent::EnableSupportProperties(false); }

  /// Three cards and three properties of one name.
  static OSComponentRegistry Machine() {
    OSComponentRegistry::Components components;
    for (const char* const text : {"a", "NVIDIA GeForce RTX 3070", "\xFF\xFE\x80"}) {
      components.push_back(testsupport::Component(OSComponentType::kVideo, text, "1.0"));
    }
    for (const char* const text : {"a", "NVIDIA GeForce RTX 3070", "\xFF\xFE\x80"}) {
      components.push_back(testsupport::Property("card", text));
    }
    return OSComponentRegistry(std::move(components));
  }

  static SCRRule NameRule(const std::string& expression) {
    return {OSComponentType::kVideo, expression, {}, {}, {}, "", "", {}, SCRRuleErrorLevel::WARN};
  }

  static SCRRule PropertyRule(const std::string& expression) {
    return {OSComponentType::kProperty,
            "card",
            {{SCRPropertyOperator::kRegularExpression, expression}},
            "",
            "",
            {},
            SCRRuleErrorLevel::WARN};
  }

  /// The number of hits; what is logged is in `mHost`.
  std::size_t CountHits(const SCRRule& rule) {
    mHost.mExceptionContexts.clear();
    ExpressionBudget::Start();
    std::size_t hits = 0;
    testsupport::RunOnStackOfOneMebibyte([&] { hits = rule.FindMatchingOSComponents(Machine()).size(); });
    return hits;
  }

  testsupport::TestHost mHost;
};

TEST_F(HostileRulesTest, ARefusalIsLoggedOnceForEachCandidate) {
  for (const Hostile& hostile : RefusedExpressions()) {
    EXPECT_EQ(CountHits(NameRule(hostile.mExpression)), 0U) << hostile.mWhat;
    EXPECT_EQ(mHost.mExceptionContexts,
              std::vector<std::string>(3, "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents"))
        << hostile.mWhat;
    EXPECT_EQ(CountHits(PropertyRule(hostile.mExpression)), 0U) << hostile.mWhat;
    EXPECT_EQ(mHost.mExceptionContexts,
              std::vector<std::string>(3, "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent"))
        << hostile.mWhat;
  }
}

TEST_F(HostileRulesTest, AnAnswerIsNotLogged) {
  const OSComponentRegistry machine = Machine();
  for (const Hostile& hostile : AnsweredExpressions()) {
    std::size_t expected = 0;
    for (const auto& card : machine.GetComponentsOfType(OSComponentType::kVideo)) {
      if (hostile.mAnswer(card->GetName())) ++expected;
    }
    EXPECT_EQ(CountHits(NameRule(hostile.mExpression)), expected) << hostile.mWhat;
    EXPECT_EQ(CountHits(PropertyRule(hostile.mExpression)), expected) << hostile.mWhat;
    EXPECT_TRUE(mHost.mExceptionContexts.empty()) << hostile.mWhat;
  }
}

TEST_F(HostileRulesTest, AComponentOfExactlyThatNameIsHitAllTheSame) {
  for (const Hostile& hostile : RefusedExpressions()) {
    const OSComponentRegistry machine(
        {testsupport::Component(OSComponentType::kVideo, hostile.mExpression, "1.0")});
    mHost.mExceptionContexts.clear();
    EXPECT_EQ(NameRule(hostile.mExpression).FindMatchingOSComponents(machine).size(), 1U) << hostile.mWhat;
    EXPECT_TRUE(mHost.mExceptionContexts.empty()) << hostile.mWhat;
  }
}

}  // namespace
