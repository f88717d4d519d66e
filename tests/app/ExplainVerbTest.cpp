#include "platform/qelcore/Json.h"
#include "tests/app/ScrTest.h"

namespace {

namespace json = qelcore::json;
using testsupport::Blocklist;
using testsupport::SystemRule;

class ExplainVerbTest : public testsupport::ScrTest {
 protected:
  std::string WriteList(const std::string& rules) { return Write("list.json", Blocklist(rules)); }

  std::string WriteMachine() {
    return Write("machine.json", R"({
      "components": [
        {"name": "NVIDIA GeForce RTX 3060", "osc_version": 1, "type": "Video", "version": "31.0.15.4601"},
        {"name": "Intel(R) UHD Graphics 770", "osc_version": 1, "type": "Video", "version": "31.0.101.4953"},
        {"name": "memory.mb", "osc_version": 1, "type": "Property", "value": "8192"}],
      "files": [{"path": "/opt/driver.so", "version": "1.2"}]})");
  }
};

constexpr const char* kRules =
    R"({"name": "^NVIDIA .*$", "type": "Video", "versions": ["31.0.15.3623-31.0.15.4000"]},
       {"name": "memory.mb", "type": "Property", "ilt": "9000"},
       {"name": "/opt/driver.so", "type": "File", "version": "1.3"},
       {"name": "/opt/missing.so", "type": "File"})";

TEST_F(ExplainVerbTest, TellsHitsAndNearMisses) {
  const auto result = Scr({"explain", WriteList(kRules), "--machine", WriteMachine()});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mErrors, "");
  EXPECT_EQ(result.mOutput, Path("machine.json") + R"(: 1 hit, 2 near misses, 1 other miss

HIT   rule 1 "memory.mb" on [Property] memory.mb : 8192
      ok  name          the same
      ok  ilt           "8192" is less than 9000

MISS  rule 0 "^NVIDIA .*$" on [Video] NVIDIA GeForce RTX 3060 v.31.0.15.4601
      by version: 31.0.15.4601 is above 31.0.15.4000
      NO  version       31.0.15.4601
      NO  range 0       "31.0.15.3623-31.0.15.4000": 601 above its end in the fourth number
      --  name          not compared; it would match
      It is a hit when a range holds 31.0.15.4601: "31.0.15.3623-31.0.15.4601" in place of "31.0.15.3623-31.0.15.4000".

MISS  rule 2 "/opt/driver.so" on [File] /opt/driver.so v.1.2.0.0
      by version: 1.2.0.0 is below 1.3.0.0
      ok  path          "/opt/driver.so" is there
      NO  version       1.2.0.0
      NO  range 0       "1.3.0.0": 1 below its beginning in the second number
      It is a hit when a range holds 1.2.0.0.

Not shown: 1 other miss. --rule and --component tell more.
)");
  EXPECT_FALSE(Exists("preferences"));
}

TEST_F(ExplainVerbTest, OneRuleByNumberOrIdentifier) {
  const std::string list = WriteList(kRules);
  const std::string machine = WriteMachine();
  const auto byNumber = Scr({"explain", list, "--machine", machine, "--rule", "3"});
  EXPECT_EQ(byNumber.mExitCode, 0) << byNumber.mErrors;
  EXPECT_EQ(byNumber.mOutput, machine + R"(: 0 hits, 0 near misses, 0 other misses

MISS  rule 3 "/opt/missing.so"
      NO  path          the snapshot's "files" have no "/opt/missing.so"
)");
  // As `scr check` prints it.
  const auto checked = Scr({"check", list, "--machine", machine});
  const std::size_t place = checked.mOutput.find("HASH:");
  ASSERT_NE(place, std::string::npos) << checked.mOutput;
  const std::string identifier = checked.mOutput.substr(place, 41);
  const auto byIdentifier = Scr({"explain", list, "--machine", machine, "--rule", identifier});
  EXPECT_EQ(byIdentifier.mExitCode, 0) << byIdentifier.mErrors;
  EXPECT_NE(byIdentifier.mOutput.find("HIT   rule 1 \"memory.mb\""), std::string::npos)
      << byIdentifier.mOutput;
  EXPECT_EQ(byIdentifier.mOutput.find("rule 0"), std::string::npos) << byIdentifier.mOutput;
}

TEST_F(ExplainVerbTest, OneComponentByNameOrPartOfIt) {
  const std::string list = WriteList(kRules);
  const std::string machine = WriteMachine();
  const auto part = Scr({"explain", list, "--machine", machine, "--component", "rtx"});
  EXPECT_EQ(part.mExitCode, 0);
  EXPECT_EQ(part.mErrors, "scr: note: --component: \"rtx\" is a part of \"NVIDIA GeForce RTX 3060\"\n");
  EXPECT_EQ(part.mOutput.rfind(machine + ": 0 hits, 1 near miss, 0 other misses\n", 0), 0U) << part.mOutput;
  const auto exact = Scr({"explain", list, "--machine", machine, "--component", "Intel(R) UHD Graphics 770"});
  EXPECT_EQ(exact.mErrors, "");
  EXPECT_EQ(exact.mOutput.rfind(machine + ": 0 hits, 0 near misses, 1 other miss\n", 0), 0U) << exact.mOutput;
  const auto file = Scr({"explain", list, "--machine", machine, "--component", "driver.so"});
  EXPECT_NE(file.mOutput.find("MISS  rule 2 \"/opt/driver.so\""), std::string::npos) << file.mOutput;
  const auto both = Scr({"explain", list, "--machine", machine, "--component", "Intel", "--rule", "0"});
  EXPECT_NE(both.mOutput.find("MISS  rule 0 \"^NVIDIA .*$\" on [Video] Intel(R) UHD"), std::string::npos)
      << both.mOutput;
}

