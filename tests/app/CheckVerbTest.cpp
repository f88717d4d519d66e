#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

class CheckVerbTest : public testsupport::ScrTest {};

constexpr const char* kMachine = R"({"components": [
{"name": "Windows", "type": "OS", "version": "10.0.19045.1", "osc_version": 1},
{"name": "Example GPU", "type": "Video", "version": "31.0.15.3623", "osc_version": 1},
{"name": "Example GPU", "type": "Video", "version": "31.0.15.5000", "osc_version": 1},
{"name": "memory.mb", "type": "Property", "value": "2048", "osc_version": 1}
], "files": [{"path": "C:\\old.dll", "version": "1.2.3.4"}, {"path": "%TEMP%\\x.dll", "version": ""}]})";

constexpr const char* kRules = R"(
{"name": "Example GPU", "type": "Video", "versions": ["31.0.15.3000-31.0.15.4000"], "error_level": "ERROR"},
{"name": "memory.mb", "type": "Property", "ilt": "4000", "error_level": "INFO", "info_message": "Little memory."},
{"name": "C:\\old.dll", "type": "File", "versions": ["1.2.3.4"], "error_level": "WARN"},
{"name": "C:\\OLD.dll", "type": "File", "error_level": "FATAL"},
{"name": "%TEMP%\\x.dll", "type": "File", "error_level": "WARN", "info_message": "Left behind."})";

TEST_F(CheckVerbTest, CheckListsTheIssuesOfASnapshot) {
  const auto result =
      Scr({"check", Write("list.json", Blocklist(kRules)), "--machine", Write("m.json", kMachine)});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  EXPECT_EQ(result.mErrors, "");
  const auto idAt = [&](std::size_t number) {
    std::size_t place = 0;
    for (std::size_t count = 0; count <= number; ++count) place = result.mOutput.find("HASH:", place) + 1;
    return result.mOutput.substr(place - 1, 41);
  };
  EXPECT_EQ(result.mOutput, Path("m.json") + R"(: 4 issues

  ERROR [Video] Example GPU v.31.0.15.3623
        About Video.
        https://example.com/Video
        )" + idAt(0) + R"(

  WARN  [File] %TEMP%\x.dll
        Left behind.
        )" + idAt(1) + R"(

  WARN  [File] C:\old.dll v.1.2.3.4
        About File.
        https://example.com/File
        )" + idAt(2) + R"(

  INFO  [Property] memory.mb : 2048
        Little memory.
        )" + idAt(3) + "\n");
}

TEST_F(CheckVerbTest, CheckWritesOneJSONObjectForEachMachine) {
  const std::string list =
      Write("list.json", Blocklist(R"({"name": "memory.mb", "type": "Property", "ilt": "4000"})"));
  const std::string small = Write("small.json", kMachine);
  const std::string large = Write("large.json", R"({"components": []})");
  const auto result = Scr({"check", list, "--machine", small, "--machine", large, "--json"});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  const std::size_t lineFeed = result.mOutput.find('\n');
  const std::string first = result.mOutput.substr(0, lineFeed);
  const std::string second = result.mOutput.substr(lineFeed + 1);
  EXPECT_EQ(first.rfind(R"({"issues":[{"id":"HASH:)", 0), 0U) << first;
  EXPECT_NE(
      first.find(
          R"("info_message":"About Property.","info_url":"https://example.com/Property","level":"INFO",)"
          R"("name":"memory.mb","type":"Property","value":"2048","version":""}],"machine":")" +
          small + "\",\"match_id\":\""),
      std::string::npos)
      << first;
  EXPECT_EQ(second.rfind(R"({"issues":[],"machine":")" + large + "\",\"match_id\":\"", 0), 0U) << second;
}

/// What a file rule finds on one machine must not answer for the next.
TEST_F(CheckVerbTest, CheckJudgesEveryMachineAsIfByAProcessOfItsOwn) {
  const std::string list =
      Write("list.json", Blocklist(R"({"name": "/x", "type": "File", "error_level": "WARN"})"));
  const std::string with =
      Write("with.json", R"({"components": [], "files": [{"path": "/x", "version": "1"}]})");
  const std::string without = Write("without.json", R"({"components": []})");
  const auto result = Scr({"check", list, "-m", without, "-m", with, "-m", without});
  EXPECT_EQ(result.mExitCode, 2);
  EXPECT_NE(result.mOutput.find(without + ": no issues\n\n" + with + ": 1 issue\n"), std::string::npos)
      << result.mOutput;
  EXPECT_EQ(result.mOutput.rfind(without + ": no issues\n"), result.mOutput.size() - without.size() - 12);
}

TEST_F(CheckVerbTest, CheckMatchesThisMachineWithoutRemembering) {
  const auto result = Scr({"check", Write("list.json", Blocklist(SystemRule(R"("error_level": "FATAL")")))});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  EXPECT_EQ(result.mOutput.rfind(
                "this machine: 1 issue\n\n  FATAL [OS] " + std::string(testsupport::kSystemName) + " v.", 0),
            0U)
      << result.mOutput;
  EXPECT_FALSE(Exists("preferences"));
}

