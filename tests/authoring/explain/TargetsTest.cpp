// What --rule and --component choose.
#include "authoring/explain/Targets.h"

#include <gtest/gtest.h>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using authoring::ChooseComponents;
using authoring::ChooseRules;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::ReadRule;

using Names = std::set<std::string>;
using Indexes = std::set<std::size_t>;

TEST(TargetsTest, RulesByNumberAndByIdentifier) {
  // The first two differ in what is no part of an identifier.
  const std::vector<SCRRule> rules = {ReadRule(R"({"type":"OS","name":"a"})"),
                                      ReadRule(R"({"type":"OS","name":"a","version_mask":"+"})"),
                                      ReadRule(R"({"type":"OS","name":"b"})")};
  EXPECT_EQ(ChooseRules(rules, "0").mChosen, Indexes{0});
  EXPECT_EQ(ChooseRules(rules, "2").mChosen, Indexes{2});
  EXPECT_EQ(ChooseRules(rules, "2").mNote, "");
  EXPECT_EQ(ChooseRules(rules, rules[2].GetID()).mChosen, Indexes{2});
  EXPECT_EQ(ChooseRules(rules, rules[0].GetID()).mChosen, (Indexes{0, 1}));
  EXPECT_EQ(ChooseRules(rules, rules[0].GetID()).mNote, "2 rules share this identifier");
}

TEST(TargetsTest, UnknownRules) {
  const std::vector<SCRRule> one = {ReadRule(R"({"type":"OS","name":"a"})")};
  const std::vector<SCRRule> three(3, one[0]);
  const std::string help =
      "; a rule is named by its number, as \"scr lint\" tells it, or by its identifier, as \"scr check\" "
      "does; ";
  const struct {
    const std::vector<SCRRule>& mRules;
    const char* mText;
    std::string mProblem;
  } rows[] = {
      {three, "3", "there is no rule 3; the list has the rules 0 to 2"},
      {one, "1", "there is no rule 1; the list has one rule, 0"},
      {{}, "0", "there is no rule 0; the list has no rules"},
      {three, "-1", "there is no rule \"-1\"" + help + "the list has the rules 0 to 2"},
      {three, "", "there is no rule \"\"" + help + "the list has the rules 0 to 2"},
      {three, "99999999999999999999",
       "there is no rule \"99999999999999999999\"" + help + "the list has the rules 0 to 2"},
      {one, "a", "there is no rule \"a\"" + help + "the list has one rule, 0"},
  };
  for (const auto& row : rows) {
    const auto choice = ChooseRules(row.mRules, row.mText);
    EXPECT_EQ(choice.mChosen, Indexes());
    EXPECT_EQ(choice.mProblem, row.mProblem) << row.mText;
  }
}

TEST(TargetsTest, ComponentsByNameOrPartOfOne) {
  const Names names = {"Intel(R) UHD Graphics", "Intel(R) UHD Graphics 770", "NVIDIA GeForce RTX 3060",
                       "Windows"};
  const struct {
    const char* mText;
    Names mChosen;
    const char* mNote;
    const char* mProblem;
  } rows[] = {
      {"Windows", {"Windows"}, "", ""},
      // The exact name alone, though another one holds it.
      {"Intel(R) UHD Graphics", {"Intel(R) UHD Graphics"}, "", ""},
      {"rtx", {"NVIDIA GeForce RTX 3060"}, "\"rtx\" is a part of \"NVIDIA GeForce RTX 3060\"", ""},
      {"Graphics",
       {"Intel(R) UHD Graphics", "Intel(R) UHD Graphics 770"},
       "\"Graphics\" is a part of \"Intel(R) UHD Graphics\", \"Intel(R) UHD Graphics 770\"",
       ""},
      {"Winodws", {}, "", "the machine has no component \"Winodws\"; near is \"Windows\""},
      {"zzz",
       {},
       "",
       "the machine has no component \"zzz\"; it has \"Intel(R) UHD Graphics\", \"Intel(R) UHD Graphics "
       "770\", "
       "\"NVIDIA GeForce RTX 3060\", \"Windows\""},
      {"",
       {},
       "",
       "the machine has no component \"\"; it has \"Intel(R) UHD Graphics\", \"Intel(R) UHD Graphics 770\", "
       "\"NVIDIA GeForce RTX 3060\", \"Windows\""},
  };
  for (const auto& row : rows) {
    const auto choice = ChooseComponents(names, row.mText);
    EXPECT_EQ(choice.mChosen, row.mChosen) << row.mText;
    EXPECT_EQ(choice.mNote, row.mNote) << row.mText;
    EXPECT_EQ(choice.mProblem, row.mProblem) << row.mText;
  }
  EXPECT_EQ(ChooseComponents({}, "a").mProblem, "the machine has no component \"a\"");
}

TEST(TargetsTest, OfManyNamesTheFirstFewAreTold) {
  Names names;
  for (int index = 0; index < 1000; ++index) names.insert("device " + std::to_string(index));
  const auto choice = ChooseComponents(names, "device");
  EXPECT_EQ(choice.mChosen.size(), 1000U);
  EXPECT_EQ(
      choice.mNote,
      "\"device\" is a part of \"device 0\", \"device 1\", \"device 10\", \"device 100\", \"device 101\" and "
      "995 more");
}

TEST(TargetsTest, FilesThatRulesFindAreAmongTheNames) {
  const testsupport::TestHost host;
  const std::map<std::string, std::string, std::less<>> versions = {{"/opt/driver.so", "1.2"},
                                                                    {"/opt/unasked.so", "1.2"}};
  const qelcore::host::RecordedFilesScope files(versions);
  const std::vector<SCRRule> rules = {
      // Whatever else the rule asks for.
      ReadRule(
          R"({"type":"File","name":"/opt/driver.so","version":"9","dependencies":[{"type":"OS","name":"("}]})"),
      ReadRule(R"({"type":"File","name":"/opt/missing.so"})"), ReadRule(R"({"type":"OS","name":"("})")};
  const qelcore::utility::OSComponentRegistry registry(
      {testsupport::Component(qelcore::utility::OSComponentType::kOS, "Linux", "6")});
  EXPECT_EQ(authoring::NamesOfCandidates(rules, registry), (Names{"/opt/driver.so", "Linux"}));
  EXPECT_EQ(host.mExceptionContexts, std::vector<std::string>());
}

}  // namespace