/// What scr components --json writes says nothing of files, and that is what explain says.
TEST_F(ExplainVerbTest, ASnapshotWithoutFiles) {
  const std::string list = WriteList(kRules);
  const std::string machine = Write("bare.json", R"({"components": []})");
  const auto result = Scr({"explain", list, "--machine", machine, "--rule", "3"});
  EXPECT_EQ(result.mOutput, machine + R"(: 0 hits, 0 near misses, 0 other misses

MISS  rule 3 "/opt/missing.so"
      NO  path          not known: the snapshot has no "files", so "/opt/missing.so" counts as not there
)");
  const auto asJSON = Scr({"explain", list, "--machine", machine, "--rule", "3", "--json"});
  EXPECT_NE(asJSON.mOutput.find(R"("outcome":"not_recorded")"), std::string::npos) << asJSON.mOutput;
}

TEST_F(ExplainVerbTest, WritesJSON) {
  const std::string machine = WriteMachine();
  const auto result = Scr({"explain", WriteList(kRules), "--machine", machine, "--json", "--rule", "0"});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  const std::any value = json::Parse(result.mOutput);
  const json::Dictionary& document = json::AsDictionary(value);
  EXPECT_EQ(json::FindInteger(document, "explain_version"), 1U);
  EXPECT_EQ(*json::FindText(document, "machine"), machine);
  EXPECT_EQ(json::FindArray(document, "misses")->size(), 2U);
  EXPECT_EQ(json::Serialise(*document.at("asked_rules")), "[0]");
}

TEST_F(ExplainVerbTest, ThisMachine) {
  const auto result = Scr({"explain", WriteList(SystemRule())});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mOutput.rfind("this machine: 1 hit, ", 0), 0U) << result.mOutput;
  EXPECT_NE(result.mOutput.find("\nHIT   rule 0 \""), std::string::npos) << result.mOutput;
  EXPECT_FALSE(Exists("preferences"));
}

TEST_F(ExplainVerbTest, DebugSettingsThatForceShow) {
  const std::string list = WriteList(kRules);
  const std::string machine = WriteMachine();
  const auto byType = Scr({"explain", list, "--machine", machine, "--set",
                           "qelsystemcompatibilityreport.force_blocklist_match=true"});
  EXPECT_NE(byType.mOutput.find("\nA debug setting is on: every component of a rule's kind is a hit\n"),
            std::string::npos)
      << byType.mOutput;
  const auto byName = Scr({"explain", list, "--machine", machine, "--set",
                           "qelsystemcompatibilityreport.force_blocklist_match_by_name=true"});
  EXPECT_NE(byName.mOutput.find("\nA debug setting is on: versions are not looked at\n"), std::string::npos)
      << byName.mOutput;
  EXPECT_NE(byName.mOutput.find("HIT   rule 0"), std::string::npos) << byName.mOutput;
}

TEST_F(ExplainVerbTest, AMalformedNameIsToldAndWarnedOf) {
  const auto result = Scr({"explain", WriteList(R"({"name": "(", "type": "Video"})"), "--machine",
                           WriteMachine(), "--rule", "0"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_NE(result.mOutput.find("      by name: the rule's name is no expression: "), std::string::npos)
      << result.mOutput;
  EXPECT_EQ(result.mErrors.rfind("scr: warning: the expression \"(\" is refused: ", 0), 0U) << result.mErrors;
}

TEST_F(ExplainVerbTest, WrongUse) {
  const std::string list = WriteList(kRules);
  const std::string machine = WriteMachine();
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{Path("missing.json")}, "there is no such file"},
      {{Write("text.json", "no")}, "not JSON"},
      {{Write("array.json", "[]")}, "not a blocklist"},
      {{Write("old.json", "{\"blocklist\": []}")}, "\"blocklist_version\" is missing or 0"},
      {{list, "--machine", Path("missing.json")}, "there is no such file"},
      {{list, "--machine", list}, "not a machine snapshot"},
      {{list, "--machine", machine, "--rule", "4"},
       "--rule: there is no rule 4; the list has the rules 0 to 3"},
      {{list, "--machine", machine, "--rule", "first"},
       "--rule: there is no rule \"first\"; a rule is named by"},
      {{list, "--machine", machine, "--component", "memroy.mb"},
       "--component: the machine has no component \"memroy.mb\"; near is \"memory.mb\""},
      {{list, "--machine"}, "--machine"},
      {{list, "--bogus"}, "--bogus"},
  };
  for (const auto& [arguments, text] : rows) {
    std::vector<std::string> all = {"explain"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ExpectError(Scr(all), text);
  }
}

TEST_F(ExplainVerbTest, PrintsNoTerminalEscapes) {
  const auto result =
      Scr({"explain", WriteList(R"({"name": "\u001b[31mred\n", "type": "Video", "version": "\u001b1"})"),
           "--machine", WriteMachine(), "--rule", "0"});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mOutput.find('\x1b'), std::string::npos);
  EXPECT_NE(result.mOutput.find("rule 0 \"?[31mred \""), std::string::npos) << result.mOutput;
}

}  // namespace
