#include "platform/qelcore/Json.h"
#include "tests/app/ScrTest.h"

namespace {

namespace json = qelcore::json;
using testsupport::Blocklist;

constexpr const char* kOffice = R"({"components": [
{"name": "Windows", "type": "OS", "version": "10.0.22631.1"},
{"name": "GPU", "type": "Video", "version": "31.0.15.3699"},
{"name": "memory.mb", "type": "Property", "value": "2048"}
], "files": [{"path": "/x", "version": "1.5"}]})";

class DiffVerbTest : public testsupport::ScrTest {
 protected:
  std::string WriteList(const std::string& name, const std::string& rules) {
    return Write(name, Blocklist(rules));
  }

  /// The objects on the lines of an output.
  static std::vector<json::Dictionary> Objects(const std::string& output) {
    std::vector<json::Dictionary> objects;
    for (std::size_t place = 0; place < output.size();) {
      const std::size_t end = output.find('\n', place);
      const std::any value = json::Parse(output.substr(place, end - place));
      EXPECT_TRUE(value.has_value()) << output.substr(place, end - place);
      objects.push_back(json::AsDictionary(value));
      EXPECT_EQ(json::FindInteger(objects.back(), "diff_version"), 1U);
      place = end + 1;
    }
    return objects;
  }

  static std::vector<std::string> Kinds(const std::vector<json::Dictionary>& objects) {
    std::vector<std::string> kinds;
    for (const json::Dictionary& object : objects) kinds.push_back(*json::FindText(object, "kind"));
    return kinds;
  }
};

TEST_F(DiffVerbTest, EqualListsDoNotDiffer) {
  const std::string list = WriteList("list.json", R"({"name": "GPU", "type": "Video"})");
  const auto result = Scr({"diff", list, list});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(result.mOutput,
            list + " -> " + list + "\nrules: 0 added, 0 gone, 0 changed, 0 moved, 1 as they were\n");
  EXPECT_EQ(result.mErrors, "");
  EXPECT_FALSE(Exists("preferences"));
}

TEST_F(DiffVerbTest, TellsWhatWasChangedAndWhatUsersNotice) {
  const std::string oldList = WriteList("old.json", R"(
      {"name": "GPU", "type": "Video", "versions": ["31.0.15.3600-31.0.15.3700"], "error_level": "ERROR"},
      {"name": "Windows", "type": "OS", "error_level": "WARN"},
      {"name": "Gone", "type": "Audio", "info_message": "Gone."})");
  const std::string newList = WriteList("new.json", R"(
      {"name": "GPU", "type": "Video", "versions": ["31.0.15.3600-31.0.15.3800"], "error_level": "ERROR"},
      {"name": "memory.mb", "type": "Property", "ilt": "4000", "info_message": "Little memory."},
      {"name": "Windows", "type": "OS", "error_level": "WARN"})");
  const std::string machine = Write("office.json", kOffice);
  const auto result = Scr({"diff", oldList, newList, "--machine", machine});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  EXPECT_EQ(result.mErrors, "");
  const auto idBehind = [&](const std::string& text) {
    return result.mOutput.substr(result.mOutput.find("HASH:", result.mOutput.find(text)), 41);
  };
  const std::string oldID = idBehind("identifier: ");
  const std::string newID = idBehind("->  HASH:");
  const std::string memoryID = idBehind("memory.mb : 2048");
  EXPECT_NE(oldID, newID);
  EXPECT_EQ(result.mOutput, oldList + " -> " + newList + R"(
rules: 1 added, 1 gone, 1 changed, 0 moved, 1 as they were

  gone     rule 2 [Audio] Gone
      error_level: "INFO"
      info_message: "Gone."
      versions: []

  added    rule 1 [Property] memory.mb
      error_level: "INFO"
      ilt: "4000"
      info_message: "Little memory."

  changed  rule 0 [Video] GPU
      versions: ["31.0.15.3600-31.0.15.3700"]
            ->  ["31.0.15.3600-31.0.15.3800"]
      identifier: )" + oldID + R"(
              ->  )" + newID + R"(

warning: 1 changed rule has another identifier
    rules 0
    Where such a rule hit before and still hits, users are told of the issue once more: it counts as new, and the one they know as resolved.

)" + machine + R"(: 2 new, 1 ongoing, 1 resolved
  new      ERROR [Video] GPU v.31.0.15.3699
           rule 0, )" + newID + R"(
           known already, as )" +
                                oldID + R"(; told again because its identifier changed
  new      INFO  [Property] memory.mb : 2048
           rule 1, )" + memoryID +
                                R"(
  resolved ERROR [Video] GPU v.31.0.15.3699
           rule 0, )" + oldID + R"(
           goes on as )" + newID +
                                R"(

