// `scr events` and `scr trail`: what reports leave behind.
#include <algorithm>

#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

class RecordsTest : public testsupport::ScrTest {
 protected:
  void MakeReport() {
    Write("application/SystemCompatibilityReport/blocklist.en_US.json",
          Blocklist(SystemRule(R"("error_level": "WARN", "info_message": "Old \u001b[31mred",
                        "info_url": "https://example.com/a")")));
    ASSERT_EQ(Scr({"report"}).mExitCode, 0);
  }
};

TEST_F(RecordsTest, EventsAreShownWithTheirItemsInOrder) {
  MakeReport();
  const auto result = Scr({"events"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mErrors, "");
  std::size_t place = 0;
  for (const char* const text :
       {"  OPERATIONAL Stability info system-compatibility-report-issue\n",
        "    content  status                 \"new\"\n", "    content  type                   \"OS\"\n",
        "    content  name                   \"", testsupport::kSystemName,
        "    content  id                     \"HASH:", "    event    error_type             \"WARN\"\n",
        "    event    error_desc             \"Old ?[31mred\"\n",
        "    event    url                    \"https://example.com/a\"\n",
        "    event    value                  (none)\n", "    content  mimetype               \"",
        "    qel      content_version        \"",
        "  OPERATIONAL Stability success system-compatibility-report\n",
        "    qel      ui_path_to_access      \"click:unknown-value\"\n",
        "    ui       view_type              \"ui-not-needed\"\n",
        "    qel      items_detected_count   \"1\"\n", "    qel      items_resolved_count   \"0\"\n"}) {
    const std::size_t found = result.mOutput.find(text, place);
    ASSERT_NE(found, std::string::npos) << text << "\nis not in its place in\n" << result.mOutput;
    place = found + 1;
  }
}

TEST_F(RecordsTest, AResolvedIssueIsUnknown) {
  MakeReport();
  Write("application/SystemCompatibilityReport/blocklist.en_US.json", Blocklist(""));
  ASSERT_EQ(Scr({"report"}).mExitCode, 0);
  EXPECT_NE(Scr({"events"}).mOutput.find("    content  name                   (unknown)\n"),
            std::string::npos);
}

TEST_F(RecordsTest, JsonLinesAreAsTheyAreRecorded) {
  MakeReport();
  const auto result = Scr({"events", "--json"});
  EXPECT_EQ(result.mOutput, mFiles.Read("preferences/analytics-events.jsonl"));
  EXPECT_EQ(std::count(result.mOutput.begin(), result.mOutput.end(), '\n'), 2);
}

TEST_F(RecordsTest, StatisticsAreShownAfterALaunch) {
  MakeReport();
  ASSERT_EQ(Scr({"launch"}).mExitCode, 0);
  const std::string text = Scr({"events", "--statistics"}).mOutput;
  EXPECT_NE(text.find("    warn_issues_remaining              \"1\"\n"), std::string::npos) << text;
  EXPECT_NE(text.find("    show_report_at_launch              true\n"), std::string::npos) << text;
}

TEST_F(RecordsTest, NothingIsRecordedYet) {
  const auto result = Scr({"events"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput.rfind("Nothing is recorded in ", 0), 0U) << result.mOutput;
  EXPECT_NE(result.mOutput.find("; a report records something.\n"), std::string::npos) << result.mOutput;
  const auto statistics = Scr({"events", "--statistics"});
  EXPECT_NE(statistics.mOutput.find("; \"scr launch\" records the figures of its run.\n"), std::string::npos)
      << statistics.mOutput;
  EXPECT_EQ(Scr({"events", "--json"}).mOutput, "");
  EXPECT_EQ(Scr({"trail"}).mOutput.rfind("No trail was left yet", 0), 0U);
}

TEST_F(RecordsTest, TheUserTurnsTheRecordingOff) {
  ASSERT_EQ(Scr({"settings", "host.record_analytics=false"}).mExitCode, 0);
  MakeReport();
  EXPECT_FALSE(Exists("preferences/analytics-events.jsonl"));
  ASSERT_EQ(Scr({"settings", "--reset", "host.record_analytics"}).mExitCode, 0);
  MakeReport();
  EXPECT_TRUE(Exists("preferences/analytics-events.jsonl"));
}

TEST_F(RecordsTest, DamagedLinesAreLeftOutAndTold) {
  MakeReport();
  const std::string good = mFiles.Read("preferences/analytics-events.jsonl");
  Write("preferences/analytics-events.jsonl", "{\n" + good + "[1]\n");
  const auto result = Scr({"events"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_NE(result.mErrors.find("2 damaged lines were left out"), std::string::npos) << result.mErrors;
  EXPECT_NE(result.mOutput.find("view_type"), std::string::npos);
}

TEST_F(RecordsTest, JsonLinesAreWholeWhateverTheFilesHold) {
  MakeReport();
  const std::string good = mFiles.Read("preferences/analytics-events.jsonl");
  // An older file without a last line feed, and a line that would clear the screen.
  Write("preferences/analytics-events.jsonl.1", good.substr(0, good.size() - 1));
  Write("preferences/analytics-events.jsonl", "\x1b[2J\n" + good);
  const auto result = Scr({"events", "--json"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput, good + good);
  EXPECT_NE(result.mErrors.find("1 damaged lines were left out"), std::string::npos) << result.mErrors;
}

TEST_F(RecordsTest, TheTrailHasTheIssuesAndTheirNumber) {
  MakeReport();
  const auto result = Scr({"trail"});
  EXPECT_EQ(result.mExitCode, 0);
  for (const char* const text : {"    checkpoint_category: scr-issues\n", "    checkpoint_level: warning\n",
                                 "    dialog_skipped: false\n", "    warn_issues:\n      [\n      HASH:",
                                 "\n      ]\n", "  scr_issue_count: 1\n"}) {
    EXPECT_NE(result.mOutput.find(text), std::string::npos) << text << "\nis not in\n" << result.mOutput;
  }
}

TEST_F(RecordsTest, ADamagedTrailIsTold) {
  Write("preferences/crash-trail.json", "{");
  ExpectError(Scr({"trail"}), "crash-trail.json");
}

TEST_F(RecordsTest, FeaturesAreListedWithTheSettings) {
  const std::string text = Scr({"settings"}).mOutput;
  EXPECT_NE(text.find("\nbeta feature qelsystemcompatibilityreport.properties is on\n    System "
                      "Compatibility Report system "
                      "property support. (QELAP-2087)\n"),
            std::string::npos)
      << text;
  EXPECT_NE(Scr({"--set", "qelsystemcompatibilityreport.properties=false", "settings"})
                .mOutput.find("properties is off"),
            std::string::npos);
}

}  // namespace
