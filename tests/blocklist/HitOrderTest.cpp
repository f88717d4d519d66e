// Hits are put into the order that the issues have which become of them.
#include "qelsystemcompatibilityreport/blocklist/HitOrder.h"

#include <gmock/gmock.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using testing::ElementsAre;

SCRRule Rule(SCRRuleErrorLevel level, const std::string& message) {
  return SCRRule(OSComponentType::kVideo, "Card", std::vector<VersionRange>(), {}, {}, message, {}, {},
                 level);
}

std::vector<std::string> Describe(const std::vector<Hit>& hits, const std::vector<SCRRule>& rules) {
  std::vector<std::string> lines;
  for (const Hit& hit : hits) {
    lines.push_back(SCRRule::ErrorLevelToString(rules[hit.mRule].GetErrorLevel()) + " " +
                    hit.mComponent->GetName() + " " + hit.mComponent->GetVersion().ToString() + " " +
                    rules[hit.mRule].GetInfoMessage());
  }
  return lines;
}

TEST(HitOrder, ByLevelThenComponentThenMessage) {
  const std::vector<SCRRule> rules{
      Rule(SCRRuleErrorLevel::INFO, "a"),         Rule(SCRRuleErrorLevel::FATAL, "z"),
      Rule(SCRRuleErrorLevel::WARN, "b"),         Rule(SCRRuleErrorLevel::WARN, "a"),
      Rule(SCRRuleErrorLevel::ERROR, "\xc3\xa9"), Rule(SCRRuleErrorLevel::ERROR, "Z")};
  const auto early = testsupport::Component(OSComponentType::kVideo, "Card", "1.0.0.0");
  const auto late = testsupport::Component(OSComponentType::kVideo, "Card", "10.0.0.0");
  const auto other = testsupport::Component(OSComponentType::kVideo, "A card", "99.0.0.0");
  std::vector<Hit> hits;
  for (std::size_t rule = 0; rule < rules.size(); ++rule) {
    for (const auto& component : {late, early, other}) hits.push_back({component, rule});
  }
  SortHits(hits, rules);
  EXPECT_THAT(
      Describe(hits, rules),
      ElementsAre("FATAL A card 99.0.0.0 z", "FATAL Card 1.0.0.0 z", "FATAL Card 10.0.0.0 z",
                  "ERROR A card 99.0.0.0 Z", "ERROR A card 99.0.0.0 \xc3\xa9", "ERROR Card 1.0.0.0 Z",
                  "ERROR Card 1.0.0.0 \xc3\xa9", "ERROR Card 10.0.0.0 Z", "ERROR Card 10.0.0.0 \xc3\xa9",
                  "WARN A card 99.0.0.0 a", "WARN A card 99.0.0.0 b", "WARN Card 1.0.0.0 a",
                  "WARN Card 1.0.0.0 b", "WARN Card 10.0.0.0 a", "WARN Card 10.0.0.0 b",
                  "INFO A card 99.0.0.0 a", "INFO Card 1.0.0.0 a", "INFO Card 10.0.0.0 a"));
}

TEST(HitOrder, EqualComponentsAreOneWhereverTheyStand) {
  const std::vector<SCRRule> rules{Rule(SCRRuleErrorLevel::WARN, "b"), Rule(SCRRuleErrorLevel::WARN, "a")};
  const auto first = testsupport::Component(OSComponentType::kVideo, "Card", "1.0.0.0");
  const auto second = testsupport::Component(OSComponentType::kVideo, "Card", "1.0.0.0");
  std::vector<Hit> hits{{first, 0}, {second, 0}, {first, 1}, {second, 1}};
  SortHits(hits, rules);
  EXPECT_THAT(Describe(hits, rules), ElementsAre("WARN Card 1.0.0.0 a", "WARN Card 1.0.0.0 a",
                                                 "WARN Card 1.0.0.0 b", "WARN Card 1.0.0.0 b"));
}

TEST(HitOrder, NoHits) {
  std::vector<Hit> hits;
  SortHits(hits, {});
  EXPECT_TRUE(hits.empty());
}

TEST(HitOrder, RandomHitsStandAsTheirIssuesDo) {
  std::mt19937 random(20);
  const auto pick = [&](unsigned count) { return static_cast<int>(random() % count); };
  for (int round = 0; round < 200; ++round) {
    std::vector<SCRRule> rules;
    for (int rule = pick(8); rule >= 0; --rule)
      rules.push_back(Rule(SCRRuleErrorLevel{pick(4)}, std::string(static_cast<std::size_t>(pick(3)), 'm')));
    std::vector<Hit> hits;
    for (int hit = pick(40); hit >= 0; --hit) {
      const auto component = testsupport::Component(OSComponentType{pick(3)}, pick(2) == 0 ? "one" : "two",
                                                    pick(2) == 0 ? "1.0" : "1.0.5");
      hits.push_back({component, random() % rules.size()});
    }
    const std::size_t count = hits.size();
    SortHits(hits, rules);
    ASSERT_EQ(hits.size(), count);
    for (std::size_t index = 1; index < hits.size(); ++index) {
      const SCRIssue before(*hits[index - 1].mComponent, rules[hits[index - 1].mRule]);
      const SCRIssue after(*hits[index].mComponent, rules[hits[index].mRule]);
      ASSERT_FALSE(after < before) << "round " << round << ", hit " << index;
    }
  }
}

}  // namespace
