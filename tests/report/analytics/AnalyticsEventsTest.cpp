// Every event with its texts and items.
#include "qelsystemcompatibilityreport/report/analytics/AnalyticsEvents.h"

#include <gmock/gmock.h>

#include <limits>

#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/TestHost.h"

namespace {

using qelappsupport::analytics::ErrorHandlingPolicy;
using qelappsupport::analytics::Privacy;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::LogDisplaySettingEvent;
using qelsystemcompatibilityreport::LogIssueEvent;
using qelsystemcompatibilityreport::LogIssueResolvedEvent;
using qelsystemcompatibilityreport::LogReinitializeEvent;
using qelsystemcompatibilityreport::LogReportDisplayEvent;
using qelsystemcompatibilityreport::ReportAnalyticsLogger;
using qelsystemcompatibilityreport::ReportStatistics;
using qelsystemcompatibilityreport::ReportViewOutcome;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using testing::ElementsAre;
using testsupport::Component;
using testsupport::IDOf;
using testsupport::Issue;
using testsupport::Lines;
using testsupport::RuleText;

class AnalyticsEventsTest : public testing::Test {
 protected:
  AnalyticsEventsTest() { ReportStatistics::Instance() = {}; }

  /// The one event that was sent, after a look at what all events have in common.
  std::vector<std::string> TakeEvent() {
    EXPECT_EQ(mHost.mEvents.size(), 1U);
    if (mHost.mEvents.empty()) return {};
    const auto event = mHost.mEvents.back();
    mHost.mEvents.clear();
    EXPECT_EQ(event.GetPolicy(), ErrorHandlingPolicy{0});
    for (const auto& item : event.GetItems()) EXPECT_EQ(item.mPrivacy, Privacy{0}) << item.mKey;
    EXPECT_EQ(event.GetTexts().size(), 4U);
    return Lines(event);
  }

