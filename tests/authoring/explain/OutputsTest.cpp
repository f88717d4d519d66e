// Explanations as text and as JSON.
#include "authoring/explain/Outputs.h"

#include <gtest/gtest.h>

#include <map>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using authoring::ExplainQuestion;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::Component;
using testsupport::Components;
using testsupport::Property;
using testsupport::ReadRule;

using Texts = std::vector<std::string>;

class ExplainOutputsTest : public testing::Test {
 protected:
  ExplainOutputsTest() { OSComponent::EnableSupportProperties(true); }
  ~ExplainOutputsTest() override { OSComponent::EnableSupportProperties(false); }

  /// Of one rule that was asked about.
  static authoring::Explained Explain(const std::string& rule, const Components& machine) {
    SCRRule::ForgetFileComponents();
    return authoring::Explain({ReadRule(rule)}, OSComponentRegistry(machine), ExplainQuestion{.mRules = {0}});
  }

  static Texts Text(const std::string& rule, const Components& machine) {
    return authoring::DescribeAsText(Explain(rule, machine), {"list.json", "here"});
  }

  static std::string Join(const Texts& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
  }

  testsupport::TestHost mHost;
  const Components mMachine{Component(OSComponentType::kVideo, "NVIDIA GeForce RTX 3060", "31.0.15.4601"),
                            Component(OSComponentType::kOS, "Windows", "10.0.22631.3007"),
                            Property("memory.mb", "8192 MB")};
};

TEST_F(ExplainOutputsTest, AMissByVersion) {
  EXPECT_EQ(
      Join(Text(
          R"({"type":"Video","name":"^NVIDIA .*$","versions":["0.0.5.3623-0.0.5.4000"],"version_mask":"0.0.+",
                    "version_mod":"0.0.10.+","dependencies":[{"type":"OS","name":"Windows"}]})",
          mMachine)),
      R"(here: 0 hits, 1 near miss, 0 other misses

MISS  rule 0 "^NVIDIA .*$" on [Video] NVIDIA GeForce RTX 3060 v.31.0.15.4601
      by version: 0.0.5.4601 is above 0.0.5.4000
      NO  version       31.0.15.4601, mask 0.0.+ makes 0.0.15.4601, modulus 0.0.10.+ makes 0.0.5.4601
      NO  range 0       "0.0.5.3623-0.0.5.4000": 601 above its end in the fourth number
      --  name          not compared; it would match
      --  dependency    not asked; it would find something
      It is a hit when a range holds 0.0.5.4601: "0.0.5.3623-0.0.5.4601" in place of "0.0.5.3623-0.0.5.4000".
)");
}

TEST_F(ExplainOutputsTest, AHitWithADependency) {
  EXPECT_EQ(Join(Text(R"({"type":"Video","name":"NVIDIA GeForce RTX 3060","versions":["31.0-32.0"],
                          "dependencies":[{"type":"Property","name":"memory.mb","igte":"4096"}]})",
                      mMachine)),
            R"(here: 1 hit, 0 near misses, 0 other misses

HIT   rule 0 "NVIDIA GeForce RTX 3060" on [Video] NVIDIA GeForce RTX 3060 v.31.0.15.4601
      ok  version       31.0.15.4601
      ok  range 0       "31.0.0.0-32.0.0.0" holds it
      ok  name          the same
      ok  dependency 0  [Property] "memory.mb" finds [Property] memory.mb : 8192 MB
          hit   [Property] memory.mb : 8192 MB
                ok  name          the same
                ok  igte          "8192 MB", read as 8192, is at least 4096
)");
}