TEST_F(CheckVerbTest, CheckNotesAListThatADownloadWouldRefuse) {
  const auto result = Scr({"check", Write("list.json", R"({"blocklist_version": 1, "blocklist": []})"), "-m",
                           Write("m.json", kMachine)});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_NE(result.mErrors.find("a download of this blocklist would be refused"), std::string::npos);
}

TEST_F(CheckVerbTest, CheckWarnsOfMalformedExpressionsOnce) {
  const std::string list =
      Write("list.json", Blocklist(R"({"name": "(", "type": "Video", "error_level": "ERROR"})"));
  const auto result = Scr({"check", list, "-m", Write("m.json", kMachine)});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mErrors.rfind("scr: warning: ", 0), 0U) << result.mErrors;
  EXPECT_EQ(result.mErrors.find('\n'), result.mErrors.size() - 1) << result.mErrors;
}

/// The rule that has it hits nothing; the others are not affected.
TEST_F(CheckVerbTest, CheckWarnsOfADependencyThatCannotBeRead) {
  const std::string list = Write("list.json", Blocklist(R"(
      {"name": "Windows", "type": "OS", "error_level": "WARN",
       "dependencies": [{"name": "x", "type": "OS", "versions": "1"}]},
      {"name": "Windows", "type": "OS", "error_level": "INFO", "dependencies": [5]},
      {"name": "memory.mb", "type": "Property", "error_level": "INFO"})"));
  const auto result = Scr({"check", list, "-m", Write("m.json", kMachine)});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mErrors.rfind("scr: warning: ", 0), 0U) << result.mErrors;
  EXPECT_NE(result.mOutput.find(": 1 issue\n"), std::string::npos) << result.mOutput;
}

TEST_F(CheckVerbTest, CheckRefusesBadInput) {
  const std::string list = Write("list.json", Blocklist(""));
  const struct {
    const char* mContent;
    const char* mText;
  } lists[] = {
      {"", "not JSON"},
      {"{\"blocklist_version\": 1,\n \"blocklist\": [}", "line 2, column"},
      {"[]", "must be a JSON object"},
      {"{}", "\"blocklist_version\" is missing or 0"},
      {R"({"blocklist_version": 0, "blocklist": []})", "\"blocklist_version\" is missing or 0"},
      {R"({"blocklist_version": "1"})", "not a blocklist"},
      {R"({"blocklist_version": 1, "blocklist": [{"type": "OS", "name": "a"}, {"type": "Vidoe", "name": "b"}]})",
       "element 1 of \"blocklist\" is not a valid rule: \"name\" or \"type\" is missing or wrong, or "
       "\"version\" is not a text; an application would read an empty list"},
      // As scr lint counts: a character of several bytes is one column.
      {"{\"comment\": \"äöü\" x}", "bad.json, line 1, column 19: not JSON"},
      {R"({"blocklist_version": 1, "blocklist": [{"type": "OS", "name": "a", "versions": "1"}]})",
       "\"versions\" is"},
      {R"({"blocklist_version": 1, "blocklist": [{"type": "OS", "name": "a", "osblc_version": 0}]})",
       "\"osblc_version\" is 0"},
      {R"({"blocklist_version": 1, "blocklist": {}})", "not a blocklist"},
  };
  for (const auto& row : lists) ExpectError(Scr({"check", Write("bad.json", row.mContent)}), row.mText);

  const struct {
    const char* mContent;
    const char* mText;
  } machines[] = {
      {"{", "not JSON"},
      {"[]", "not a machine snapshot"},
      {"{}", "has no \"components\""},
      {R"({"components": {}})", "not a machine snapshot"},
      {R"({"components": [{"name": "x", "type": "OS"}, {"name": "y"}]})", "element 1 of \"components\""},
      {R"({"components": [], "files": [{"version": "1"}]})", "has no \"path\""},
      {R"({"components": [], "files": [1]})", "not a machine snapshot"},
  };
  for (const auto& row : machines)
    ExpectError(Scr({"check", list, "-m", Write("bad.json", row.mContent)}), row.mText);

  ExpectError(Scr({"check", Path("missing.json")}), "there is no such file");
  ExpectError(Scr({"check", Path(".")}), "is a directory");
  ExpectError(Scr({"check", list, "-m", Path("missing.json")}), "there is no such file");
}

/// A text of a blocklist is text: it cannot move the cursor or colour the terminal.
TEST_F(CheckVerbTest, CheckPrintsNoTerminalEscapes) {
  const std::string list =
      Write("list.json",
            Blocklist(R"({"name": "Windows", "type": "OS", "info_message": "\u001b[31mred\u009b0m\nnext"})"));
  const auto result = Scr({"check", list, "-m", Write("m.json", kMachine)});
  EXPECT_NE(result.mOutput.find("        ?[31mred?0m next\n"), std::string::npos) << result.mOutput;
}

TEST_F(CheckVerbTest, CheckRefusesAFileOf500MB) {
  const std::string path = Write("large.json", "");
  // It has that length without taking the room.
  std::filesystem::resize_file(testsupport::PathFrom(path), 500'000'000);
  ExpectError(Scr({"check", path}), "large.json: File too large");
  ExpectError(Scr({"check", Write("list.json", Blocklist("")), "--machine", path}),
              "large.json: File too large");
}

}  // namespace
