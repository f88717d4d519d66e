// From a blocklist and a machine to issues.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::Guid;
using qelcore::HashValueMixerState;
using qelcore::MixHashGuidT;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using testsupport::Component;
using testsupport::Components;
using testsupport::Property;

using Texts = std::vector<std::string>;

constexpr std::string_view kForce = "qelsystemcompatibilityreport.force_blocklist_match";
constexpr std::string_view kForceByName = "qelsystemcompatibilityreport.force_blocklist_match_by_name";

const char* const kDefaults = R"("default_info":{
    "OS":{"info_message":"OS message","info_url":"OS link"},
    "Video":{"info_message":"Video message","info_url":"Video link"},
    "Audio":{"info_message":"Audio message"},
    "Network":{"info_url":"Network link"},
    "File":{"info_message":"File message","info_url":"File link"},
    "Property":{"info_message":"Property message","info_url":"Property link"}})";

SCRBlocklist Blocklist(const std::string& rules, const std::string& defaults = kDefaults) {
  return SCRBlocklist("{\"blocklist_version\":1,\"blocklist\":[" + rules + "]," + defaults + "}");
}

std::vector<SCRIssue> Match(const SCRBlocklist& blocklist, const Components& machine) {
  Guid matchID;
  return blocklist.MatchToOSComponents(OSComponentRegistry(machine), matchID);
}

/// Level, name and message of each issue.
Texts Summaries(const std::vector<SCRIssue>& issues) {
  Texts texts;
  for (const SCRIssue& issue : issues) {
    texts.push_back(SCRRule::ErrorLevelToString(issue.GetErrorLevel()) + " " + issue.GetName() + " " +
                    issue.GetInfoMessage());
  }
  return texts;
}

class IssueMatchingTest : public testing::Test {
 protected:
  IssueMatchingTest() {
    OSComponent::EnableSupportProperties(true);
    SCRRule::ForgetFileComponents();
  }
  ~IssueMatchingTest() override {
    OSComponent::EnableSupportProperties(false);
    for (const std::string_view key : {kForce, kForceByName}) {
      qelcore::host::SetDebugEntryForThisRun(key, "");
    }
  }

  testsupport::TestHost mHost;
  Components mMachine{
      Component(OSComponentType::kOS, "Windows", "10"),  Component(OSComponentType::kVideo, "Card B", "2"),
      Component(OSComponentType::kVideo, "Card A", "1"), Component(OSComponentType::kAudio, "Speakers", "1"),
      Component(OSComponentType::kNetwork, "LAN", "1"),  Property("memory.mb", "8192")};
};

TEST_F(IssueMatchingTest, NoRulesGiveNoIssues) {
  EXPECT_EQ(Match(Blocklist(""), mMachine).size(), 0u);
  EXPECT_EQ(Match(SCRBlocklist(""), mMachine).size(), 0u);
  EXPECT_EQ(Match(Blocklist(R"({"type":"Video","name":".*"})"), {}).size(), 0u);
}

TEST_F(IssueMatchingTest, AnIssueCarriesItsComponentAndItsRule) {
  const auto issues = Match(Blocklist(R"({"type":"Property","name":"memory.mb","ilt":"16384",
      "error_level":"ERROR","info_message":"Too little","info_url":"https://example.com/m"})"),
                            mMachine);
  ASSERT_EQ(issues.size(), 1u);
  const SCRIssue& issue = issues.front();
  EXPECT_EQ(issue.GetName(), "memory.mb");
  EXPECT_EQ(issue.GetPIISafeName(), "memory.mb");
  EXPECT_EQ(issue.GetType(), OSComponentType::kProperty);
  EXPECT_FALSE(issue.GetVersion());
  EXPECT_EQ(issue.GetPropertyValue(), "8192");
  EXPECT_EQ(issue.GetErrorLevel(), SCRRuleErrorLevel::ERROR);
  EXPECT_TRUE(issue.IsSeriousError());
  EXPECT_EQ(issue.GetInfoMessage(), "Too little");
  EXPECT_EQ(issue.GetInfoURL(), "https://example.com/m");
  EXPECT_TRUE(issue.IsOSComponent(*mMachine.back()));
  EXPECT_FALSE(issue.IsOSComponent(*Property("memory.mb", "4096")));
}

