#include "platform/qelcore/Json.h"
#include "tests/app/ScrTest.h"

namespace {

namespace json = qelcore::json;
using testsupport::Blocklist;

class LintVerbTest : public testsupport::ScrTest {
 protected:
  /// Two lines, with an error, a warning and a note.
  std::string WriteFaultyList() {
    return Write("my list.json",
                 Blocklist("\n"
                           R"({"name": "A", "type": "OS", "version": "1.0", "max_version": "0.5"},)"
                           R"({"name": "B", "type": "OS", "bogus": 1})"));
  }
};

TEST_F(LintVerbTest, SaysNothingOfAGoodList) {
  const auto result = Scr({"lint", Write("list.json", Blocklist(R"({"name": "A", "type": "OS"})"))});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mOutput, "no findings\n");
  EXPECT_EQ(result.mErrors, "");
  EXPECT_FALSE(Exists("preferences"));
}

TEST_F(LintVerbTest, TellsWhatWhereAndWhatToDo) {
  const std::string path = WriteFaultyList();
  const auto result = Scr({"lint", path});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  EXPECT_EQ(result.mErrors, "");
  EXPECT_EQ(
      result.mOutput,
      path +
          R"(:2:40: error BL303: rule 0 "A": the range "1.0.0.0-0.5.0.0" holds nothing: its lower end is above )"
          R"(its upper end
    Swap the ends: "0.5.0.0-1.0.0.0".
)" + path +
          R"(:2:97: warning BL107: rule 1 "B": the key "bogus" is unknown and ignored
    Known are "name", "type", "osc_version", "osblc_version", "versions", "version", "max_version", "version_mask", )"
          R"("version_mod", "eq", "ne", "lt", "lte", "gt", "gte", "regex", "ieq", "ine", "ilt", "ilte", "igt", )"
          R"("igte", "comment", "error_level", "info_message", "dependencies", "info_url" and "examples". )"
          R"(Remarks belong under "comment".
1 error, 1 warning
)");
}

TEST_F(LintVerbTest, WarningsAndNotesAreNoFailure) {
  const auto result =
      Scr({"lint", Write("list.json", Blocklist(R"({"name": "A", "type": "OS", "bogus": 1})"))});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mOutput.substr(result.mOutput.size() - 10), "1 warning\n");
  const auto noted = Scr({"lint", Write("list.json", Blocklist(""))});
  EXPECT_EQ(noted.mExitCode, 0) << noted.mErrors;
  EXPECT_NE(noted.mOutput.find("note BL108: the list has no rules\n1 note\n"), std::string::npos)
      << noted.mOutput;
}

TEST_F(LintVerbTest, WritesJSON) {
  const std::string path = WriteFaultyList();
  const auto result = Scr({"lint", path, "--json"});
  EXPECT_EQ(result.mExitCode, 2);
  const std::any value = json::Parse(result.mOutput);
  const json::Dictionary& document = json::AsDictionary(value);
  EXPECT_EQ(json::FindInteger(document, "lint_version"), 1U);
  EXPECT_EQ(json::FindInteger(document, "errors"), 1U);
  EXPECT_EQ(json::FindInteger(document, "warnings"), 1U);
  EXPECT_EQ(json::FindInteger(document, "notes"), 0U);
  const json::Array& findings = *json::FindArray(document, "findings");
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(
      json::Serialise(findings[0]),
      R"({"code":"BL303","column":40,"file":")" + path +
          R"(","line":2,"mend":"Swap the ends: \"0.5.0.0-1.0.0.0\".","rule":0,"rule_name":"A","severity":"error",)"
          R"("title":"reversed-range","what":"the range \"1.0.0.0-0.5.0.0\" holds nothing: its lower end is above )"
          R"(its upper end"})");
}

TEST_F(LintVerbTest, WritesSARIF) {
  WriteFaultyList();
  const auto result = Scr({"lint", "my list.json", "--sarif"});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  const std::any value = json::Parse(result.mOutput);
  const json::Dictionary& log = json::AsDictionary(value);
  EXPECT_EQ(*json::FindText(log, "version"), "2.1.0");
  const json::Dictionary& run = json::AsDictionary(json::FindArray(log, "runs")->at(0));
  EXPECT_EQ(*json::FindText(run, "columnKind"), "unicodeCodePoints");
  const json::Dictionary& driver = *json::FindDictionary(*json::FindDictionary(run, "tool"), "driver");
  const json::Array& rules = *json::FindArray(driver, "rules");
  const json::Array& results = *json::FindArray(run, "results");
  ASSERT_EQ(results.size(), 2U);
  for (const std::any& element : results) {
    const json::Dictionary& finding = json::AsDictionary(element);
    const json::Dictionary& rule = json::AsDictionary(rules.at(*json::FindInteger(finding, "ruleIndex")));
    EXPECT_EQ(*json::FindText(rule, "id"), *json::FindText(finding, "ruleId"));
  }
  const json::Dictionary& first = json::AsDictionary(results[0]);
  EXPECT_EQ(json::Serialise(json::FindArray(first, "locations")->at(0)),
            R"({"logicalLocations":[{"fullyQualifiedName":"blocklist[0]","name":"A"}],"physicalLocation":)"
            R"({"artifactLocation":{"uri":"my%20list.json"},"region":{"startColumn":40,"startLine":2}}})");
}

TEST_F(LintVerbTest, ReadsSeveralFiles) {
  const std::string good = Write("good.json", Blocklist(R"({"name": "A", "type": "OS"})"));
  const std::string bad = Write("bad.json", "{");
  const auto result = Scr({"lint", good, bad});
  EXPECT_EQ(result.mExitCode, 2);
  EXPECT_EQ(result.mOutput.rfind(bad + ":1:1: error BL101: the file is not JSON", 0), 0U) << result.mOutput;
}

TEST_F(LintVerbTest, RefusesFilesThatCannotBeRead) {
  const std::string list = Write("list.json", "{}");
  ExpectError(Scr({"lint", Path("missing.json")}), "there is no such file");
  ExpectError(Scr({"lint", list, Path(".")}), "is a directory");
  ExpectError(Scr({"lint"}), "FILE");
  ExpectError(Scr({"lint", list, "--json", "--sarif"}), "--sarif");
}

TEST_F(LintVerbTest, PrintsNoTerminalEscapes) {
  const auto result =
      Scr({"lint",
           Write("list.json", Blocklist(R"({"name": "\u001b[31mred\n", "type": "OS", "bog\u001bus": 1})"))});
  EXPECT_EQ(result.mOutput.find('\x1b'), std::string::npos);
  EXPECT_NE(result.mOutput.find("rule 0 \"<U+001B>[31mred<U+000A>\": the key \"bog<U+001B>us\" is unknown"),
            std::string::npos)
      << result.mOutput;
}

}  // namespace
