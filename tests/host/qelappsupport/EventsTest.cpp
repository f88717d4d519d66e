#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelappsupport.h"

namespace {

using qelappsupport::analytics::ErrorHandlingPolicy;
using qelappsupport::analytics::Privacy;
using qelappsupport::analytics::SDMEvent;
using qelappsupport::analytics::SDMUsageLogger;
using qelappsupport::host::SetEventSink;

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

TEST(SDMUsageLogger, WithoutASinkEventsAreDropped) {
  EXPECT_NO_THROW(SDMUsageLogger::LogEvent(SDMEvent("a", "b", "c", "d", ErrorHandlingPolicy::kDefault)));
}

TEST(SDMUsageLogger, TheSinkSeesEachEvent) {
  std::vector<std::string> names;
  SetEventSink([&](const SDMEvent& event) { names.push_back(event.GetTexts()[3]); });
  SDMUsageLogger::LogEvent(SDMEvent("a", "b", "c", "first", ErrorHandlingPolicy::kDefault));
  SDMUsageLogger::LogEvent(SDMEvent("a", "b", "c", "second", ErrorHandlingPolicy::kDefault));
  SetEventSink(nullptr);
  SDMUsageLogger::LogEvent(SDMEvent("a", "b", "c", "third", ErrorHandlingPolicy::kDefault));
  EXPECT_EQ(names, (std::vector<std::string>{"first", "second"}));
}

TEST(SDMUsageLogger, ASinkThatThrowsIsLogged) {
  std::string logged;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    logged = std::string(context) + ": " + qelcore::host::DescribeException(exception);
  });
  SetEventSink([](const SDMEvent&) { throw std::runtime_error("from the sink"); });
  EXPECT_NO_THROW(SDMUsageLogger::LogEvent(SDMEvent("a", "b", "c", "d", ErrorHandlingPolicy::kDefault)));
  EXPECT_EQ(logged, "qelappsupport::analytics::SDMUsageLogger::LogEvent: from the sink");
}

}  // namespace