  testsupport::TestHost mHost;
};

TEST_F(AnalyticsEventsTest, ANewIssue) {
  const std::string rule = RuleText("Video", "Card", "ERROR", "It crashes.", "https://example.com/");
  LogIssueEvent(Issue(Component(OSComponentType::kVideo, "Card", "24.21.14.1195"), rule), "new");
  // The version is sent twice.
  EXPECT_THAT(TakeEvent(), ElementsAre("OPERATIONAL|Stability|info|system-compatibility-report-issue",
                                       "content/status=new", "content/type=Video", "content/name=Card",
                                       "content/id=" + IDOf(rule), "event/error_type=ERROR",
                                       "event/error_desc=It crashes.", "event/url=https://example.com/",
                                       "event/value is none", "content/mimetype=24.21.14.1195",
                                       "qel/content_version=24.21.14.1195"));
}

TEST_F(AnalyticsEventsTest, AnOngoingIssueOnAProperty) {
  const std::string rule = RuleText("Property", "memory.mb", "INFO", "Too little.");
  LogIssueEvent(Issue(testsupport::Property("memory.mb", "512"), rule), "ongoing");
  EXPECT_THAT(
      TakeEvent(),
      ElementsAre("OPERATIONAL|Stability|info|system-compatibility-report-issue", "content/status=ongoing",
                  "content/type=Property", "content/name=memory.mb", "content/id=" + IDOf(rule),
                  "event/error_type=INFO", "event/error_desc=Too little.", "event/url=", "event/value=512",
                  "content/mimetype is none", "qel/content_version is none"));
}

TEST_F(AnalyticsEventsTest, KindsAndLevels) {
  const struct {
    OSComponentType mKind;
    const char* mType;
    const char* mLevel;
  } rows[] = {{OSComponentType::kOS, "OS", "INFO"},
              {OSComponentType::kVideo, "Video", "WARN"},
              {OSComponentType::kAudio, "Audio", "ERROR"},
              {OSComponentType::kNetwork, "Network", "FATAL"},
              {OSComponentType::kFile, "File", "WARN"}};
  for (const auto& row : rows) {
    const std::string rule = RuleText(row.mType, "x", row.mLevel, "m");
    LogIssueEvent(Issue(Component(row.mKind, "x", ""), rule), "new");
    EXPECT_THAT(
        TakeEvent(),
        ElementsAre("OPERATIONAL|Stability|info|system-compatibility-report-issue", "content/status=new",
                    std::string("content/type=") + row.mType, "content/name=x", "content/id=" + IDOf(rule),
                    std::string("event/error_type=") + row.mLevel, "event/error_desc=m",
                    "event/url=", "event/value is none", "content/mimetype=", "qel/content_version="));
  }
}

TEST_F(AnalyticsEventsTest, TheNameThatIsSentIsTheSafeOne) {
  const auto issue = Issue(Component(OSComponentType::kFile, "/home/jane.doe/driver.so", "1"),
                           RuleText("File", "~/driver.so", "WARN", "m"));
  ASSERT_NE(issue.GetPIISafeName(), issue.GetName());
  LogIssueEvent(issue, "new");
  EXPECT_EQ(TakeEvent().at(3), "content/name=" + issue.GetPIISafeName());
}

TEST_F(AnalyticsEventsTest, AResolvedIssue) {
  const struct {
    SCRRuleErrorLevel mLevel;
    const char* mText;
  } rows[] = {{SCRRuleErrorLevel::INFO, "INFO"},
              {SCRRuleErrorLevel::WARN, "WARN"},
              {SCRRuleErrorLevel::ERROR, "ERROR"},
              {SCRRuleErrorLevel::FATAL, "FATAL"}};
  for (const auto& row : rows) {
    LogIssueResolvedEvent(row.mLevel, "HASH:1");
    EXPECT_THAT(
        TakeEvent(),
        ElementsAre("OPERATIONAL|Stability|info|system-compatibility-report-issue", "content/status=resolved",
                    "content/id=HASH:1", std::string("event/error_type=") + row.mText,
                    "content/type is unknown", "content/name is unknown", "content/mimetype is unknown",
                    "qel/content_version is unknown", "event/error_desc is unknown", "event/url is unknown",
                    "event/value is unknown"));
  }
}

TEST_F(AnalyticsEventsTest, TheEndOfARun) {
  ReportStatistics::Instance().mRemaining = {1, 20, 300, 4000};
  ReportStatistics::Instance().mResolved = {50000, 600000, 7000000, 80000000};
  const struct {
    bool mIsNotAtLaunch;
    int mOutcome;
    const char* mPath;
    const char* mView;
  } rows[] = {
      {false, 0, "qel/ui_path_to_access=via:launch", "ui/view_type=ui-displayed"},
      {false, 1, "qel/ui_path_to_access=via:launch", "ui/view_type=ui-suppressed-by-setting"},
      {false, 2, "qel/ui_path_to_access=via:launch", "ui/view_type=ui-not-needed"},
      {true, 0, "qel/ui_path_to_access=click:unknown-value", "ui/view_type=ui-displayed"},
      {true, 2, "qel/ui_path_to_access=click:unknown-value", "ui/view_type=ui-not-needed"},
      {true, 3, "qel/ui_path_to_access=click:unknown-value", "ui/view_type=ui-not-needed"},
      {false, -1, "qel/ui_path_to_access=via:launch", "ui/view_type=ui-not-needed"},
  };
  for (const auto& row : rows) {
    LogReportDisplayEvent(row.mIsNotAtLaunch, ReportViewOutcome{row.mOutcome});
    // Of the fatal issues those that remain count as resolved, not those that were resolved.
    EXPECT_THAT(TakeEvent(),
                ElementsAre("OPERATIONAL|Stability|success|system-compatibility-report", row.mPath, row.mView,
                            "qel/items_detected_count=4321", "qel/items_resolved_count=7654000"));
  }
}

TEST_F(AnalyticsEventsTest, OneFatalIssueRemainsAndCountsAsResolved) {
  ReportStatistics::Instance().mRemaining = {0, 0, 0, 1};
  LogReportDisplayEvent(false, ReportViewOutcome::kDisplayed);
  EXPECT_THAT(TakeEvent(),
              testing::IsSupersetOf({"qel/items_detected_count=1", "qel/items_resolved_count=1"}));
}

TEST_F(AnalyticsEventsTest, CountsAreUnsignedAndOf64Bits) {
  ReportStatistics::Instance().mRemaining = {std::numeric_limits<std::uint64_t>::max(), 0, 0, 0};
  ReportStatistics::Instance().mResolved = {0, 9223372036854775808U, 0, 0};
  LogReportDisplayEvent(false, ReportViewOutcome::kDisplayed);
  EXPECT_THAT(TakeEvent(), testing::IsSupersetOf({"qel/items_detected_count=18446744073709551615",
                                                  "qel/items_resolved_count=9223372036854775808"}));
}

TEST_F(AnalyticsEventsTest, TheChoiceOfTheUser) {
  LogDisplaySettingEvent(true);
  EXPECT_THAT(TakeEvent(), ElementsAre("APP|Settings|enable|system-compatibility-report-display"));
  LogDisplaySettingEvent(false);
  EXPECT_THAT(TakeEvent(), ElementsAre("APP|Settings|disable|system-compatibility-report-display"));
}

TEST_F(AnalyticsEventsTest, TheDeletedState) {
  LogReinitializeEvent();
  EXPECT_THAT(TakeEvent(),
              ElementsAre("OPERATIONAL|Stability|apply|reinitialize-system-compatibility-report"));
}

TEST_F(AnalyticsEventsTest, TheLoggerSendsOneEventForEachIssue) {
  const std::string rule = RuleText("Audio", "Speakers", "WARN", "m");
  const auto issue = Issue(Component(OSComponentType::kAudio, "Speakers", "1"), rule);
  ReportAnalyticsLogger().LogNewIssue(issue);
  EXPECT_THAT(TakeEvent(), testing::IsSupersetOf({"content/status=new", "content/name=Speakers"}));
  ReportAnalyticsLogger().LogExistingIssue(issue);
  EXPECT_THAT(TakeEvent(), testing::IsSupersetOf({"content/status=ongoing", "content/name=Speakers"}));
  ReportAnalyticsLogger().LogResolvedIssue(SCRRuleErrorLevel::FATAL, "HASH:2");
  EXPECT_THAT(TakeEvent(), testing::IsSupersetOf(
                               {"content/status=resolved", "content/id=HASH:2", "event/error_type=FATAL"}));
}

}  // namespace
