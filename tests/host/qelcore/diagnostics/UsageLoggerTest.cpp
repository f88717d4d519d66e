#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <stdexcept>
#include <thread>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/UsageStatistics.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::config::UsageLogger;
using qelcore::host::ReadUsageEntries;
using qelcore::host::SetDebugEntryForThisRun;
using qelcore::host::SetUsageSink;
using qelcore::host::UsageEntry;
using qelcore::host::UsageFigure;
using Strings = std::vector<std::string>;

class UsageLogging : public testing::Test {
 protected:
  void SetUp() override { SetUsageSink({}); }

  [[nodiscard]] bool HasFile() const {
    return std::filesystem::exists(mHost.Preferences() / "usage-statistics.jsonl");
  }

  /// The entries in the file, without their times.
  [[nodiscard]] static std::vector<UsageEntry> Recorded() {
    std::vector<UsageEntry> entries = ReadUsageEntries().mEntries;
    for (UsageEntry& entry : entries) entry.mTime.clear();
    return entries;
  }

  testsupport::TestHost mHost;
};

TEST_F(UsageLogging, AGroupIsRecordedWhenItsLastReferenceGoes) {
  auto group = UsageLogger::Get()->CreateGroup("the group", "the event");
  group->AddText("z", "1");
  group->Add("a", true);
  group->AddText("m", "");
  group->Add("a", false);
  group->AddText("z", "true");
  auto second = group;
  group.reset();
  EXPECT_FALSE(HasFile());
  second.reset();
  const std::vector<UsageFigure> figures = {{"z", "1"}, {"a", true}, {"m", ""}, {"a", false}, {"z", "true"}};
  EXPECT_EQ(Recorded(),
            (std::vector<UsageEntry>{{.mGroup = "the group", .mEvent = "the event", .mFigures = figures}}));
}