/// A rule without a message takes the kind's; only then, and only without a link of its own, also the kind's
/// link. A rule with a message and no link keeps no link: that is intended.
TEST_F(IssueMatchingTest, TextsAreAdopted) {
  const struct {
    const char* mRule;
    const char* mMessage;
    const char* mLink;
  } rows[] = {
      {R"({"type":"OS","name":"Windows"})", "OS message", "OS link"},
      {R"({"type":"OS","name":"Windows","info_message":"","info_url":""})", "OS message", "OS link"},
      {R"({"type":"OS","name":"Windows","info_message":"own"})", "own", ""},
      {R"({"type":"OS","name":"Windows","info_url":"own link"})", "OS message", "own link"},
      {R"({"type":"OS","name":"Windows","info_message":"own","info_url":"own link"})", "own", "own link"},
      // Each kind has its own, complete or not.
      {R"({"type":"Video","name":"Card A"})", "Video message", "Video link"},
      {R"({"type":"Audio","name":"Speakers"})", "Audio message", ""},
      {R"({"type":"Audio","name":"Speakers","info_url":"own link"})", "Audio message", "own link"},
      {R"({"type":"Network","name":"LAN"})", "", "Network link"},
      {R"({"type":"Property","name":"memory.mb"})", "Property message", "Property link"},
      {R"({"type":"File","name":"/opt/tool"})", "File message", "File link"},
  };
  const qelcore::host::RecordedFilesScope recorded(
      std::map<std::string, std::string, std::less<>>{{"/opt/tool", "1"}});
  for (const auto& row : rows) {
    const auto issues = Match(Blocklist(row.mRule), mMachine);
    ASSERT_EQ(issues.size(), 1u) << row.mRule;
    EXPECT_EQ(issues.front().GetInfoMessage(), row.mMessage) << row.mRule;
    EXPECT_EQ(issues.front().GetInfoURL(), row.mLink) << row.mRule;
  }
  const auto issues = Match(Blocklist(rows[0].mRule, R"("second_warning":"")"), mMachine);
  ASSERT_EQ(issues.size(), 1u);
  EXPECT_EQ(issues.front().GetInfoMessage(), "");
  EXPECT_EQ(issues.front().GetInfoURL(), "");
}

TEST_F(IssueMatchingTest, TheIdentifierIsThatOfTheRuleWithTheAdoptedTexts) {
  const auto identifier = [&](const char* rule) {
    const auto issues = Match(Blocklist(rule), mMachine);
    return issues.size() == 1 ? issues.front().GetID() : "";
  };
  EXPECT_EQ(identifier(R"({"type":"OS","name":"Windows"})"),
            SCRRule(std::string(R"({"type":"OS","name":"Windows","info_message":"OS message",
                                    "info_url":"OS link"})"))
                .GetID());
  EXPECT_EQ(identifier(R"({"type":"OS","name":"Windows","info_message":"own"})"),
            SCRRule(std::string(R"({"type":"OS","name":"Windows","info_message":"own"})")).GetID());
}

TEST_F(IssueMatchingTest, NothingIsMerged) {
  // Two rules on one component, one rule on two components, and a rule that stands twice.
  const auto issues = Match(Blocklist(R"({"type":"Video","name":"Card A","info_message":"1"},
                                         {"type":"Video","name":"Card.*","info_message":"2"},
                                         {"type":"Video","name":"Card B","info_message":"3"},
                                         {"type":"Video","name":"Card B","info_message":"3"})"),
                            mMachine);
  EXPECT_EQ(Summaries(issues),
            (Texts{"INFO Card A 1", "INFO Card A 2", "INFO Card B 2", "INFO Card B 3", "INFO Card B 3"}));
  EXPECT_EQ(issues[1].GetID(), issues[2].GetID());
  EXPECT_EQ(issues[3].GetID(), issues[4].GetID());
}

