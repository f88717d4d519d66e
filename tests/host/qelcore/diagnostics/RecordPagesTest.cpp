// The pages on usage statistics and on the crash trail say what the host reads and writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "host/qelcore/CrashTrail.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/UsageStatistics.h"
#include "tests/host/qelcore/diagnostics/RecordPage.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::config::UsageLogger;
using qelcore::host::UsageEntries;
using qelcore::host::UsageEntry;
using qelcore::host::UsageFigure;
using testsupport::RecordPage;
using testsupport::WithTime;
using Strings = std::vector<std::string>;

class RecordPages : public testing::Test {
 protected:
  void SetUp() override { qelcore::host::SetUsageSink({}); }

  /// What the host reads when the examples of the page on statistics are its file.
  [[nodiscard]] std::vector<UsageEntry> ReadStatisticsExamples() const {
    std::string content;
    for (const std::string& example : mStatistics.Examples()) content += example;
    mHost.Files().Write("preferences/usage-statistics.jsonl", content);
    const UsageEntries read = qelcore::host::ReadUsageEntries();
    EXPECT_EQ(read.mDamagedLines, 0U) << content;
    return read.mEntries;
  }

  testsupport::TestHost mHost;
  const RecordPage mStatistics{"statistics.md"};
};

std::string TypeOf(const UsageFigure& figure) {
  return std::holds_alternative<bool>(figure.mValue) ? "boolean" : "string";
}

TEST_F(RecordPages, TheExamplesOfStatisticsAreAGroupAndAHappening) {
  const std::vector<UsageEntry> entries = ReadStatisticsExamples();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].mGroup, "system_compatibility_report_stats");
  EXPECT_EQ(entries[0].mEvent, "system_compatibility_report_stats");
  EXPECT_TRUE(entries[0].mFigures.has_value());
  EXPECT_EQ(entries[1].mGroup, "system_compatibility_report_stats");
  EXPECT_EQ(entries[1].mEvent, "system_compatibility_report_clicked_url");
  EXPECT_FALSE(entries[1].mFigures.has_value());
}

TEST_F(RecordPages, TheExampleHasTheFiguresOfTheTableInItsOrder) {
  Strings listed;
  for (const Strings& row : mStatistics.TableAfter("## The figures")) {
    ASSERT_EQ(row.size(), 3U);
    for (const std::string& name : RecordPage::Quoted(row[0])) {
      listed.push_back(name + (row[1].starts_with("boolean") ? " boolean" : " string"));
    }
  }
  Strings shown;
  const std::vector<UsageEntry> entries = ReadStatisticsExamples();
  for (const UsageFigure& figure : entries.at(0).mFigures.value()) {
    shown.push_back(figure.mKey + ' ' + TypeOf(figure));
  }
  EXPECT_EQ(shown, listed);
  EXPECT_EQ(shown.size(), 17U);
}

TEST_F(RecordPages, TheNumbersOfTheExampleAddUp) {
  const std::vector<UsageEntry> entries = ReadStatisticsExamples();
  const std::vector<UsageFigure>& figures = entries.at(0).mFigures.value();
  const auto number = [&](const std::string& key) {
    for (const UsageFigure& figure : figures) {
      if (figure.mKey == key) return std::stoi(std::get<std::string>(figure.mValue));
    }
    ADD_FAILURE() << key;
    return -1;
  };
  for (const std::string kind : {"_issues_remaining", "_issues_resolved"}) {
    int sum = 0;
    for (const char* const level : {"info", "warn", "error", "fatal"}) sum += number(level + kind);
    EXPECT_EQ(number("total" + kind), sum) << kind;
  }
  EXPECT_EQ(number("fatal_issues_resolved"), number("fatal_issues_remaining"));
  EXPECT_EQ(number("number_of_times_report_ignored"), 0);
}

TEST_F(RecordPages, TheHostWritesStatisticsLikeTheExamples) {
  const std::vector<UsageEntry> entries = ReadStatisticsExamples();
  ASSERT_EQ(entries.size(), 2U);
  mHost.Files().Write("preferences/usage-statistics.jsonl", "");
  {
    const auto group = UsageLogger::Get()->CreateGroup(entries[0].mGroup, entries[0].mEvent);
    for (const UsageFigure& figure : entries[0].mFigures.value()) {
      if (const bool* const flag = std::get_if<bool>(&figure.mValue)) {
        group->Add(figure.mKey, *flag);
      } else {
        group->AddText(figure.mKey, std::get<std::string>(figure.mValue));
      }
    }
  }
  UsageLogger::Get()->LogEvent(entries[1].mGroup, entries[1].mEvent, entries[1].mValue,
                               entries[1].mSecondValue);
  std::istringstream written(mHost.Files().Read("preferences/usage-statistics.jsonl"));
  for (const std::string& example : mStatistics.Examples()) {
    std::string line;
    ASSERT_TRUE(std::getline(written, line));
    EXPECT_EQ(WithTime(line, "then"), WithTime(example, "then"));
  }
}

TEST_F(RecordPages, TheExampleOfTheTrailIsReadAndWritten) {
  const RecordPage page("crash-trail.md");
  ASSERT_EQ(page.Examples().size(), 1U);
  mHost.Files().Write("preferences/crash-trail.json", page.Examples()[0]);
  const auto last = qelcore::host::ReadLastTrail();
  ASSERT_TRUE(last.has_value());
  EXPECT_EQ(last->mTime, "2025-03-14T09:26:53.589Z");
  ASSERT_EQ(last->mTrails.size(), 1U);
  ASSERT_EQ(last->mMarkers.size(), 1U);

  // Every key of the example is in the table of what the report leaves.
  Strings listed;
  for (const Strings& row : page.TableAfter("## What the report leaves")) {
    for (const std::string& key : RecordPage::Quoted(row.at(1))) listed.push_back(row[0] + ' ' + key);
  }
  for (const auto& [key, value] : last->mTrails[0].mDictionary) {
    EXPECT_EQ(std::count(listed.begin(), listed.end(), "trail " + key), 1) << key;
  }
  EXPECT_EQ(std::count(listed.begin(), listed.end(), "marker " + last->mMarkers.begin()->first), 1);

  qelcore::debug::brindle::LeaveTrail(last->mTrails[0].mDictionary, last->mTrails[0].mList);
  for (const auto& [name, value] : last->mMarkers) {
    qelcore::debug::brindle::TrailMarker(qelcore::ImmutableString(name), value);
  }
  EXPECT_EQ(WithTime(mHost.Files().Read("preferences/crash-trail.json"), "then"),
            WithTime(page.Examples()[0], "then"));
}

}  // namespace