1 machine, 1 with a change: 2 new, 1 ongoing, 1 resolved; 1 new only by their identifier
)");
}

TEST_F(DiffVerbTest, WritesJSONLines) {
  const std::string oldList =
      WriteList("old.json", R"({"name": "memory.mb", "type": "Property", "ilt": "1000", "info_message": "m"},
          {"name": "/x", "type": "File", "versions": ["1"]}, {"name": "Old", "type": "OS"})");
  const std::string newList =
      WriteList("new.json", R"({"name": "memory.mb", "type": "Property", "ilt": "4000", "info_message": "m"},
          {"name": "/x", "type": "File", "versions": ["1-2"]})");
  const std::string machine = Write("office.json", kOffice);
  const auto result = Scr({"diff", oldList, newList, "-m", machine, "--json"});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  const auto objects = Objects(result.mOutput);
  ASSERT_EQ(Kinds(objects), (std::vector<std::string>{"lists", "machine", "summary"}));
  const json::Dictionary& lists = objects[0];
  EXPECT_EQ(*json::FindText(lists, "old"), oldList);
  EXPECT_EQ(*json::FindText(lists, "new"), newList);
  EXPECT_EQ(json::FindInteger(lists, "unchanged"), 0U);
  EXPECT_EQ(json::FindBool(lists, "seen_at_launch"), true);
  EXPECT_EQ(json::FindArray(lists, "added")->size(), 0U);
  ASSERT_EQ(json::FindArray(lists, "gone")->size(), 1U);
  const json::Dictionary& gone = json::AsDictionary(json::FindArray(lists, "gone")->front());
  EXPECT_EQ(json::FindInteger(gone, "index"), 2U);
  EXPECT_EQ(*json::FindText(*json::FindDictionary(gone, "rule"), "name"), "Old");
  ASSERT_EQ(json::FindArray(lists, "changed")->size(), 2U);
  const json::Dictionary& changed = json::AsDictionary(json::FindArray(lists, "changed")->front());
  EXPECT_EQ(json::Serialise(*changed.at("changes")), R"([{"key":"ilt","new":"4000","old":"1000"}])");
  EXPECT_EQ(*json::FindText(changed, "old_id"), *json::FindText(changed, "new_id"));

  const json::Dictionary& office = objects[1];
  EXPECT_EQ(*json::FindText(office, "machine"), machine);
  EXPECT_EQ(json::FindBool(office, "matched_at_launch"), true);
  ASSERT_EQ(json::FindArray(office, "new")->size(), 2U);
  EXPECT_NE(result.mOutput.find(R"({"components":[{"name":"memory.mb","value":"2048"}],"id":"HASH:)"),
            std::string::npos)
      << result.mOutput;
  EXPECT_NE(result.mOutput.find(R"({"components":[{"name":"/x","version":"1.5.0.0"}],"id":"HASH:)"),
            std::string::npos)
      << result.mOutput;
  EXPECT_EQ(json::FindInteger(objects[2], "machines"), 1U);
  EXPECT_EQ(json::FindInteger(objects[2], "new"), 2U);
  EXPECT_EQ(json::FindInteger(objects[2], "unreadable"), 0U);
}

TEST_F(DiffVerbTest, ADirectoryAndAListStandForTheirSnapshots) {
  const std::string oldList = WriteList("old.json", "");
  const std::string newList = WriteList("new.json", R"({"name": "Windows", "type": "OS"})");
  for (const char* const name : {"b", "a", "c"}) Write(std::string("fleet/") + name + ".json", kOffice);
  Write("fleet/notes.txt", "not a snapshot");
  Write("fleet/deeper/d.json", kOffice);
  const std::string list = Write("list.txt", Path("fleet/c.json") + "\r\n\n" + Path("fleet/a.json"));
  const auto machines = [&](const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"diff", oldList, newList, "--json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const auto result = Scr(all);
    EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
    std::vector<std::string> names;
    for (const json::Dictionary& object : Objects(result.mOutput)) {
      if (*json::FindText(object, "kind") != "machine") continue;
      names.push_back(
          json::FindText(object, "machine")->substr(json::FindText(object, "machine")->size() - 6));
    }
    return names;
  };
  using Names = std::vector<std::string>;
  EXPECT_EQ(machines({"-m", Path("fleet")}), (Names{"a.json", "b.json", "c.json"}));
  EXPECT_EQ(machines({"--machines-from", list}), (Names{"c.json", "a.json"}));
  EXPECT_EQ(machines({"-m", Path("fleet/b.json"), "--machines-from", list, "--threads", "1"}),
            (Names{"b.json", "c.json", "a.json"}));
}