TEST_F(IssueMatchingTest, IssuesAreSortedByLevelComponentAndMessage) {
  const auto issues =
      Match(Blocklist(R"({"type":"OS","name":"Windows","error_level":"INFO","info_message":"a"},
                   {"type":"Video","name":"Card A","error_level":"WARN","info_message":"b"},
                   {"type":"Video","name":"Card A","error_level":"WARN","info_message":"a"},
                   {"type":"Video","name":"Card B","error_level":"FATAL","info_message":"z"},
                   {"type":"Audio","name":"Speakers","error_level":"ERROR","info_message":"a"},
                   {"type":"OS","name":"Windows","error_level":"WARN","info_message":"z"},
                   {"type":"Property","name":"memory.mb","error_level":"FATAL","info_message":"a"},
                   {"type":"Video","name":"Card A","error_level":"WARN","info_message":"B"})"),
            mMachine);
  EXPECT_EQ(Summaries(issues),
            (Texts{"FATAL Card B z", "FATAL memory.mb a", "ERROR Speakers a", "WARN Windows z",
                   "WARN Card A B", "WARN Card A a", "WARN Card A b", "INFO Windows a"}));
}

TEST_F(IssueMatchingTest, TheIdentifierOfAMatch) {
  const SCRBlocklist blocklist = Blocklist(R"({"type":"Video","name":"Card A"})");
  const OSComponentRegistry registry(mMachine);
  Guid matchID = Guid::CreateUnique();
  static_cast<void>(blocklist.MatchToOSComponents(registry, matchID));

  MixHashGuidT<HashValueMixerState> state = blocklist.Hash();
  const Guid registryHash = registry.Hash();
  qelcore::UpdateHashState(state, registryHash.Bytes().data(), 16);
  Guid expected;
  qelcore::GetHashResult(state, expected);
  EXPECT_EQ(matchID, expected);

  // The same from another blocklist of the same text and another registry of the same content.
  Guid again;
  static_cast<void>(Blocklist(R"({"type":"Video","name":"Card A"})")
                        .MatchToOSComponents(OSComponentRegistry(mMachine), again));
  EXPECT_EQ(again, matchID);
}

TEST_F(IssueMatchingTest, WhatTheIdentifierOfAMatchDependsOn) {
  const auto identifier = [](const SCRBlocklist& blocklist, const Components& machine) {
    Guid matchID;
    static_cast<void>(blocklist.MatchToOSComponents(OSComponentRegistry(machine), matchID));
    return matchID;
  };
  const Guid base = identifier(Blocklist(""), mMachine);
  EXPECT_NE(base, Guid());
  EXPECT_NE(identifier(Blocklist("", R"("default_info":{})"), mMachine), base);
  EXPECT_NE(identifier(Blocklist("", std::string(kDefaults) + R"(,"second_warning":"w")"), mMachine), base);
  EXPECT_NE(identifier(Blocklist(R"({"type":"OS","name":"none"})"), mMachine), base);
  EXPECT_NE(identifier(Blocklist(""), {}), base);

  Components updated = mMachine;
  updated[1] = Component(OSComponentType::kVideo, "Card B", "2.0.0.1");
  EXPECT_NE(identifier(Blocklist(""), updated), base);
  updated = mMachine;
  updated.back() = Property("memory.mb", "8193");
  EXPECT_NE(identifier(Blocklist(""), updated), base);

  // Files and force settings are in no hash.
  qelcore::host::SetDebugEntryForThisRun(kForce, "true");
  EXPECT_EQ(identifier(Blocklist(""), mMachine), base);
}

