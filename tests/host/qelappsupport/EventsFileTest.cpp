#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelcore/diagnostics/TimeText.h"
#include "platform/qelappsupport.h"
#include "tests/support/TestHost.h"

namespace {

using qelappsupport::analytics::ErrorHandlingPolicy;
using qelappsupport::analytics::Privacy;
using qelappsupport::analytics::SDMEvent;
using qelappsupport::analytics::SDMUsageLogger;
using qelappsupport::host::ReadEvents;
using Items = std::vector<SDMEvent::Item>;
using Kind = SDMEvent::ItemKind;
using Strings = std::vector<std::string>;

constexpr auto kDefaultPolicy = ErrorHandlingPolicy::kDefault;

class EventsFile : public testing::Test {
 protected:
  void SetUp() override { qelappsupport::host::SetEventSink(nullptr); }

  [[nodiscard]] std::string Content() const {
    return mHost.Files().Read("preferences/analytics-events.jsonl");
  }

  testsupport::TestHost mHost;
};

TEST_F(EventsFile, AnEventComesBackAsItWas) {
  SDMEvent event("workflow", "category", "subtype", "name", ErrorHandlingPolicy{7});
  event.AddSDMData("z", "key", "value", Privacy::kDefault);
  event.AddSDMDataNone("a", "none");
  event.AddSDMDataUnknown("a", "unknown");
  event.AddSDMData("z", "key", "", Privacy{4'294'967'295});
  event.AddSDMData("", "", "true", Privacy{3});
  SDMUsageLogger::LogEvent(event);
  const auto read = ReadEvents();
  EXPECT_EQ(read.mDamagedLines, 0U);
  ASSERT_EQ(read.mEvents.size(), 1U);
  const SDMEvent& back = read.mEvents[0].mEvent;
  EXPECT_EQ(back.GetTexts(), (Strings{"workflow", "category", "subtype", "name"}));
  EXPECT_EQ(back.GetPolicy(), ErrorHandlingPolicy{7});
  EXPECT_EQ(back.GetItems(), (Items{{"z", "key", Kind::kValue, "value", Privacy::kDefault},
                                    {"a", "none", Kind::kNone, "", Privacy::kDefault},
                                    {"a", "unknown", Kind::kUnknown, "", Privacy::kDefault},
                                    {"z", "key", Kind::kValue, "", Privacy{4'294'967'295}},
                                    {"", "", Kind::kValue, "true", Privacy{3}}}));
}

TEST_F(EventsFile, TheLineNamesTheItemsInTheirOrder) {
  SDMEvent event("w", "c", "s", "n", kDefaultPolicy);
  event.AddSDMData("z", "k", "v", Privacy::kDefault);
  event.AddSDMDataNone("b", "k");
  event.AddSDMDataUnknown("a", "k");
  SDMUsageLogger::LogEvent(event);
  const std::regex expected(
      R"(\{"category":"c","items":\[\{"group":"z","key":"k","privacy":0,"value":"v"\},)"
      R"(\{"group":"b","key":"k","none":true,"privacy":0\},\{"group":"a","key":"k","privacy":0,"unknown":true\}\],)"
      R"("name":"n","policy":0,"subtype":"s","time":"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z","workflow":"w"\}\n)");
  EXPECT_TRUE(std::regex_match(Content(), expected)) << Content();
}

TEST_F(EventsFile, TheTimeIsThatOfLogging) {
  const std::string before = qelcore::host::TimeText(std::chrono::system_clock::now());
  SDMUsageLogger::LogEvent(SDMEvent("w", "c", "s", "n", kDefaultPolicy));
  const std::string after = qelcore::host::TimeText(std::chrono::system_clock::now());
  const std::string time = ReadEvents().mEvents.at(0).mTime;
  EXPECT_LE(before, time);
  EXPECT_LE(time, after);
}

TEST_F(EventsFile, EventsStandOldestFirst) {
  for (const char* const name : {"first", "second", "third"}) {
    SDMUsageLogger::LogEvent(SDMEvent("w", "c", "s", name, kDefaultPolicy));
  }
  Strings names;
  for (const auto& recorded : ReadEvents().mEvents) names.push_back(recorded.mEvent.GetTexts()[3]);
  EXPECT_EQ(names, (Strings{"first", "second", "third"}));
}

TEST_F(EventsFile, AwkwardTextsComeBack) {
  struct Case {
    std::string mText;
    std::string mRead;
  };
  const Case cases[] = {
      {"", ""},
      {"\"\\/", "\"\\/"},
      {"a\nb\r\n\t", "a\nb\r\n\t"},
      {std::string("a\0b", 3), std::string("a\0b", 3)},
      {"Gr\xC3\xBC\xC3\x9F \xF0\x9F\x92\xBE", "Gr\xC3\xBC\xC3\x9F \xF0\x9F\x92\xBE"},
      {"a\xFFz", "a\xEF\xBF\xBDz"},
      {"\"}\n{\"forged\":true}", "\"}\n{\"forged\":true}"},
  };
  for (const Case& row : cases) {
    SDMEvent event(row.mText, row.mText, row.mText, row.mText, kDefaultPolicy);
    event.AddSDMData(row.mText, row.mText, row.mText, Privacy::kDefault);
    SDMUsageLogger::LogEvent(event);
    const auto read = ReadEvents();
    EXPECT_EQ(read.mDamagedLines, 0U) << row.mText;
    const SDMEvent& back = read.mEvents.back().mEvent;
    EXPECT_EQ(back.GetTexts(), Strings(4, row.mRead)) << row.mText;
    EXPECT_EQ(back.GetItems(), (Items{{row.mRead, row.mRead, Kind::kValue, row.mRead, Privacy::kDefault}}))
        << row.mText;
  }
}

TEST_F(EventsFile, ALargeEventComesBack) {
  const std::string large(1'048'576, 'x');
  SDMEvent event("w", "c", "s", "n", kDefaultPolicy);
  event.AddSDMData("g", "k", large, Privacy::kDefault);
  SDMUsageLogger::LogEvent(event);
  SDMUsageLogger::LogEvent(SDMEvent("w", "c", "s", "next", kDefaultPolicy));
  const auto read = ReadEvents();
  ASSERT_EQ(read.mEvents.size(), 2U);
  EXPECT_EQ(read.mEvents[0].mEvent.GetItems()[0].mValue, large);
  EXPECT_EQ(read.mEvents[1].mEvent.GetTexts()[3], "next");
}

TEST_F(EventsFile, LinesThatAreNoEventAreCounted) {
  const std::string head =
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","name":"n","policy":0,"items":)";
  const Strings damaged = {
      R"({})",
      R"(plain)",
      R"({"workflow":"w","category":"c","subtype":"s","name":"n","policy":0,"items":[]})",
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","policy":0,"items":[]})",
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","name":1,"policy":0,"items":[]})",
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","name":"n","items":[]})",
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","name":"n","policy":0})",
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","name":"n","policy":-1,"items":[]})",
      R"({"time":"t","workflow":"w","category":"c","subtype":"s","name":"n","policy":4294967296,"items":[]})",
      head + R"({}})",
      head + R"(["x"]})",
      head + R"([{"group":"g","key":"k","privacy":0}]})",
      head + R"([{"group":"g","key":"k","value":"v"}]})",
      head + R"([{"group":"g","key":"k","privacy":0,"value":"v","none":true}]})",
      head + R"([{"group":"g","key":"k","privacy":0,"none":true,"unknown":true}]})",
      head + R"([{"group":"g","key":"k","privacy":0,"none":false}]})",
      head + R"([{"group":"g","key":"k","privacy":0,"none":"true"}]})",
      head + R"([{"group":"g","key":"k","privacy":0,"value":true}]})",
      head + R"([{"key":"k","privacy":0,"value":"v"}]})",
  };
  std::string text;
  for (const std::string& line : damaged) text += line + '\n';
  text += head + R"([{"group":"g","key":"k","privacy":0,"value":"v","more":1}],"more":1})";
  mHost.Files().Write("preferences/analytics-events.jsonl", text);
  const auto read = ReadEvents();
  EXPECT_EQ(read.mDamagedLines, damaged.size());
  ASSERT_EQ(read.mEvents.size(), 1U);
  EXPECT_EQ(read.mEvents[0].mTime, "t");
}

TEST_F(EventsFile, WithoutAFileThereAreNoEvents) {
  EXPECT_TRUE(ReadEvents().mEvents.empty());
  EXPECT_EQ(qelappsupport::host::GetEventsFile(), (mHost.Preferences() / "analytics-events.jsonl").string());
  EXPECT_TRUE(std::filesystem::is_empty(mHost.Preferences()));
}

TEST_F(EventsFile, AnEventThatCannotBeWrittenIsLoggedOnce) {
  std::filesystem::create_directory(mHost.Preferences() / "analytics-events.jsonl");
  for (int count = 0; count < 3; ++count) {
    EXPECT_NO_THROW(SDMUsageLogger::LogEvent(SDMEvent("w", "c", "s", "n", kDefaultPolicy)));
  }
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"qelappsupport::analytics::SDMUsageLogger::LogEvent"});
}

TEST_F(EventsFile, WhoeverHearsOfAFailureMayLogAnEvent) {
  std::filesystem::create_directory(mHost.Preferences() / "analytics-events.jsonl");
  int heard = 0;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr&, std::string_view) {
    ++heard;
    SDMUsageLogger::LogEvent(SDMEvent("w", "c", "s", "n", kDefaultPolicy));
  });
  SDMUsageLogger::LogEvent(SDMEvent("w", "c", "s", "n", kDefaultPolicy));
  EXPECT_EQ(heard, 1);
}

TEST_F(EventsFile, ThreadsLogAtATime) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([number] {
      for (int count = 0; count < 50; ++count) {
        SDMEvent event("w", "c", "s", std::to_string(number), kDefaultPolicy);
        event.AddSDMData("g", "k", std::to_string(count), Privacy::kDefault);
        SDMUsageLogger::LogEvent(event);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const auto read = ReadEvents();
  EXPECT_EQ(read.mDamagedLines, 0U);
  EXPECT_EQ(read.mEvents.size(), 200U);
  // Each thread's events stand in their order.
  std::vector<int> next(4, 0);
  for (const auto& recorded : read.mEvents) {
    const auto number = static_cast<std::size_t>(std::stoi(recorded.mEvent.GetTexts()[3]));
    EXPECT_EQ(recorded.mEvent.GetItems()[0].mValue, std::to_string(next[number]++));
  }
}

}  // namespace