/// A fleet has one broken file more often than not.
TEST_F(DiffVerbTest, OneBrokenSnapshotDoesNotKeepTheOthersBack) {
  const std::string list = WriteList("list.json", R"({"name": "Windows", "type": "OS"})");
  Write("fleet/1.json", kOffice);
  Write("fleet/2.json", "{");
  Write("fleet/3.json", kOffice);
  const auto text = Scr({"diff", list, list, "-m", Path("fleet")});
  EXPECT_EQ(text.mExitCode, 1);
  EXPECT_NE(text.mOutput.find("3 machines, 0 with a change: 0 new, 2 ongoing, 0 resolved; 1 unreadable\n"),
            std::string::npos)
      << text.mOutput;
  EXPECT_EQ(text.mErrors.rfind("scr: ", 0), 0U) << text.mErrors;
  EXPECT_NE(text.mErrors.find("2.json, line 1, column"), std::string::npos) << text.mErrors;
  EXPECT_EQ(text.mErrors.find('\n'), text.mErrors.size() - 1) << text.mErrors;
  const auto lines = Scr({"diff", list, list, "-m", Path("fleet"), "--json"});
  EXPECT_EQ(lines.mExitCode, 1);
  EXPECT_EQ(lines.mErrors, "");
  EXPECT_EQ(Kinds(Objects(lines.mOutput)),
            (std::vector<std::string>{"lists", "machine", "error", "machine", "summary"}));
}

TEST_F(DiffVerbTest, MalformedExpressionsAreWarnedOfOnce) {
  const std::string list = WriteList("list.json", R"({"name": "(", "type": "Video"})");
  for (const char* const name : {"a", "b", "c"}) Write(std::string("fleet/") + name + ".json", kOffice);
  const auto result = Scr({"diff", list, list, "-m", Path("fleet")});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mErrors.rfind("scr: warning: the expression \"(\"", 0), 0U) << result.mErrors;
  EXPECT_EQ(result.mErrors.find('\n'), result.mErrors.size() - 1) << result.mErrors;
}

TEST_F(DiffVerbTest, RefusesBadInput) {
  const std::string list = WriteList("list.json", "");
  const std::string bad = Write("bad.json", "{\"blocklist_version\": 1,\n \"blocklist\": [}");
  std::filesystem::create_directories(mFiles.Path() / "empty");
  const struct {
    std::vector<std::string> mArguments;
    const char* mText;
  } rows[] = {
      {{}, "OLD"},
      {{list}, "NEW"},
      {{list, Path("missing.json")}, "there is no such file"},
      {{bad, list}, "line 2, column"},
      {{list, bad}, "bad.json"},
      {{list, list, "-m", Path("empty")}, "no file named *.json"},
      {{list, list, "--machines-from", Path("missing.txt")}, "there is no such file"},
      {{list, list, "--machines-from", Write("blank.txt", "\n\n")},
       "blank.txt: there is no path of a snapshot"},
      {{list, list, "--machines-from", "-"}, "--machines-from -: there is no path of a snapshot"},
      {{list, list, "-m", "-", "-m", list}, "stands alone"},
      {{list, list, "-m", "-", "--machines-from", list}, "stands alone"},
      {{list, list, "--threads", "0"}, "--threads"},
      {{list, list, list}, "not expected"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments = {"diff"};
    arguments.insert(arguments.end(), row.mArguments.begin(), row.mArguments.end());
    ExpectError(Scr(arguments), row.mText);
  }
}

/// A text of a blocklist is text: it cannot move the cursor or colour the terminal.
TEST_F(DiffVerbTest, PrintsNoTerminalEscapes) {
  const std::string oldList = WriteList("old.json", "");
  const std::string newList = WriteList("new.json", R"({"name": "A\u001b[31m\u0007", "type": "OS"})");
  const auto result = Scr({"diff", oldList, newList});
  EXPECT_NE(result.mOutput.find("[OS] A?[31m?\n"), std::string::npos) << result.mOutput;
}

}  // namespace
