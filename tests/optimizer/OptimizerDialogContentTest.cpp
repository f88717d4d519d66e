// What the optimizer dialog says, without a window.
#include "qelsystemcompatibilityreport/optimizer/OptimizerDialogContent.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/optimizer/ScriptedOptimization.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using enum AppOptimizationStatus;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::ScriptedOptimization;

class OptimizerDialogContentTest : public testing::Test {
 protected:
  /// Adds a state of that status.
  OptimizationState& Add(const std::string& name, AppOptimizationStatus status, bool isSelected = false) {
    mStates.push_back({.mOptimization = std::make_shared<ScriptedOptimization>(name, mCalls),
                       .mStatus = status,
                       .mSelected = isSelected});
    return mStates.back();
  }

  /// Uses the catalogues that ship.
  void SetLanguage(const char* language) {
    qelcore::host::SetDirectories({.mPreferences = mHost.Preferences().string(),
                                   .mApplication = std::string(QELSCR_SOURCE_DIR) + "/data",
                                   .mDocuments = {},
                                   .mState = mHost.Preferences().string()});
    qelcore::host::SetApplicationLanguage(language);
  }

  testsupport::TestHost mHost;
  std::vector<std::string> mCalls;
  std::vector<OptimizationState> mStates;
};

TEST_F(OptimizerDialogContentTest, OnlyDoneIsRecommended) {
  EXPECT_EQ(CountOptimizations(mStates), (OptimizationCounts{0, 0}));
  Add("a", OptimizationFailed, true);
  Add("b", OptimizationNotNeeded, true);
  Add("c", OptimizationDone);
  Add("d", OptimizationPending);
  Add("e", OptimizationStop);
  Add("f", OptimizationDone, true);
  EXPECT_EQ(CountOptimizations(mStates), (OptimizationCounts{.mRecommended = 2, .mSelected = 3}));
}

TEST_F(OptimizerDialogContentTest, OptimizingNeedsBoth) {
  const struct {
    OptimizationCounts mCounts;
    bool mCan;
  } rows[] = {{{0, 0}, false}, {{1, 0}, false}, {{0, 1}, false}, {{1, 1}, true}, {{1, 9}, true}};
  for (const auto& row : rows) {
    EXPECT_EQ(CanOptimize(row.mCounts), row.mCan) << row.mCounts.mRecommended << ' ' << row.mCounts.mSelected;
  }
}

TEST_F(OptimizerDialogContentTest, TheCountsAsText) {
  const struct {
    const char* mLanguage;
    OptimizationCounts mCounts;
    std::u16string mText;
  } rows[] = {
      {"en_US", {0, 0}, u"0 of 0 selected"},
      {"en_US", {.mRecommended = 3, .mSelected = 1}, u"1 of 3 selected"},
      {"en_US", {.mRecommended = 0, .mSelected = 12}, u"12 of 0 selected"},
      // Digits alone, however many.
      {"en_US", {.mRecommended = 4294967295, .mSelected = 1000000}, u"1000000 of 4294967295 selected"},
      {"de_DE", {.mRecommended = 3, .mSelected = 1}, u"1 von 3 ausgew\u00e4hlt"},
      // Here the recommended ones come first.
      {"ja_JP", {.mRecommended = 3, .mSelected = 1}, u"3 \u4ef6\u4e2d 1 \u4ef6\u3092\u9078\u629e"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mLanguage);
    SetLanguage(row.mLanguage);
    EXPECT_EQ(CountText(row.mCounts), row.mText);
  }
}

TEST_F(OptimizerDialogContentTest, ARowShowsNameCaptionsAndValues) {
  OptimizationState& state =
      Add("Gr\xc3\xb6\xc3\x9f"
          "e <b>%s</b>",
          OptimizationDone, true);
  state.mCurrent = "3 \xc2\xb5s";
  state.mOptimal = "7";
  Add("b", OptimizationNotNeeded);
  const std::vector<qelui::TreeRow> rows = OptimizationRows(mStates);
  ASSERT_THAT(rows, SizeIs(2));
  EXPECT_THAT(rows[0].mCells, ElementsAre(u"Gr\u00f6\u00dfe <b>%s</b>", u"CURRENT", u"OPTIMAL"));
  EXPECT_EQ(rows[0].mStyle, qelui::FontStyle::kBold);
  EXPECT_TRUE(rows[0].mHasCheckBox);
  EXPECT_TRUE(rows[0].mIsChecked);
  EXPECT_THAT(rows[0].mChildren, ElementsAre(qelui::TreeRow{.mCells = {u"", u"3 \u00b5s", u"7"}}));
  EXPECT_FALSE(rows[1].mIsChecked);
  EXPECT_THAT(rows[1].mChildren, ElementsAre(qelui::TreeRow{.mCells = {u"", u"", u""}}));
}

TEST_F(OptimizerDialogContentTest, WithoutStatesThereAreNoRows) {
  EXPECT_THAT(OptimizationRows(mStates), IsEmpty());
}

TEST_F(OptimizerDialogContentTest, WhatEachPassVisits) {
  Add("a", OptimizationPending, true);
  Add("b", OptimizationDone, true);
  Add("c", OptimizationPending);
  Add("d", OptimizationFailed);
  EXPECT_THAT(PlacesToVisit(mStates, VisitAll), ElementsAre(0U, 1U, 2U, 3U));
  EXPECT_THAT(PlacesToVisit(mStates, VisitSelected), ElementsAre(0U, 1U));
  EXPECT_THAT(PlacesToVisit(mStates, VisitPending), ElementsAre(0U, 2U));
}

TEST_F(OptimizerDialogContentTest, TheFailureIsThatOfAVisitedState) {
  Add("a", OptimizationFailed);
  Add("b", OptimizationDone);
  Add("c", OptimizationFailed);
  Add("d", OptimizationFailed);
  const struct {
    std::vector<std::size_t> mVisited;
    std::u16string mText;
  } rows[] = {
      {{0, 1, 2, 3}, u"a: because"}, {{1, 2, 3}, u"c: because"}, {{3}, u"d: because"}, {{1}, u""}, {{}, u""}};
  for (const auto& row : rows) {
    EXPECT_EQ(FailureText(mStates, row.mVisited), row.mText) << row.mVisited.size() << " visited";
  }
}

}  // namespace
