// What a run counts.
#include <gmock/gmock.h>

#include "tests/report/run/ReportRunFixture.h"

namespace {

using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using testing::ElementsAre;
using testsupport::BlocklistText;
using testsupport::CardRules;
using testsupport::Joined;
using testsupport::RuleText;

class ReportRunCountsTest : public testsupport::ReportRunFixture {};

TEST_F(ReportRunCountsTest, NothingBeforeTheFirstRun) {
  EXPECT_THAT(Statistics().mRemaining, ElementsAre(0U, 0U, 0U, 0U));
  EXPECT_THAT(Statistics().mResolved, ElementsAre(0U, 0U, 0U, 0U));
  EXPECT_FALSE(Statistics().mReportPresentedAtLaunch);
  EXPECT_FALSE(Statistics().mReportSkippedAtLaunch);
  EXPECT_TRUE(Statistics().mShowReportAtLaunch);
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
  EXPECT_EQ(Statistics().mNumberOfTimesReportPresented, 0U);
  EXPECT_EQ(Statistics().mNumberOfTimesReportIgnored, 0U);
  EXPECT_EQ(Statistics().mNumberOfTimesReportSaved, 0U);
}

TEST_F(ReportRunCountsTest, TheLevelsAreCountedApart) {
  Run(RunMode::kHelp, BlocklistText(Joined({CardRules("INFO", 4), CardRules("WARN", 3), CardRules("ERROR", 2),
                                            CardRules("FATAL", 1)})));
  EXPECT_THAT(Statistics().mRemaining, ElementsAre(4U, 3U, 2U, 1U));
  EXPECT_THAT(Statistics().mResolved, ElementsAre(0U, 0U, 0U, 0U));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::INFO), 4U);
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 3U);
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::ERROR), 2U);
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::FATAL), 1U);
}

TEST_F(ReportRunCountsTest, ThreeWarningsThenOneThenTwo) {
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 3)));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 3U);
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 0U);
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1)));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 1U);
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 2U);
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 2)));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 2U);
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 2U);
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 2)));
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 2U);
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1)));
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 1U);
  Run(RunMode::kHelp, BlocklistText({}));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 0U);
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 1U);
}

TEST_F(ReportRunCountsTest, ResolvedOfEachLevel) {
  Remember(CardRules("INFO", 9), CardRules("WARN", 7), CardRules("ERROR", 5), CardRules("FATAL", 3));
  Run(RunMode::kFile, BlocklistText(Joined({CardRules("INFO", 1), CardRules("WARN", 1), CardRules("ERROR", 1),
                                            CardRules("FATAL", 1)})));
  EXPECT_THAT(Statistics().mRemaining, ElementsAre(1U, 1U, 1U, 1U));
  EXPECT_THAT(Statistics().mResolved, ElementsAre(8U, 6U, 4U, 2U));
}

TEST_F(ReportRunCountsTest, ADropIsMeasuredFromTheRememberedStateNotFromTheLastRun) {
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 5)));
  Remember({}, CardRules("WARN", 2), {}, {});
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 2)));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 2U);
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 0U);
}

TEST_F(ReportRunCountsTest, OneIssueInAnothersPlaceIsNoDrop) {
  Remember({}, {RuleText("Video", "Card", "WARN", "gone")}, {}, {});
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 1)));
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::WARN), 1U);
  EXPECT_EQ(Statistics().Resolved(SCRRuleErrorLevel::WARN), 0U);
}

TEST_F(ReportRunCountsTest, TwoComponentsOfOneRuleCountOnce) {
  using qelcore::utility::OSComponentRegistry;
  using qelcore::utility::OSComponentType;
  mRegistry = std::make_shared<const OSComponentRegistry>(
      OSComponentRegistry::Components{testsupport::Component(OSComponentType::kVideo, "Card", "1.0"),
                                      testsupport::Component(OSComponentType::kVideo, "Card", "2.0")});
  Run(RunMode::kHelp, BlocklistText(CardRules("FATAL", 1)));
  EXPECT_EQ(mPresentations.at(0).mIssues.size(), 2U);
  EXPECT_EQ(Statistics().Remaining(SCRRuleErrorLevel::FATAL), 1U);
}

TEST_F(ReportRunCountsTest, ARunWithoutBlocklistCountsWhatIsRemembered) {
  Run(RunMode::kHelp, BlocklistText(CardRules("WARN", 3)));
  Remember(CardRules("INFO", 1), {}, CardRules("ERROR", 2), {});
  EXPECT_EQ(Run(RunMode::kHelp, ""), RunResult::kRan);
  EXPECT_THAT(Statistics().mRemaining, ElementsAre(1U, 0U, 2U, 0U));
  EXPECT_THAT(Statistics().mResolved, ElementsAre(0U, 0U, 0U, 0U));
}

TEST_F(ReportRunCountsTest, TheDialogSeesTheNewCounts) {
  Remember({}, CardRules("WARN", 5), {}, {});
  auto request = Request(RunMode::kHelp);
  std::uint64_t seen = 0;
  request.mPresent = [&](const auto&) { seen = Statistics().Remaining(SCRRuleErrorLevel::WARN); };
  static_cast<void>(qelsystemcompatibilityreport::RunReport(request, BlocklistText(CardRules("WARN", 2)),
                                                            mState, mSecondWarning));
  EXPECT_EQ(seen, 2U);
}

TEST_F(ReportRunCountsTest, EveryRunThatGetsPastItsChecksCountsAsRun) {
  const std::string blocklist = BlocklistText({});
  EXPECT_EQ(Run(RunMode::kLaunch, ""), RunResult::kFailed);
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 0U);
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRanAndChanged);
  EXPECT_EQ(Run(RunMode::kLaunch, blocklist), RunResult::kRan);
  EXPECT_EQ(Run(RunMode::kHelp, blocklist), RunResult::kRanAndChanged);
  EXPECT_EQ(Run(RunMode::kHelp, ""), RunResult::kRan);
  EXPECT_EQ(Statistics().mNumberOfTimesReportRan, 4U);
  EXPECT_EQ(Statistics().mNumberOfTimesReportIgnored, 0U);
}

TEST_F(ReportRunCountsTest, FatalCountsAsResolvedByWhatRemains) {
  Statistics().mRemaining = {1, 20, 300, 4000};
  Statistics().mResolved = {50000, 600000, 7000000, 80000000};
  EXPECT_EQ(Statistics().SumOfRemaining(), 4321U);
  EXPECT_EQ(Statistics().SumOfResolved(), 7654000U);
}

}  // namespace