/// The line behind "MISS" and the last one, of each kind of miss.
TEST_F(ExplainOutputsTest, WhyAndWhenEveryKindOfMiss) {
  const struct {
    const char* mRule;
    const char* mWhy;
    const char* mWhen;
  } rows[] = {
      {R"("type":"OS","name":"Windows","version":"11")", "by version: 10.0.22631.3007 is below 11.0.0.0",
       "a range holds 10.0.22631.3007"},
      {R"("type":"OS","name":"Windows","versions":["11-12"])",
       "by version: 10.0.22631.3007 is below 11.0.0.0",
       R"(a range holds 10.0.22631.3007: "10.0.22631.3007-12.0.0.0" in place of "11.0.0.0-12.0.0.0")"},
      {R"("type":"OS","name":"Windows","versions":["12-9"])",
       R"(by version: the range "12.0.0.0-9.0.0.0" holds nothing)",
       R"(a range holds 10.0.22631.3007: "9.0.0.0-12.0.0.0" in place of "12.0.0.0-9.0.0.0")"},
      {R"("type":"OS","name":"Linux","version":"11")", "by version: 10.0.22631.3007 is below 11.0.0.0",
       R"(a range holds 10.0.22631.3007; and the name is the component's whole name, "Windows")"},
      {R"("type":"OS","name":"windows")", "by name: the name does not match",
       R"(the name is the component's whole name, "Windows")"},
      {R"("type":"OS","name":"Wind")", "by name: the name does not match",
       R"(the name is the component's whole name, "Windows", or an expression for all of it, such as "^.*Wind.*$")"},
      {R"("type":"OS","name":"(a)\\1")",
       "by name: the rule's name is refused as an expression: too complex: it refers back to a group",
       R"(the name is the component's whole name, "Windows", or an expression for all of it that "scr lint" finds nothing wrong with)"},
      {R"("type":"OS","name":"^\bWindows$")",
       "by name: the name does not match; the rule's name holds the control character U+0008, which is what "
       "JSON means by \"\\b\": write \"\\\\b\" for a backslash and the letter",
       R"(the name is the component's whole name, "Windows")"},
      {R"("type":"OS","name":"")", "by name: the rule has no name",
       R"(the name is the component's whole name, "Windows")"},
      {R"("type":"Property","name":"memory.*")", "by name: the name does not match",
       R"(the name is the property's, "memory.mb": expressions do not count for properties)"},
      {R"("type":"Property","name":"memory.mb","ilt":"4096")",
       "by value: the value 8192 is not less than 4096", "the value is less than 4096"},
      {R"("type":"Property","name":"memory.mb","eq":"9","ne":"8192 MB")",
       R"(by value: the value "8192 MB" is not equal to "9")",
       R"(the value is equal to "9" and other than "8192 MB")"},
      {R"("type":"Property","name":"memory.mb","regex":"(a)\\1")",
       R"(by value: the operand of "regex" is refused as an expression: too complex: it refers back to a group)",
       R"(the operand of "regex" is an expression that "scr lint" finds nothing wrong with, and matches the whole value)"},
      {R"("type":"Property","name":"memory.mb","eq":"z","regex":"(")",
       R"(by value: the value "8192 MB" is not equal to "z")",
       R"(the value is equal to "z", and the operand of "regex" is an expression that "scr lint" finds nothing wrong with, and matches the whole value)"},
      {R"("type":"Property","name":"memory.mb","regex":"8192\u0001.*")",
       "by value: the value \"8192 MB\" is not one that the expression \"8192\x01.*\" matches as a whole; "
       "the "
       "operand holds the control character U+0001",
       "the value is one that the expression \"8192\x01.*\" matches as a whole"},
      {R"("type":"OS","name":"Windows","dependencies":[{"type":"Audio","name":"x"}])",
       R"(by dependency: dependency 0, [Audio] "x", finds nothing on the machine)",
       "the machine has what the dependency asks for"},
      {R"("type":"OS","name":"Linux","dependencies":[{"type":"OS","name":"Windows"},{"type":"Audio","name":"x"}])",
       "by name: the name does not match",
       R"(the name is the component's whole name, "Windows"; and dependency 1 finds something)"},
  };
  for (const auto& row : rows) {
    const Texts lines = Text("{" + std::string(row.mRule) + "}", mMachine);
    ASSERT_GE(lines.size(), 5U) << row.mRule;
    EXPECT_EQ(lines[3], "      " + std::string(row.mWhy)) << row.mRule;
    EXPECT_EQ(lines.back(), "      It is a hit when " + std::string(row.mWhen) + ".") << row.mRule;
  }
}

TEST_F(ExplainOutputsTest, ComparisonsThatAreNotLookedAt) {
  EXPECT_EQ(Join(Text(R"({"type":"Property","name":"memory.mb","eq":"8192 MB","ieq":"1"})", mMachine)),
            R"(here: 1 hit, 0 near misses, 0 other misses

HIT   rule 0 "memory.mb" on [Property] memory.mb : 8192 MB
      ok  name          the same
      ok  eq            "8192 MB" is equal to "8192 MB"
      --  ieq           "1" is not looked at: comparisons of texts decide alone
)");
  EXPECT_EQ(Text(R"({"type":"Property","name":"memory.mb","ieq":"1","igt":"2"})", mMachine)[6],
            R"(      --  igt           "2" is not looked at: an earlier one has failed)");
}

/// Each comparison says of itself why it fails.
TEST_F(ExplainOutputsTest, AMalformedOperandBesideAComparisonThatFails) {
  const Texts lines = Text(R"({"type":"Property","name":"memory.mb","eq":"z","regex":"("})", mMachine);
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[5], R"(      NO  eq            "8192 MB" is not equal to "z")");
  EXPECT_EQ(lines[6].rfind(R"(      NO  regex         the operand of "regex" is no expression: )", 0), 0U)
      << lines[6];
}

TEST_F(ExplainOutputsTest, AVersionThatIsNotKnown) {
  const Texts lines =
      Text(R"({"type":"OS","name":"Linux","version":"6"})", {Component(OSComponentType::kOS, "Linux", "")});
  EXPECT_EQ(lines[3],
            "      by version: its version is not known, and no range holds 0.0.0.0, which stands for that");
  EXPECT_EQ(lines[4], "      NO  version       not known");
  EXPECT_EQ(lines.back(), "      It is a hit when the rule has no ranges, or the range \"0.0.0.0\".");
}

TEST_F(ExplainOutputsTest, RulesWithoutACandidate) {
  const std::map<std::string, std::string, std::less<>> none;
  const qelcore::host::RecordedFilesScope files(none);
  EXPECT_EQ(Join(Text(R"({"type":"Audio","name":"x"})", mMachine)),
            R"(here: 0 hits, 0 near misses, 0 other misses

MISS  rule 0 "x"
      the machine has no component of the kind Audio
)");
  EXPECT_EQ(Join(Text(R"({"type":"File","name":"/opt/x.so"})", mMachine)),
            R"(here: 0 hits, 0 near misses, 0 other misses

MISS  rule 0 "/opt/x.so"
      NO  path          there is no file or directory "/opt/x.so"
)");
}

/// The line about the path, and its outcome in JSON.
TEST_F(ExplainOutputsTest, FilesOfASnapshot) {
  using authoring::FileSource;
  const struct {
    const char* mPath;
    FileSource mFiles;
    const char* mLine;
    const char* mOutcome;
  } rows[] = {
      {R"(/opt/x.so)", FileSource::kNotRecorded,
       R"(not known: the snapshot has no "files", so "/opt/x.so" counts as not there)", "not_recorded"},
      {R"(/opt/x.so)", FileSource::kRecorded, R"(the snapshot's "files" have no "/opt/x.so")",
       "nothing_there"},
      {R"(%SystemRoot%\\x.dll)", FileSource::kRecorded,
       R"(the snapshot's "files" have no "%SystemRoot%\x.dll"; they have to write a placeholder as the rule does)",
       "nothing_there"},
      {R"(~/x)", FileSource::kRecorded,
       R"(the snapshot's "files" have no "~/x"; they have to write a placeholder as the rule does)",
       "nothing_there"},
      {R"(C:\temp)", FileSource::kRecorded,
       "the snapshot's \"files\" have no \"C:\temp\"; the path holds the control character U+0009, which is "
       "what "
       "JSON means by \"\\t\": write \"\\\\t\" for a backslash and the letter",
       "nothing_there"},
  };
  const std::map<std::string, std::string, std::less<>> none;
  const qelcore::host::RecordedFilesScope files(none);
  for (const auto& row : rows) {
    SCRRule::ForgetFileComponents();
    const auto explained = authoring::Explain(
        {ReadRule(R"({"type":"File","name":")" + std::string(row.mPath) + "\"}")},
        OSComponentRegistry(Components()), ExplainQuestion{.mRules = {0}, .mFiles = row.mFiles});
    EXPECT_EQ(authoring::DescribeAsText(explained, {"list.json", "here"}).back(),
              "      NO  path          " + std::string(row.mLine))
        << row.mPath;
    const std::any value = json::Parse(authoring::WriteJson(explained, {"list.json", "here"}));
    const json::Array& rules = *json::FindArray(json::AsDictionary(value), "without_candidates");
    const json::Dictionary& path = *json::FindDictionary(json::AsDictionary(rules.at(0)), "path");
    EXPECT_EQ(*json::FindText(path, "outcome"), row.mOutcome) << row.mPath;
  }
}

