#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelappsupport.h"
#include "tests/support/TestHost.h"

namespace {

using qelappsupport::analytics::ErrorHandlingPolicy;
using qelappsupport::analytics::Privacy;
using qelappsupport::analytics::SDMEvent;
using qelappsupport::analytics::SDMUsageLogger;
using qelappsupport::host::SetEventSink;
using qelcore::host::SetDebugEntryForThisRun;

TEST(SDMEvent, KeepsTextsAndItemsInTheirOrder) {
  SDMEvent event("workflow", "category", "subtype", "name", ErrorHandlingPolicy::kDefault);
  EXPECT_TRUE(event.GetItems().empty());
  event.AddSDMData("z", "key", "value", Privacy::kDefault);
  event.AddSDMDataNone("a", "none");
  event.AddSDMDataUnknown("a", "unknown");
  event.AddSDMData("z", "key", "", Privacy::kDefault);
  EXPECT_EQ(event.GetTexts(), (std::vector<std::string>{"workflow", "category", "subtype", "name"}));
  EXPECT_EQ(event.GetPolicy(), ErrorHandlingPolicy::kDefault);
  const std::vector<SDMEvent::Item> expected = {
      {"z", "key", SDMEvent::ItemKind::kValue, "value", Privacy::kDefault},
      {"a", "none", SDMEvent::ItemKind::kNone, "", Privacy::kDefault},
      {"a", "unknown", SDMEvent::ItemKind::kUnknown, "", Privacy::kDefault},
      {"z", "key", SDMEvent::ItemKind::kValue, "", Privacy::kDefault},
  };
  EXPECT_EQ(event.GetItems(), expected);
}

TEST(SDMEvent, CopiesAreIndependent) {
  SDMEvent event("a", "b", "c", "d", ErrorHandlingPolicy::kDefault);
  event.AddSDMDataNone("g", "k");
  const SDMEvent copy = event;
  event.AddSDMDataNone("g", "k2");
  EXPECT_EQ(copy.GetItems().size(), 1U);
  EXPECT_EQ(event.GetItems().size(), 2U);
}

SDMEvent Named(const std::string& name) {
  return {"workflow", "category", "subtype", name, ErrorHandlingPolicy::kDefault};
}

class EventLogging : public testing::Test {
 protected:
  [[nodiscard]] static std::vector<std::string> RecordedNames() {
    std::vector<std::string> names;
    for (const auto& recorded : qelappsupport::host::ReadEvents().mEvents) {
      names.push_back(recorded.mEvent.GetTexts()[3]);
    }
    return names;
  }

  testsupport::TestHost mHost;
};

TEST_F(EventLogging, TheSinkSeesEachEventInsteadOfTheFile) {
  std::vector<std::string> names;
  SetEventSink([&](const SDMEvent& event) { names.push_back(event.GetTexts()[3]); });
  SDMUsageLogger::LogEvent(Named("first"));
  SDMUsageLogger::LogEvent(Named("second"));
  EXPECT_EQ(RecordedNames(), std::vector<std::string>());
  SetEventSink(nullptr);
  SDMUsageLogger::LogEvent(Named("third"));
  EXPECT_EQ(names, (std::vector<std::string>{"first", "second"}));
  EXPECT_EQ(RecordedNames(), std::vector<std::string>{"third"});
}

TEST_F(EventLogging, ASinkThatThrowsIsLogged) {
  SetEventSink([](const SDMEvent&) { throw std::runtime_error("from the sink"); });
  EXPECT_NO_THROW(SDMUsageLogger::LogEvent(Named("x")));
  EXPECT_EQ(mHost.mExceptionContexts,
            std::vector<std::string>{"qelappsupport::analytics::SDMUsageLogger::LogEvent"});
  EXPECT_EQ(mHost.mExceptionTexts, std::vector<std::string>{"from the sink"});
}

TEST_F(EventLogging, ASinkMayLogItself) {
  std::vector<std::string> names;
  SetEventSink([&](const SDMEvent& event) {
    names.push_back(event.GetTexts()[3]);
    if (names.size() == 1) SDMUsageLogger::LogEvent(Named("from the sink"));
  });
  SDMUsageLogger::LogEvent(Named("x"));
  EXPECT_EQ(names, (std::vector<std::string>{"x", "from the sink"}));
}

TEST_F(EventLogging, OnlyFalseTurnsRecordingOffAndAtOnce) {
  SetEventSink(nullptr);
  std::vector<std::string> expected;
  for (const char* const value : {"true", "false", "", "False", "no", "false ", "0", "false"}) {
    SetDebugEntryForThisRun("host.record_analytics", value);
    SDMUsageLogger::LogEvent(Named(value));
    if (std::string_view(value) != "false") expected.emplace_back(value);
    EXPECT_EQ(RecordedNames(), expected) << value;
  }
}

TEST_F(EventLogging, ASavedSettingTurnsRecordingOff) {
  SetEventSink(nullptr);
  mHost.Files().Write("preferences/DebugDatabase.json", R"({"host.record_analytics":"false"})");
  SDMUsageLogger::LogEvent(Named("x"));
  EXPECT_FALSE(std::filesystem::exists(qelappsupport::host::GetEventsFile()));
}

TEST_F(EventLogging, TheSettingCanBeListed) {
  SetEventSink(nullptr);
  SDMUsageLogger::LogEvent(Named("x"));
  EXPECT_EQ(qelcore::host::GetDebugEntries().at("host.record_analytics"), "true");
}

TEST_F(EventLogging, ASinkSeesEventsWhateverTheSetting) {
  SetDebugEntryForThisRun("host.record_analytics", "false");
  SDMUsageLogger::LogEvent(Named("x"));
  EXPECT_EQ(mHost.mEvents.size(), 1U);
}

}  // namespace
