// What a crash report finds about issues.
#include "qelsystemcompatibilityreport/report/analytics/IssuesTrail.h"

#include <gmock/gmock.h>

#include <string>

#include "host/qelcore/CrashTrail.h"
#include "tests/support/TestHost.h"

namespace {

namespace brindle = qelcore::debug::brindle;
using brindle::TrailDictionary;
using brindle::TrailValue;
using qelsystemcompatibilityreport::LeaveIssuesTrail;
using qelsystemcompatibilityreport::SCRPriorState;
using testing::IsEmpty;

TrailValue Text(const std::string& text) {
  return text;
}

/// A trail with the entries that every one has, and these.
TrailDictionary Trail(TrailDictionary entries) {
  entries.emplace(brindle::kCheckpointCategory, Text("scr-issues"));
  entries.emplace(brindle::kCheckpointLevel, Text(std::string(brindle::kCheckpointLevel_Warning)));
  return entries;
}

class IssuesTrailTest : public testing::Test {
 protected:
  /// The trail that the state leaves.
  static TrailDictionary Leave(const SCRPriorState& state) {
    const std::size_t before = qelcore::host::GetTrails().size();
    LeaveIssuesTrail(state);
    const auto trails = qelcore::host::GetTrails();
    EXPECT_EQ(trails.size(), before + 1);
    EXPECT_THAT(trails.back().mList, IsEmpty());
    return trails.back().mDictionary;
  }

  static TrailValue Count() { return qelcore::host::GetTrailMarkers().at("scr_issue_count"); }

  testsupport::TestHost mHost;
};

TEST_F(IssuesTrailTest, WithoutIssuesThereIsOnlyTheCount) {
  SCRPriorState state;
  state.mShowIssuesAtStartup = false;
  LeaveIssuesTrail(state);
  EXPECT_THAT(qelcore::host::GetTrails(), IsEmpty());
  EXPECT_EQ(Count(), Text("0"));
  EXPECT_EQ(qelcore::host::GetTrailMarkers().size(), 1U);
}

TEST_F(IssuesTrailTest, EveryLevel) {
  SCRPriorState state;
  state.mInfoMatches = {"i1", "i2", "i3"};
  state.mWarnMatches = {"w1", "w2"};
  state.mErrorMatches = {"e1"};
  state.mFatalMatches = {"f1", "f2", "f3", "f4"};
  EXPECT_EQ(Leave(state), Trail({{"info_issues", Text("[\ni1,\ni2,\ni3\n]")},
                                 {"warn_issues", Text("[\nw1,\nw2\n]")},
                                 {"error_issues", Text("[\ne1\n]")},
                                 {"fatal_issues", Text("[\nf1,\nf2,\nf3,\nf4\n]")},
                                 {"dialog_skipped", TrailValue(false)}}));
  EXPECT_EQ(Count(), Text("10"));
}

TEST_F(IssuesTrailTest, EachLevelAloneLeavesATrail) {
  const struct {
    std::vector<std::string> SCRPriorState::*mList;
    const char* mKey;
  } rows[] = {{&SCRPriorState::mInfoMatches, "info_issues"},
              {&SCRPriorState::mWarnMatches, "warn_issues"},
              {&SCRPriorState::mErrorMatches, "error_issues"},
              {&SCRPriorState::mFatalMatches, "fatal_issues"}};
  for (const auto& row : rows) {
    SCRPriorState state;
    state.*row.mList = {"id"};
    state.mShowIssuesAtStartup = false;
    EXPECT_EQ(Leave(state), Trail({{row.mKey, Text("[\nid\n]")}, {"dialog_skipped", TrailValue(true)}}));
    EXPECT_EQ(Count(), Text("1"));
  }
}

TEST_F(IssuesTrailTest, TheLengthOfAText) {
  const auto id = [](std::size_t length, char character) { return std::string(length, character); };
  // As long as the identifiers that rules have.
  const std::string a = "HASH:" + id(36, 'a');
  const std::string b = "HASH:" + id(36, 'b');
  const std::string c = "HASH:" + id(36, 'c');
  const std::string d = "HASH:" + id(36, 'd');
  const std::string e = "HASH:" + id(36, 'e');
  const struct {
    const char* mName;
    std::vector<std::string> mIDs;
    std::string mText;
  } rows[] = {
      {"one of 200", {id(200, 'x')}, "[,\n...\n]"},
      {"one of 191, which makes 192", {id(191, 'x')}, "[,\n...\n]"},
      {"one of 190, which makes 191", {id(190, 'x')}, "[\n" + id(190, 'x') + "\n]"},
      {"an empty one", {""}, "[\n\n]"},
      {"two empty ones", {"", ""}, "[\n,\n\n]"},
      {"four of 41 fit, the fifth does not",
       {a, b, c, d, e},
       "[\n" + a + ",\n" + b + ",\n" + c + ",\n" + d + ",\n...\n]"},
      {"just four", {a, b, c, d}, "[\n" + a + ",\n" + b + ",\n" + c + ",\n" + d + "\n]"},
      // "[" and a line feed and 100 make 102; 90 more make 192.
      {"100 and 90", {id(100, 'x'), id(90, 'y')}, "[\n" + id(100, 'x') + ",\n...\n]"},
      {"100 and 89, longer than 192 with what separates them",
       {id(100, 'x'), id(89, 'y')},
       "[\n" + id(100, 'x') + ",\n" + id(89, 'y') + "\n]"},
      {"what comes after one that does not fit is not taken",
       {id(100, 'x'), id(90, 'y'), "z"},
       "[\n" + id(100, 'x') + ",\n...\n]"},
      {"a first that does not fit", {id(200, 'x'), "z"}, "[,\n...\n]"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mName);
    SCRPriorState state;
    state.mErrorMatches = row.mIDs;
    EXPECT_EQ(Leave(state),
              Trail({{"error_issues", Text(row.mText)}, {"dialog_skipped", TrailValue(false)}}));
    // Those that were left out count.
    EXPECT_EQ(Count(), Text(std::to_string(row.mIDs.size())));
  }
}

TEST_F(IssuesTrailTest, TheLengthIsThatOfOneLevel) {
  SCRPriorState state;
  state.mInfoMatches = {std::string(190, 'i')};
  state.mWarnMatches = {std::string(190, 'w')};
  EXPECT_EQ(Leave(state), Trail({{"info_issues", Text("[\n" + std::string(190, 'i') + "\n]")},
                                 {"warn_issues", Text("[\n" + std::string(190, 'w') + "\n]")},
                                 {"dialog_skipped", TrailValue(false)}}));
}

}  // namespace