TEST_F(ExplainOutputsTest, ADependencyOnAFileOfASnapshotWithoutFiles) {
  SCRRule::ForgetFileComponents();
  const std::map<std::string, std::string, std::less<>> none;
  const qelcore::host::RecordedFilesScope files(none);
  const auto explained = authoring::Explain(
      {ReadRule(R"({"type":"OS","name":"Windows","dependencies":[{"type":"File","name":"/opt/x.so"}]})")},
      OSComponentRegistry(mMachine), ExplainQuestion{.mFiles = authoring::FileSource::kNotRecorded});
  const Texts lines = authoring::DescribeAsText(explained, {"list.json", "here"});
  ASSERT_GE(lines.size(), 4U);
  EXPECT_EQ(
      lines[3],
      "      by dependency: dependency 0, [File] \"/opt/x.so\", finds nothing on the machine; the snapshot "
      "has no \"files\", so no file is there");
}

TEST_F(ExplainOutputsTest, FilesHaveTheirPath) {
  const std::map<std::string, std::string, std::less<>> versions = {{"/opt/x.so", "2.1"}};
  const qelcore::host::RecordedFilesScope files(versions);
  EXPECT_EQ(Join(Text(R"({"type":"File","name":"/opt/x.so","versions":["1-2"]})", {})),
            R"(here: 0 hits, 1 near miss, 0 other misses

MISS  rule 0 "/opt/x.so" on [File] /opt/x.so v.2.1.0.0
      by version: 2.1.0.0 is above 2.0.0.0
      ok  path          "/opt/x.so" is there
      NO  version       2.1.0.0
      NO  range 0       "1.0.0.0-2.0.0.0": 1 above its end in the second number
      It is a hit when a range holds 2.1.0.0: "1.0.0.0-2.1.0.0" in place of "1.0.0.0-2.0.0.0".
)");
}

