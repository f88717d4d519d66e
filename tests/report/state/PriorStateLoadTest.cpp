// Reading the remembered state.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/report/state/PriorStateFixture.h"

namespace {

using qelcore::Guid;
using qelsystemcompatibilityreport::SCRPriorState;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kJob = "01234567-89ab-cdef-0123-456789abcdef";

class PriorStateLoadTest : public testsupport::PriorStateFixture {};

TEST_F(PriorStateLoadTest, TheDefaults) {
  const SCRPriorState state;
  EXPECT_EQ(state.mLastMatchJob.AsUTF8String(), "00000000-0000-0000-0000-000000000000");
  EXPECT_THAT(state.mInfoMatches, IsEmpty());
  EXPECT_THAT(state.mWarnMatches, IsEmpty());
  EXPECT_THAT(state.mErrorMatches, IsEmpty());
  EXPECT_THAT(state.mFatalMatches, IsEmpty());
  EXPECT_TRUE(state.mShowIssuesAtStartup);
  EXPECT_EQ(state.mDialogDisableReason, 0U);
}

TEST_F(PriorStateLoadTest, NoFile) {
  EXPECT_FALSE(LoadAgain());
  ExpectDefaults();
  ExpectNothingSaid();
}

TEST_F(PriorStateLoadTest, AnEmptyFile) {
  EXPECT_FALSE(Load(""));
  ExpectDefaults();
  ExpectNothingSaid();
}

TEST_F(PriorStateLoadTest, ADirectoryInTheFilesPlace) {
  std::filesystem::create_directory(mHost.Preferences() / "SCRPriorState.json");
  EXPECT_FALSE(LoadAgain());
  ExpectDefaults();
  ExpectNothingSaid();
}

TEST_F(PriorStateLoadTest, AnEmptyObjectIsAState) {
  for (const char* const text : {"{}", " {\n} ", "{\"unknown\":[1,{\"a\":null}],\"INFO_MATCHES\":5}"}) {
    EXPECT_TRUE(Load(text)) << text;
    ExpectDefaults();
    ExpectNothingSaid();
  }
}

TEST_F(PriorStateLoadTest, EveryKey) {
  EXPECT_TRUE(
      Load(R"({"dialog_disable_reason":3,"error_matches":["e1","e2"],"fatal_matches":["f"],)"
           R"("info_matches":["i1","i2","i3"],"last_match_job":"01234567-89ab-cdef-0123-456789abcdef",)"
           R"("show_issues_at_startup":false,"warn_matches":["w","w"]})"));
  EXPECT_EQ(mState.mLastMatchJob.AsUTF8String(), kJob);
  EXPECT_THAT(mState.mInfoMatches, ElementsAre("i1", "i2", "i3"));
  EXPECT_THAT(mState.mWarnMatches, ElementsAre("w", "w"));
  EXPECT_THAT(mState.mErrorMatches, ElementsAre("e1", "e2"));
  EXPECT_THAT(mState.mFatalMatches, ElementsAre("f"));
  EXPECT_FALSE(mState.mShowIssuesAtStartup);
  EXPECT_EQ(mState.mDialogDisableReason, 3U);
  ExpectNothingSaid();
}

TEST_F(PriorStateLoadTest, AMissingKeyLeavesItsDefault) {
  EXPECT_TRUE(Load(R"({"last_match_job":"01234567-89ab-cdef-0123-456789abcdef"})"));
  SCRPriorState expected;
  expected.mLastMatchJob = Guid::FromUTF8String(kJob);
  EXPECT_EQ(mState, expected);
  EXPECT_TRUE(Load(R"({"error_matches":["e"]})"));
  expected = {};
  expected.mErrorMatches = {"e"};
  EXPECT_EQ(mState, expected);
}

TEST_F(PriorStateLoadTest, EmptyListsAndTexts) {
  EXPECT_TRUE(Load(R"({"info_matches":[],"warn_matches":[""],"fatal_matches":["\u0000\u00e9"]})"));
  EXPECT_THAT(mState.mInfoMatches, IsEmpty());
  EXPECT_THAT(mState.mWarnMatches, ElementsAre(""));
  EXPECT_THAT(mState.mFatalMatches, ElementsAre(std::string("\0\xC3\xA9", 3)));
}

TEST_F(PriorStateLoadTest, TheJobsFirst36Characters) {
  const std::string null = "00000000-0000-0000-0000-000000000000";
  const struct {
    const char* mText;
    std::string mJob;
  } rows[] = {
      {"01234567-89ab-cdef-0123-456789abcdef", kJob},
      {"01234567-89AB-CDEF-0123-456789ABCDEF", kJob},
      {"01234567-89ab-cdef-0123-456789abcdef0000", kJob},
      {"01234567-89ab-cdef-0123-456789abcdef and more", kJob},
      {"01234567-89ab-cdef-0123-456789abcde", null},
      {" 01234567-89ab-cdef-0123-456789abcdef", null},
      {"01234567-89ab-cdef-0123-456789abcdeg", null},
      {"0123456789abcdef0123456789abcdef0123", null},
      {"", null},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(Load(R"({"last_match_job":")" + std::string(row.mText) + R"("})")) << row.mText;
    EXPECT_EQ(mState.mLastMatchJob.AsUTF8String(), row.mJob) << row.mText;
    ExpectNothingSaid();
  }
}

TEST_F(PriorStateLoadTest, ShowAtStartup) {
  const struct {
    const char* mValue;
    bool mShow;
  } rows[] = {{"true", true},
              {"false", false},
              {"1", true},
              {"0", false},
              {"-1", true},
              {"4294967296", true},
              {"\"true\"", true},
              {"-0", false},
              {"18446744073709551615", true},
              {"\"false\"", false},
              {"\"\\u0074rue\"", true}};
  for (const auto& row : rows) {
    EXPECT_TRUE(Load(R"({"show_issues_at_startup":)" + std::string(row.mValue) + "}")) << row.mValue;
    EXPECT_EQ(mState.mShowIssuesAtStartup, row.mShow) << row.mValue;
    ExpectNothingSaid();
  }
}

TEST_F(PriorStateLoadTest, TheReasonsLow32Bits) {
  const struct {
    const char* mValue;
    std::uint32_t mReason;
  } rows[] = {{"0", 0},
              {"1", 1},
              {"4294967295", 4294967295},
              {"4294967296", 0},
              {"4294967298", 2},
              {"-1", 4294967295},
              {"-4294967295", 1},
              {"9223372036854775807", 4294967295},
              {"-9223372036854775808", 0},
              {"9223372036854775809", 1},
              {"18446744073709551615", 4294967295}};
  for (const auto& row : rows) {
    EXPECT_TRUE(Load(R"({"dialog_disable_reason":)" + std::string(row.mValue) + "}")) << row.mValue;
    EXPECT_EQ(mState.mDialogDisableReason, row.mReason) << row.mValue;
    ExpectNothingSaid();
  }
}

}  // namespace
