#include "qelsystemcompatibilityreport/SCRIssue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using testsupport::Component;
using testsupport::Property;

SCRRule Rule(SCRRuleErrorLevel level, const std::string& message) {
  const OSComponentVersion none;
  return {OSComponentType::kVideo, "any", none, none, none, none, message,
          "https://example.com/a", {},    level};
}

TEST(SCRIssueTest, ItTellsOfItsComponentAndItsRule) {
  const OSComponent component(OSComponentType::kVideo, "Card", OSComponentVersion("1.2.3.4"), "value");
  const SCRRule rule = Rule(SCRRuleErrorLevel::FATAL, "A message");
  const SCRIssue issue(component, rule);
  EXPECT_EQ(issue.GetName(), "Card");
  EXPECT_EQ(issue.GetPIISafeName(), component.GetPIISafeName());
  EXPECT_EQ(issue.GetType(), OSComponentType::kVideo);
  EXPECT_EQ(issue.GetVersion().ToString(), "1.2.3.4");
  EXPECT_EQ(issue.GetPropertyValue(), "value");
  EXPECT_EQ(issue.GetErrorLevel(), SCRRuleErrorLevel::FATAL);
  EXPECT_EQ(issue.GetID(), rule.GetID());
  EXPECT_EQ(issue.GetInfoMessage(), "A message");
  EXPECT_EQ(issue.GetInfoURL(), "https://example.com/a");
  EXPECT_TRUE(issue.IsSeriousError());
  EXPECT_TRUE(issue.IsOSComponent(component));
  EXPECT_FALSE(issue.IsOSComponent(rule));
  EXPECT_FALSE(issue.IsOSComponent(OSComponent()));
  EXPECT_FALSE(issue.IsOSComponent(*Component(OSComponentType::kVideo, "Card", "1.2.3.4")));
}

TEST(SCRIssueTest, WarningsAndAboveAreSerious) {
  const OSComponent component;
  EXPECT_FALSE(SCRIssue(component, Rule(SCRRuleErrorLevel::INFO, "")).IsSeriousError());
  EXPECT_TRUE(SCRIssue(component, Rule(SCRRuleErrorLevel::WARN, "")).IsSeriousError());
  EXPECT_TRUE(SCRIssue(component, Rule(SCRRuleErrorLevel::ERROR, "")).IsSeriousError());
}

TEST(SCRIssueTest, CopiesAreIndependent) {
  auto component = Component(OSComponentType::kVideo, "Card", "1");
  SCRRule rule = Rule(SCRRuleErrorLevel::WARN, "A message");
  const std::string identifier = rule.GetID();
  SCRIssue issue(*component, rule);
  *component = OSComponent();
  rule = SCRRule();
  EXPECT_EQ(issue.GetName(), "Card");
  EXPECT_EQ(issue.GetID(), identifier);

  const SCRIssue copy(issue);
  issue = SCRIssue(OSComponent(), SCRRule());
  EXPECT_EQ(copy.GetName(), "Card");
  EXPECT_EQ(copy.GetID(), identifier);
  EXPECT_EQ(issue.GetName(), "");
}

TEST(SCRIssueTest, TheIdentifierIsTheRulesNotTheComponents) {
  const SCRRule rule = Rule(SCRRuleErrorLevel::WARN, "A message");
  EXPECT_EQ(SCRIssue(*Component(OSComponentType::kVideo, "Card A", "1"), rule).GetID(),
            SCRIssue(*Component(OSComponentType::kVideo, "Card B", "2"), rule).GetID());
  EXPECT_NE(SCRIssue(*Component(OSComponentType::kVideo, "Card A", "1"), rule).GetID(),
            SCRIssue(*Component(OSComponentType::kVideo, "Card A", "1"), Rule(SCRRuleErrorLevel::INFO, "x"))
                .GetID());
}

/// Issues in the order in which they are shown.
std::vector<SCRIssue> InOrder() {
  const auto issue = [](SCRRuleErrorLevel level, const auto& component, const std::string& message) {
    return SCRIssue(*component, Rule(level, message));
  };
  const auto os = Component(OSComponentType::kOS, "Windows", "10");
  const auto card = Component(OSComponentType::kVideo, "Card", "1");
  return {
      // The level first, whatever the component.
      issue(SCRRuleErrorLevel::FATAL, Property("z", "z"), "z"),
      issue(SCRRuleErrorLevel::ERROR, os, "z"),
      issue(SCRRuleErrorLevel::ERROR, card, "a"),
      // Then the kind, the name as unsigned bytes, the version part by part, the value.
      issue(SCRRuleErrorLevel::WARN, os, "z"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kVideo, "Card", "0.9"), "z"),
      issue(SCRRuleErrorLevel::WARN, card, "y"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kVideo, "Card", "9"), "x"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kVideo, "Card", "10"), "w"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kVideo, "Card 2", "1"), "v"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kVideo, "a card", "1"), "u"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kVideo, "\xC3\xA9", "1"), "t"),
      issue(SCRRuleErrorLevel::WARN, Component(OSComponentType::kAudio, "A", "1"), "s"),
      issue(SCRRuleErrorLevel::WARN, Property("p", "1"), "r"),
      issue(SCRRuleErrorLevel::WARN, Property("p", "2"), "q"),
      // Last the message, as unsigned bytes, a prefix first.
      issue(SCRRuleErrorLevel::INFO, card, ""),
      issue(SCRRuleErrorLevel::INFO, card, "Ab"),
      issue(SCRRuleErrorLevel::INFO, card, "Abc"),
      issue(SCRRuleErrorLevel::INFO, card, "a"),
      issue(SCRRuleErrorLevel::INFO, card, "z"),
      issue(SCRRuleErrorLevel::INFO, card, "\xC3\xA9"),
  };
}

std::vector<std::string> Texts(const std::vector<SCRIssue>& issues) {
  std::vector<std::string> texts;
  for (const SCRIssue& issue : issues) {
    texts.push_back(SCRRule::ErrorLevelToString(issue.GetErrorLevel()) + " " + issue.GetName() + " " +
                    issue.GetVersion().ToString() + issue.GetPropertyValue() + " " + issue.GetInfoMessage());
  }
  return texts;
}

TEST(SCRIssueTest, EachComesBeforeTheNext) {
  const std::vector<SCRIssue> issues = InOrder();
  const std::vector<std::string> texts = Texts(issues);
  for (std::size_t left = 0; left < issues.size(); ++left) {
    for (std::size_t right = 0; right < issues.size(); ++right) {
      EXPECT_EQ(issues[left] < issues[right], left < right) << texts[left] << " < " << texts[right];
    }
  }
}

TEST(SCRIssueTest, SortingGivesTheOrder) {
  std::mt19937 random(20'240'101);
  for (int time = 0; time < 20; ++time) {
    std::vector<SCRIssue> issues = InOrder();
    std::shuffle(issues.begin(), issues.end(), random);
    std::sort(issues.begin(), issues.end());
    EXPECT_EQ(Texts(issues), Texts(InOrder()));
  }
}

TEST(SCRIssueTest, OtherFieldsOfTheRuleDoNotCount) {
  const auto card = Component(OSComponentType::kVideo, "Card", "1");
  const SCRIssue left(*card, testsupport::ReadRule(R"({"type":"Video","name":"a","info_url":"a"})"));
  const SCRIssue right(*card, testsupport::ReadRule(R"({"type":"Video","name":"b","versions":["1"]})"));
  EXPECT_FALSE(left < right);
  EXPECT_FALSE(right < left);
}

}  // namespace