TEST_F(ExplainOutputsTest, ForcedSwitchesAreTold) {
  const auto explained =
      authoring::Explain({ReadRule(R"({"type":"OS","name":"x"})")}, OSComponentRegistry(mMachine),
                         ExplainQuestion{.mForcesByType = true});
  EXPECT_EQ(Join(authoring::DescribeAsText(explained, {"list.json", "here"})),
            R"(here: 1 hit, 0 near misses, 0 other misses
A debug setting is on: every component of a rule's kind is a hit

HIT   rule 0 "x" on [OS] Windows v.10.0.22631.3007
      ok  forced        a debug setting makes every component of the kind a hit; nothing was tested
)");
}

TEST_F(ExplainOutputsTest, WhatIsNotToldIsCounted) {
  std::vector<SCRRule> rules(30, ReadRule(R"({"type":"OS","name":"Windows"})"));
  rules.resize(42, ReadRule(R"({"type":"OS","name":"Windows","version":"9"})"));
  rules.push_back(ReadRule(R"({"type":"OS","name":"Linux"})"));
  const auto explained = authoring::Explain(rules, OSComponentRegistry(mMachine), {});
  const Texts lines = authoring::DescribeAsText(explained, {"list.json", "here"});
  EXPECT_EQ(lines[0], "here: 30 hits, 12 near misses, 1 other miss");
  EXPECT_EQ(lines.back(),
            "Not shown: 10 hits, 2 near misses, 1 other miss. --rule and --component tell more.");
}