TEST_F(IssueMatchingTest, AMatchIsForcedByKind) {
  const SCRBlocklist blocklist = Blocklist(R"({"type":"Video","name":"none","versions":["9"],
      "dependencies":[{"type":"OS","name":"none"}]},{"type":"Audio","name":"("})");
  EXPECT_EQ(Match(blocklist, mMachine).size(), 0u);
  mHost.mExceptionContexts.clear();

  qelcore::host::SetDebugEntryForThisRun(kForce, "true");
  EXPECT_EQ(Summaries(Match(blocklist, mMachine)),
            (Texts{"INFO Card A Video message", "INFO Card B Video message", "INFO Speakers Audio message"}));
  EXPECT_EQ(mHost.mExceptionContexts, Texts());

  // The switch holds for the match alone.
  const SCRRule none = testsupport::ReadRule(R"({"type":"Video","name":"none"})");
  EXPECT_EQ(none.FindMatchingOSComponents(OSComponentRegistry(mMachine)).size(), 0u);

  qelcore::host::SetDebugEntryForThisRun(kForce, "false");
  EXPECT_EQ(Match(blocklist, mMachine).size(), 0u);
}

TEST_F(IssueMatchingTest, AMatchIsForcedByName) {
  const SCRBlocklist blocklist = Blocklist(
      R"({"type":"Video","name":"Card A","versions":["9"]},{"type":"Video","name":"none","versions":["9"]})");
  EXPECT_EQ(Match(blocklist, mMachine).size(), 0u);
  qelcore::host::SetDebugEntryForThisRun(kForceByName, "true");
  EXPECT_EQ(Summaries(Match(blocklist, mMachine)), Texts{"INFO Card A Video message"});

  const SCRRule rule = testsupport::ReadRule(R"({"type":"Video","name":"Card A","versions":["9"]})");
  EXPECT_EQ(rule.FindMatchingOSComponents(OSComponentRegistry(mMachine)).size(), 0u);
}

TEST_F(IssueMatchingTest, OnlyTheExactTextSwitchesOn) {
  const SCRBlocklist blocklist = Blocklist(R"({"type":"Video","name":"Card A","versions":["9"]})");
  for (const std::string_view key : {kForce, kForceByName}) {
    for (const char* const value : {"TRUE", "True", "1", "yes", " true", "true ", ""}) {
      qelcore::host::SetDebugEntryForThisRun(key, value);
      EXPECT_EQ(Match(blocklist, mMachine).size(), 0u) << key << " = " << value;
    }
  }
}

TEST_F(IssueMatchingTest, SwitchesThatWereSetBeforeAreReplaced) {
  SCRRule::ForceMatchByTypeForTesting(true);
  SCRRule::ForceMatchByNameForTesting(true);
  EXPECT_EQ(Match(Blocklist(R"({"type":"Video","name":"Card A","versions":["9"]},
                               {"type":"Video","name":"none"})"),
                  mMachine)
                .size(),
            0u);
  const OSComponentRegistry registry(mMachine);
  for (const char* const rule :
       {R"({"type":"Video","name":"none"})", R"({"type":"Video","name":"Card A","versions":["9"]})"}) {
    EXPECT_EQ(testsupport::ReadRule(rule).FindMatchingOSComponents(registry).size(), 0u) << rule;
  }
}

TEST_F(IssueMatchingTest, AMalformedRuleSpoilsNoOther) {
  const auto issues = Match(Blocklist(R"({"type":"Video","name":"("},
                                         {"type":"Property","name":"memory.mb","regex":"["},
                                         {"type":"Video","name":"Card A"})"),
                            mMachine);
  EXPECT_EQ(Summaries(issues), Texts{"INFO Card A Video message"});
  EXPECT_EQ(mHost.mExceptionContexts,
            (Texts{"qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents",
                   "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents",
                   "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent"}));
}

}  // namespace
