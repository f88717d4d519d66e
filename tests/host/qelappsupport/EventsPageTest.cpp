// The page on events says what the host reads and writes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "platform/qelappsupport.h"
#include "tests/host/qelcore/diagnostics/RecordPage.h"
#include "tests/support/TestHost.h"

namespace {

using qelappsupport::analytics::SDMEvent;
using qelappsupport::host::RecordedEvents;
using testsupport::RecordPage;
using testsupport::WithTime;
using Kind = SDMEvent::ItemKind;
using Strings = std::vector<std::string>;

class EventsPage : public testing::Test {
 protected:
  void SetUp() override { qelappsupport::host::SetEventSink(nullptr); }

  /// The event that the host reads when the example of the page is its file.
  [[nodiscard]] SDMEvent ReadExample() const {
    mHost.Files().Write("preferences/analytics-events.jsonl", mPage.Examples().at(0));
    const RecordedEvents read = qelappsupport::host::ReadEvents();
    EXPECT_EQ(read.mDamagedLines, 0U);
    EXPECT_EQ(read.mEvents.at(0).mTime, "2025-03-14T09:26:53.589Z");
    return read.mEvents.at(0).mEvent;
  }

  testsupport::TestHost mHost;
  const RecordPage mPage{"events.md"};
};

TEST_F(EventsPage, ListsEveryEvent) {
  std::vector<Strings> listed;
  for (const Strings& row : mPage.TableAfter("## The seven events")) {
    listed.push_back(RecordPage::Quoted(row.at(1)));
  }
  EXPECT_EQ(listed, (std::vector<Strings>{
                        {"OPERATIONAL", "Stability", "info", "system-compatibility-report-issue"},
                        {"OPERATIONAL", "Stability", "continue", "system-compatibility-report-fix"},
                        {"OPERATIONAL", "Stability", "success", "system-compatibility-report"},
                        {"OPERATIONAL", "Stability", "success", "export-system-compatibility-report"},
                        {"APP", "Settings", "enable", "system-compatibility-report-display"},
                        {"APP", "Settings", "disable", "system-compatibility-report-display"},
                        {"OPERATIONAL", "Stability", "apply", "reinitialize-system-compatibility-report"}}));
}

TEST_F(EventsPage, TheExampleIsOneOfTheEventsListed) {
  ASSERT_EQ(mPage.Examples().size(), 1U);
  EXPECT_EQ(ReadExample().GetTexts(),
            RecordPage::Quoted(mPage.TableAfter("## The seven events").at(0).at(1)));
}

TEST_F(EventsPage, TheExampleHasTheItemsOfTheTableInItsOrder) {
  Strings listed;
  for (const Strings& row : mPage.TableAfter("**An issue that is gone**")) {
    listed.push_back(RecordPage::Quoted(row.at(0)).at(0) + ' ' + RecordPage::Quoted(row.at(1)).at(0) +
                     (row.at(2) == "unknown" ? " unknown" : " known"));
  }
  Strings shown;
  const SDMEvent example = ReadExample();
  for (const SDMEvent::Item& item : example.GetItems()) {
    shown.push_back(item.mGroup + ' ' + item.mKey + (item.mKind == Kind::kUnknown ? " unknown" : " known"));
  }
  EXPECT_EQ(shown, listed);
  EXPECT_EQ(shown.size(), 10U);
}

TEST_F(EventsPage, TheHostWritesTheExample) {
  const SDMEvent event = ReadExample();
  mHost.Files().Write("preferences/analytics-events.jsonl", "");
  qelappsupport::analytics::SDMUsageLogger::LogEvent(event);
  EXPECT_EQ(WithTime(mHost.Files().Read("preferences/analytics-events.jsonl"), "then"),
            WithTime(mPage.Examples().at(0), "then"));
}

}  // namespace
