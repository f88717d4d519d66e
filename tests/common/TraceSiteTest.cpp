#include "qelsystemcompatibilityreport/common/TraceSite.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "tests/common/RecordingTrace.h"

namespace {

using qelsystemcompatibilityreport::TraceSite;
using testing::ElementsAre;
using testing::IsEmpty;

class TraceSiteTest : public testing::Test {
 protected:
  TraceSiteTest() { mTrace = {}; }

  testsupport::RecordingTrace& mTrace = testsupport::RecordingTrace::Instance();
};

TEST_F(TraceSiteTest, LevelsAndChannel) {
  TraceSite error(TraceSite::kError);
  TraceSite warning(TraceSite::kWarning);
  TraceSite detail(TraceSite::kDetail);
  for (TraceSite* const site : {&error, &warning, &detail}) site->Write([] { return "a text"; });
  EXPECT_THAT(mTrace.mOutput,
              ElementsAre("SystemCompatibilityReport 1 a text", "SystemCompatibilityReport 5 a text",
                          "SystemCompatibilityReport 6 a text"));
  EXPECT_THAT(mTrace.mQuestioned, ElementsAre("SystemCompatibilityReport 1", "SystemCompatibilityReport 5",
                                              "SystemCompatibilityReport 6"));
}

TEST_F(TraceSiteTest, ASiteAsksAgainOnlyWhenTheCounterHasMoved) {
  TraceSite site(TraceSite::kDetail);
  const auto write = [&](const char* text) { site.Write([&] { return text; }); };
  write("1");
  write("2");
  EXPECT_EQ(mTrace.mQuestioned.size(), 1U);
  // The answer is not asked for, so it goes unnoticed.
  mTrace.mIsEnabled = false;
  write("3");
  EXPECT_EQ(mTrace.mQuestioned.size(), 1U);
  ++mTrace.mChangeCount;
  write("4");
  write("5");
  EXPECT_EQ(mTrace.mQuestioned.size(), 2U);
  mTrace.mIsEnabled = true;
  write("6");
  EXPECT_EQ(mTrace.mQuestioned.size(), 2U);
  // Any other value counts, a smaller one too.
  --mTrace.mChangeCount;
  write("7");
  EXPECT_EQ(mTrace.mQuestioned.size(), 3U);
  EXPECT_THAT(mTrace.mOutput, ElementsAre("SystemCompatibilityReport 6 1", "SystemCompatibilityReport 6 2",
                                          "SystemCompatibilityReport 6 3", "SystemCompatibilityReport 6 7"));
}

TEST_F(TraceSiteTest, SitesAskEachForItself) {
  TraceSite one(TraceSite::kDetail);
  TraceSite other(TraceSite::kDetail);
  one.Write([] { return ""; });
  other.Write([] { return ""; });
  EXPECT_EQ(mTrace.mQuestioned.size(), 2U);
}

TEST_F(TraceSiteTest, TheLargestCounter) {
  mTrace.mChangeCount = std::numeric_limits<std::uint32_t>::max();
  TraceSite site(TraceSite::kError);
  site.Write([] { return "1"; });
  site.Write([] { return "2"; });
  EXPECT_EQ(mTrace.mQuestioned.size(), 1U);
  EXPECT_EQ(mTrace.mOutput.size(), 2U);
  mTrace.mIsEnabled = false;
  mTrace.mChangeCount = 1;
  site.Write([] { return "3"; });
  EXPECT_EQ(mTrace.mOutput.size(), 2U);
}

TEST_F(TraceSiteTest, AMessageIsBuiltOnlyWhenItIsWanted) {
  int built = 0;
  TraceSite site(TraceSite::kDetail);
  const auto write = [&] {
    site.Write([&] {
      ++built;
      return std::string("text");
    });
  };
  mTrace.mIsEnabled = false;
  write();
  EXPECT_EQ(built, 0);
  mTrace.mIsEnabled = true;
  ++mTrace.mChangeCount;
  write();
  EXPECT_EQ(built, 1);
  EXPECT_THAT(mTrace.mOutput, ElementsAre("SystemCompatibilityReport 6 text"));
}

TEST_F(TraceSiteTest, WhatTheBuilderThrowsReachesTheCaller) {
  TraceSite site(TraceSite::kDetail);
  EXPECT_THROW(site.Write([]() -> std::string { throw std::runtime_error("no text"); }), std::runtime_error);
  EXPECT_THAT(mTrace.mOutput, IsEmpty());
}

}  // namespace