TEST_F(ExplainOutputsTest, AsJSON) {
  const auto explained = Explain(
      R"({"type":"Video","name":"^NVIDIA .*$","versions":["0.0.4601-0.0.4700"],"version_mask":"0.0.+",
          "dependencies":[{"type":"OS","name":"Windows"}]})",
      mMachine);
  const std::string text = authoring::WriteJson(explained, {"list.json", "here"});
  EXPECT_EQ(text.find('\n'), text.size() - 1);
  const std::any value = json::Parse(text);
  const json::Dictionary& document = json::AsDictionary(value);
  EXPECT_EQ(json::FindInteger(document, "explain_version"), 1U);
  EXPECT_EQ(*json::FindText(document, "blocklist"), "list.json");
  EXPECT_EQ(*json::FindText(document, "machine"), "here");
  EXPECT_EQ(json::FindInteger(document, "rules"), 1U);
  EXPECT_EQ(
      json::Serialise(*document.at("counts")),
      R"({"failed":{"dependency":0,"name":0,"properties_off":0,"value":0,"version":1},"hits":0,"misses":1,)"
      R"("near_misses":1})");
  EXPECT_EQ(json::Serialise(*document.at("asked_rules")), "[0]");
  EXPECT_EQ(json::Serialise(*document.at("asked_components")), "[]");
  EXPECT_EQ(json::Serialise(*document.at("forced")), "[]");
  EXPECT_EQ(json::Serialise(*document.at("hits")), "[]");
  EXPECT_EQ(json::Serialise(*document.at("without_candidates")), "[]");
  const json::Dictionary& miss = json::AsDictionary(json::FindArray(document, "misses")->at(0));
  EXPECT_EQ(*json::FindText(miss, "failed"), "version");
  EXPECT_EQ(*json::FindText(miss, "near"), "version");
  EXPECT_EQ(*json::FindText(miss, "why"), "0.0.15.4601 is below 0.0.4601.0");
  EXPECT_EQ(json::Serialise(*miss.at("component")),
            R"({"name":"NVIDIA GeForce RTX 3060","type":"Video","version":"31.0.15.4601"})");
  EXPECT_EQ(
      json::Serialise(*miss.at("steps")),
      R"([{"compared":"0.0.15.4601","mask":"0.0.+","masked":"0.0.15.4601","ranges":1,"step":"version",)"
      R"("version":"31.0.15.4601"},{"distance":{"by":4586,"part":2,"side":"below"},"holds":false,"index":0,)"
      R"("range":"0.0.4601.0-0.0.4700.0","step":"range"},{"outcome":"matches","step":"name","taken":false}])");
  EXPECT_EQ(json::FindInteger(miss, "dependencies_not_asked"), 1U);
}

TEST_F(ExplainOutputsTest, EveryKindOfStepAsJSON) {
  const auto steps = [&](const std::string& rule) {
    const auto explained = Explain(rule, mMachine);
    const std::any value = json::Parse(authoring::WriteJson(explained, {"list.json", "here"}));
    const json::Dictionary& document = json::AsDictionary(value);
    const json::Array& hits = *json::FindArray(document, "hits");
    const json::Array& misses = *json::FindArray(document, "misses");
    return json::Serialise(*json::AsDictionary(hits.empty() ? misses.at(0) : hits.at(0)).at("steps"));
  };
  EXPECT_EQ(
      steps(R"({"type":"Property","name":"memory.mb","igte":"9000","ine":"8192"})"),
      R"([{"outcome":"equal","step":"name","taken":true},)"
      R"({"integer_operand":8192,"integer_value":8192,"operand":"8192","operator":"ine","outcome":"fails",)"
      R"("step":"comparison","value":"8192 MB"},)"
      R"({"operand":"9000","operator":"igte","outcome":"not_looked_at","step":"comparison","value":"8192 MB"}])");
  EXPECT_EQ(
      steps(R"({"type":"OS","name":"(a)\\1"})"),
      R"([{"compared":"10.0.22631.3007","ranges":0,"step":"version","version":"10.0.22631.3007"},)"
      R"({"outcome":"refused","reason":"the expression \"(a)\\1\" is refused: too complex: it refers back to a )"
      R"(group","step":"name","taken":true}])");
  EXPECT_EQ(
      steps(R"({"type":"OS","name":"Windows","dependencies":[{"type":"Audio","name":"x"}]})"),
      R"([{"compared":"10.0.22631.3007","ranges":0,"step":"version","version":"10.0.22631.3007"},)"
      R"({"outcome":"equal","step":"name","taken":true},)"
      R"({"candidates":[],"candidates_left_out":0,"found":false,"index":0,"name":"x","remembered":false,)"
      R"("step":"dependency","type":"Audio"}])");
}

/// Nested deeper than JSON may be, were it written as deep as it was matched.
TEST_F(ExplainOutputsTest, DeepDependenciesAreJSONThatCanBeRead) {
  std::string rule = R"({"type":"OS","name":"Windows"})";
  for (int depth = 0; depth < 100; ++depth) {
    rule = R"({"type":"OS","name":"Windows","dependencies":[)" + rule + "]}";
  }
  const std::string text = authoring::WriteJson(Explain(rule, mMachine), {"list.json", "here"});
  EXPECT_TRUE(json::Parse(text).has_value());
}

}  // namespace
