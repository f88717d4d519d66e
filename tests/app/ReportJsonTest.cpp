// `scr report --json`: the facts of the report, which the text says too.
#include "platform/qelcore/Json.h"
#include "tests/app/ScrTest.h"

namespace {

namespace json = qelcore::json;
using testsupport::Blocklist;
using testsupport::SystemRule;

class ReportJsonTest : public testsupport::ScrTest {
 protected:
  static constexpr const char* kListPath = "application/SystemCompatibilityReport/blocklist.en_US.json";

  json::Dictionary Report(const std::vector<std::string>& arguments = {"report", "--json"}) {
    const auto result = Scr(arguments);
    EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
    EXPECT_EQ(result.mErrors, "");
    EXPECT_EQ(result.mOutput.find('\n'), result.mOutput.size() - 1);
    return json::AsDictionary(json::Parse(result.mOutput));
  }
};

const std::string kKernel = SystemRule(R"("error_level": "WARN", "info_message": "A kernel.")");

TEST_F(ReportJsonTest, HoldsComponentsAndTheirIssues) {
  const std::string list = Write(kListPath, Blocklist(kKernel));
  const json::Dictionary report = Report();
  EXPECT_EQ(json::FindInteger(report, "report_version"), 1U);
  EXPECT_EQ(std::filesystem::path(*json::FindText(report, "blocklist")).generic_string(), list);
  EXPECT_EQ(json::FindText(report, "match_id")->size(), 36U);
  EXPECT_EQ(*json::FindText(report, "second_warning"), "");
  EXPECT_TRUE(json::FindDictionary(report, "settings")->empty());
  EXPECT_TRUE(json::FindArray(report, "resolved")->empty());

  const json::Array& components = *json::FindArray(report, "components");
  ASSERT_GT(components.size(), 2U);
  const json::Dictionary& first = json::AsDictionary(components[0]);
  EXPECT_EQ(*json::FindText(first, "name"), testsupport::kSystemName);
  EXPECT_EQ(*json::FindText(first, "type"), "OS");
  EXPECT_EQ(json::Serialise(json::Array(*json::FindArray(first, "issues"))), "[0]");
  EXPECT_EQ(json::FindText(json::AsDictionary(components.back()), "version"), nullptr);
  EXPECT_NE(json::FindText(json::AsDictionary(components.back()), "value"), nullptr);

  const json::Array& issues = *json::FindArray(report, "issues");
  ASSERT_EQ(issues.size(), 1U);
  const json::Dictionary& issue = json::AsDictionary(issues[0]);
  EXPECT_EQ(*json::FindText(issue, "level"), "WARN");
  EXPECT_EQ(*json::FindText(issue, "info_message"), "A kernel.");
  EXPECT_EQ(*json::FindText(issue, "info_url"), "");
  EXPECT_EQ(*json::FindText(issue, "name"), testsupport::kSystemName);
  EXPECT_EQ(json::FindText(issue, "id")->rfind("HASH:", 0), 0U);
}

/// The run remembers what it found, as the text's does.
TEST_F(ReportJsonTest, TellsNewFromOngoingAndResolved) {
  Write(kListPath, Blocklist(kKernel));
  const auto stateOf = [](const json::Dictionary& report) {
    return *json::FindText(json::AsDictionary(json::FindArray(report, "issues")->at(0)), "state");
  };
  const json::Dictionary first = Report();
  EXPECT_EQ(stateOf(first), "new");
  EXPECT_EQ(stateOf(Report()), "ongoing");
  Write(kListPath, Blocklist(SystemRule(R"("error_level": "FATAL")")));
  const json::Dictionary third = Report();
  EXPECT_EQ(stateOf(third), "new");
  const std::string id = *json::FindText(json::AsDictionary(json::FindArray(first, "issues")->at(0)), "id");
  EXPECT_EQ(json::Serialise(json::Array(*json::FindArray(third, "resolved"))),
            R"([{"id":")" + id + R"(","level":"WARN"}])");
  EXPECT_TRUE(json::FindArray(Report(), "resolved")->empty());
}

TEST_F(ReportJsonTest, WithoutABlocklistListsTheComponents) {
  const json::Dictionary report = Report();
  EXPECT_NE(std::any_cast<std::nullptr_t>(report.find("blocklist")->second.get()), nullptr);
  EXPECT_FALSE(json::Has(report, "match_id"));
  EXPECT_GT(json::FindArray(report, "components")->size(), 2U);
  EXPECT_TRUE(json::FindArray(report, "issues")->empty());
}

TEST_F(ReportJsonTest, FileIssuesBelongToNoComponent) {
  const std::string file = Write("old.so", "x");
  Write(kListPath, Blocklist(R"({"name": ")" + file + R"(", "type": "File", "error_level": "INFO"})"));
  const json::Dictionary report = Report();
  const json::Array& issues = *json::FindArray(report, "issues");
  ASSERT_EQ(issues.size(), 1U);
  EXPECT_EQ(*json::FindText(json::AsDictionary(issues[0]), "name"), file);
  for (const std::any& component : *json::FindArray(report, "components")) {
    EXPECT_TRUE(json::FindArray(json::AsDictionary(component), "issues")->empty());
  }
}

TEST_F(ReportJsonTest, IsASnapshotToo) {
  const std::string list = Write("list.json", Blocklist(kKernel));
  const auto result =
      Scr({"check", list, "--machine", Write("report.json", Scr({"report", "--json"}).mOutput)});
  EXPECT_EQ(result.mExitCode, 2) << result.mErrors;
  EXPECT_NE(result.mOutput.find("report.json: 1 issue\n"), std::string::npos) << result.mOutput;
}

TEST_F(ReportJsonTest, GoesIntoAFile) {
  Write("report.json", std::string(100'000, 'x'));
  const auto result = Scr({"report", "--json", "--output", "report.json"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput + result.mErrors, "");
  EXPECT_TRUE(json::Parse(mFiles.Read("report.json")).has_value());
  ExpectError(Scr({"report", "--json", "--output", "missing/report.json"}), "report.json");
  ExpectError(Scr({"report", "--json", "--output", ""}), "--output: the name of a file is missing");
}

TEST_F(ReportJsonTest, ShowsChangedSettings) {
  const json::Dictionary report =
      Report({"--set", "qelsystemcompatibilityreport.use_installed_blocklist=true", "report", "--json"});
  EXPECT_EQ(json::Serialise(json::Dictionary(*json::FindDictionary(report, "settings"))),
            R"({"qelsystemcompatibilityreport.use_installed_blocklist":"true"})");
}

/// A state that the report does not use makes every issue new.
TEST_F(ReportJsonTest, ADamagedStateIsNoState) {
  Write(kListPath, Blocklist(kKernel));
  static_cast<void>(Report());
  for (const char* const state : {"{", "[]", R"({"warn_matches": 5})"}) {
    Write("preferences/SCRPriorState.json", state);
    const auto result = Scr({"report", "--json"});
    EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
    EXPECT_NE(result.mOutput.find("\"state\":\"new\""), std::string::npos) << state;
  }
}

}  // namespace