TEST_F(UsageLogging, TheLineNamesTheFiguresInTheirOrder) {
  {
    const auto group = UsageLogger::Get()->CreateGroup("g", "e");
    group->AddText("second", "7");
    group->Add("first", false);
  }
  UsageLogger::Get()->LogEvent("g", "e", "https://example.org", "");
  const std::string content = mHost.Files().Read("preferences/usage-statistics.jsonl");
  EXPECT_TRUE(std::regex_match(
      content,
      std::regex(
          R"(\{"event":"e","figures":\[\{"key":"second","value":"7"\},\{"key":"first","value":false\}\],)"
          R"("group":"g","time":"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z"\}\n)"
          R"(\{"event":"e","group":"g","second_value":"","time":"[^"]+","value":"https://example.org"\}\n)")))
      << content;
}

TEST_F(UsageLogging, AGroupWithoutFiguresIsRecorded) {
  UsageLogger::Get()->CreateGroup("g", "e").reset();
  EXPECT_EQ(
      Recorded(),
      (std::vector<UsageEntry>{{.mGroup = "g", .mEvent = "e", .mFigures = std::vector<UsageFigure>()}}));
}

TEST_F(UsageLogging, AHappeningIsRecordedAtOnce) {
  UsageLogger::Get()->LogEvent("group", "event", "value", "second value");
  EXPECT_EQ(Recorded(),
            (std::vector<UsageEntry>{
                {.mGroup = "group", .mEvent = "event", .mValue = "value", .mSecondValue = "second value"}}));
}

TEST_F(UsageLogging, AwkwardTextsComeBack) {
  const Strings texts = {"", "\"\\\n\r\t", std::string("a\0b", 3), "Gr\xC3\xBC\xC3\x9F",
                         std::string(1'000'000, 'x')};
  for (const std::string& text : texts) {
    UsageLogger::Get()->LogEvent(text, "e", text.substr(0, 10), "");
    const UsageEntry last = ReadUsageEntries().mEntries.back();
    EXPECT_EQ(last.mGroup, text);
    EXPECT_EQ(last.mValue, text.substr(0, 10));
  }
  UsageLogger::Get()->LogEvent("a\xFFz", "e", "", "");
  EXPECT_EQ(ReadUsageEntries().mEntries.back().mGroup, "a\xEF\xBF\xBDz");
  EXPECT_EQ(ReadUsageEntries().mDamagedLines, 0U);
}

TEST_F(UsageLogging, TheLoggerIsAlwaysTheSame) {
  EXPECT_NE(UsageLogger::Get(), nullptr);
  EXPECT_EQ(UsageLogger::Get(), UsageLogger::Get());
}

TEST_F(UsageLogging, OnlyFalseTurnsItOff) {
  for (const char* const value : {"true", "", "False", "no", "0", " false", "falsely"}) {
    SetDebugEntryForThisRun("host.record_statistics", value);
    EXPECT_NE(UsageLogger::Get(), nullptr) << value;
  }
  SetDebugEntryForThisRun("host.record_statistics", "false");
  EXPECT_EQ(UsageLogger::Get(), nullptr);
  SetDebugEntryForThisRun("host.record_statistics", "true");
  EXPECT_NE(UsageLogger::Get(), nullptr);
}

TEST_F(UsageLogging, TheSettingCanBeListed) {
  static_cast<void>(UsageLogger::Get());
  EXPECT_EQ(qelcore::host::GetDebugEntries().at("host.record_statistics"), "true");
}

TEST_F(UsageLogging, TurningItOffHoldsForWhatWasHandedOut) {
  const auto logger = UsageLogger::Get();
  auto group = logger->CreateGroup("g", "e");
  SetDebugEntryForThisRun("host.record_statistics", "false");
  logger->LogEvent("g", "e", "", "");
  group.reset();
  EXPECT_FALSE(HasFile());
}

TEST_F(UsageLogging, AGroupMayGoOnAnotherThread) {
  auto group = UsageLogger::Get()->CreateGroup("g", "e");
  group->AddText("key", "value");
  std::thread([moved = std::move(group)]() mutable { moved.reset(); }).join();
  ASSERT_EQ(Recorded().size(), 1U);
  EXPECT_EQ(Recorded()[0].mFigures, (std::vector<UsageFigure>{{"key", "value"}}));
}

TEST_F(UsageLogging, ThreadsRecordAtATime) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([] {
      for (int count = 0; count < 50; ++count) {
        UsageLogger::Get()->CreateGroup("g", "e")->Add("key", true);
        UsageLogger::Get()->LogEvent("g", "e", "", "");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ReadUsageEntries().mEntries.size(), 400U);
  EXPECT_EQ(ReadUsageEntries().mDamagedLines, 0U);
}

TEST_F(UsageLogging, TheSinkSeesEntriesInsteadOfTheFile) {
  std::vector<UsageEntry> seen;
  SetUsageSink([&](const UsageEntry& entry) { seen.push_back(entry); });
  UsageLogger::Get()->CreateGroup("g", "e")->AddText("key", "value");
  UsageLogger::Get()->LogEvent("g", "h", "a", "b");
  SetDebugEntryForThisRun("host.record_statistics", "false");
  EXPECT_EQ(UsageLogger::Get(), nullptr);
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].mFigures, (std::vector<UsageFigure>{{"key", "value"}}));
  EXPECT_EQ(seen[1].mFigures, std::nullopt);
  EXPECT_EQ(seen[1].mSecondValue, "b");
  EXPECT_FALSE(seen[0].mTime.empty());
  EXPECT_FALSE(HasFile());
}

TEST_F(UsageLogging, ASinkThatThrowsIsLogged) {
  SetUsageSink([](const UsageEntry&) { throw std::runtime_error("from the sink"); });
  EXPECT_NO_THROW(UsageLogger::Get()->CreateGroup("g", "e").reset());
  EXPECT_NO_THROW(UsageLogger::Get()->LogEvent("g", "e", "", ""));
  EXPECT_EQ(mHost.mExceptionTexts, (Strings{"from the sink", "from the sink"}));
  EXPECT_EQ(mHost.mExceptionContexts[0], "qelcore::config::UsageLogger");
}

TEST_F(UsageLogging, ASinkMayRecordItself) {
  Strings seen;
  SetUsageSink([&](const UsageEntry& entry) {
    seen.push_back(entry.mEvent);
    if (seen.size() == 1) UsageLogger::Get()->LogEvent("g", "from the sink", "", "");
  });
  UsageLogger::Get()->CreateGroup("g", "e").reset();
  EXPECT_EQ(seen, (Strings{"e", "from the sink"}));
}

TEST_F(UsageLogging, AnEntryThatCannotBeWrittenIsLoggedOnce) {
  std::filesystem::remove(mHost.Preferences());
  mHost.Files().Write("preferences", "a file where the directory should be");
  for (int count = 0; count < 2; ++count) {
    EXPECT_NO_THROW(UsageLogger::Get()->CreateGroup("g", "e").reset());
    EXPECT_NO_THROW(UsageLogger::Get()->LogEvent("g", "e", "", ""));
  }
  const auto count = std::count(mHost.mExceptionContexts.begin(), mHost.mExceptionContexts.end(),
                                "qelcore::config::UsageLogger");
  EXPECT_EQ(count, 1);
}

TEST_F(UsageLogging, LinesThatAreNoEntryAreCounted) {
  const Strings damaged = {
      R"({})",
      R"({"time":"t","group":"g"})",
      R"({"time":"t","group":"g","event":"e"})",
      R"({"time":"t","group":"g","event":"e","value":"v"})",
      R"({"time":"t","group":"g","event":"e","value":"v","second_value":1})",
      R"({"time":1,"group":"g","event":"e","figures":[]})",
      R"({"time":"t","group":"g","event":"e","figures":{}})",
      R"({"time":"t","group":"g","event":"e","figures":["x"]})",
      R"({"time":"t","group":"g","event":"e","figures":[{"key":"k"}]})",
      R"({"time":"t","group":"g","event":"e","figures":[{"value":"v"}]})",
      R"({"time":"t","group":"g","event":"e","figures":[{"key":"k","value":1}]})",
      R"({"time":"t","group":"g","event":"e","figures":[{"key":"k","value":null}]})",
      R"(plain)",
  };
  std::string text;
  for (const std::string& line : damaged) text += line + '\n';
  text += R"({"time":"t","group":"g","event":"e","figures":[],"unknown key":1})";
  mHost.Files().Write("preferences/usage-statistics.jsonl", text);
  const auto read = ReadUsageEntries();
  EXPECT_EQ(read.mDamagedLines, damaged.size());
  ASSERT_EQ(read.mEntries.size(), 1U);
  EXPECT_EQ(read.mEntries[0].mTime, "t");
}

TEST_F(UsageLogging, WithoutAFileThereAreNoEntries) {
  EXPECT_TRUE(ReadUsageEntries().mEntries.empty());
  EXPECT_EQ(qelcore::host::GetUsageFile(), (mHost.Preferences() / "usage-statistics.jsonl").string());
  EXPECT_TRUE(std::filesystem::is_empty(mHost.Preferences()));
}

}  // namespace
