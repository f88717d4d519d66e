#include "authoring/diff/MachineDiff.h"

#include "tests/authoring/diff/DiffedLists.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using authoring::IssueChange;
using authoring::MachineDiff;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using testsupport::DiffedLists;
using testsupport::DiffRules;

class MachineDiffTest : public testing::Test {
 protected:
  void SetUp() override { OSComponent::EnableSupportProperties(true); }

  static std::shared_ptr<OSComponent> Component(OSComponentType type, const char* name, const char* version) {
    return std::make_shared<OSComponent>(type, name, qelcore::utility::OSComponentVersion(version));
  }

  static MachineDiff Compare(const DiffedLists& lists) {
    const OSComponentRegistry machine({
        Component(OSComponentType::kOS, "Windows", "10.0.22631.1"),
        Component(OSComponentType::kVideo, "GPU", "31.0.15.3699"),
        Component(OSComponentType::kVideo, "GPU", "31.0.15.4601"),
        std::make_shared<OSComponent>(OSComponentType::kProperty, "memory.mb",
                                      qelcore::utility::OSComponentVersion(), "2048"),
    });
    return CompareOnMachine({lists.mOld.mBlocklist, lists.mNew.mBlocklist}, lists.mDiff, machine);
  }

  testsupport::TestHost mHost;
};

struct Row {
  const char* mWhat;
  const char* mOld;
  const char* mNew;
  std::size_t mNewIssues;
  std::size_t mOngoing;
  std::size_t mResolved;
  std::size_t mKnownByAnotherID;
  bool mHasOtherComponents;
  bool mIsMatchedAtLaunch;
};

TEST_F(MachineDiffTest, WhatBecomesOfTheIssues) {
  const Row rows[] = {
      {"nothing", "", "", 0, 0, 0, 0, false, false},
      {"a rule added that hits", "", R"({"name": "Windows", "type": "OS"})", 1, 0, 0, 0, false, true},
      {"a rule added that misses", "", R"({"name": "Linux", "type": "OS"})", 0, 0, 0, 0, false, true},
      {"a rule gone", R"({"name": "Windows", "type": "OS"})", "", 0, 0, 1, 0, false, true},
      {"the same rule", R"({"name": "Windows", "type": "OS"})", R"({"name": "Windows", "type": "OS"})", 0, 1,
       0, 0, false, false},
      {"a serious one is matched at every launch",
       R"({"name": "Windows", "type": "OS", "error_level": "WARN"})",
       R"({"name": "Windows", "type": "OS", "error_level": "WARN"})", 0, 1, 0, 0, false, true},
      {"two hits of one rule are one issue", "", R"({"name": "GPU", "type": "Video"})", 1, 0, 0, 0, false,
       true},
      {"another message", R"({"name": "GPU", "type": "Video", "info_message": "Crashes."})",
       R"({"name": "GPU", "type": "Video", "info_message": "Crashes now and then."})", 1, 0, 1, 1, false,
       true},
      {"another level", R"({"name": "GPU", "type": "Video", "error_level": "WARN"})",
       R"({"name": "GPU", "type": "Video", "error_level": "FATAL"})", 1, 0, 1, 1, false, true},
      {"a range that no longer holds it", R"({"name": "Windows", "type": "OS", "versions": ["10.0-11.0"]})",
       R"({"name": "Windows", "type": "OS", "versions": ["10.0-10.0.1"]})", 0, 0, 1, 0, false, true},
      {"an operand that no longer holds it, unseen",
       R"({"name": "memory.mb", "type": "Property", "ilt": "4000"})",
       R"({"name": "memory.mb", "type": "Property", "ilt": "2000"})", 0, 0, 1, 0, false, false},
      {"an operand that holds it now, unseen", R"({"name": "memory.mb", "type": "Property", "ilt": "1000"})",
       R"({"name": "memory.mb", "type": "Property", "ilt": "4000"})", 1, 0, 0, 0, false, false},
      {"a mask that leaves one of two components, unseen",
       R"({"name": "GPU", "type": "Video", "versions": ["0.0.0.3699-0.0.0.4601"], "version_mask": "0.0.0.+"})",
       R"({"name": "GPU", "type": "Video", "versions": ["0.0.0.3699-0.0.0.4601"], "version_mask": "0.0.0.4095"})",
       0, 1, 0, 0, true, false},
      {"moved", R"({"name": "Windows", "type": "OS"}, {"name": "GPU", "type": "Video"})",
       R"({"name": "GPU", "type": "Video"}, {"name": "Windows", "type": "OS"})", 0, 2, 0, 0, false, true},
      {"two rules of one identifier are one issue",
       R"({"name": "GPU", "type": "Video", "versions": ["31.0.15.3699"]},
          {"name": "GPU", "type": "Video", "versions": ["31.0.15.3699"], "version_mask": "+"})",
       R"({"name": "GPU", "type": "Video", "versions": ["31.0.15.3699"]},
          {"name": "GPU", "type": "Video", "versions": ["31.0.15.3699"], "version_mask": "+"})",
       0, 1, 0, 0, false, false},
  };
  for (const Row& row : rows) {
    const DiffedLists lists = DiffRules(row.mOld, row.mNew);
    const MachineDiff diff = Compare(lists);
    EXPECT_EQ(diff.mNew.size(), row.mNewIssues) << row.mWhat;
    EXPECT_EQ(diff.mOngoing.size(), row.mOngoing) << row.mWhat;
    EXPECT_EQ(diff.mResolved.size(), row.mResolved) << row.mWhat;
    std::size_t known = 0;
    for (const IssueChange& change : diff.mNew) known += change.mOtherIDs.size();
    EXPECT_EQ(known, row.mKnownByAnotherID) << row.mWhat;
    bool hasOtherComponents = false;
    for (const IssueChange& change : diff.mOngoing) hasOtherComponents |= change.HasOtherComponents();
    EXPECT_EQ(hasOtherComponents, row.mHasOtherComponents) << row.mWhat;
    EXPECT_EQ(diff.mIsMatchedAtLaunch, row.mIsMatchedAtLaunch) << row.mWhat;
    EXPECT_EQ(diff.IsEmpty(), row.mNewIssues + row.mResolved == 0 && !row.mHasOtherComponents) << row.mWhat;
  }
}

TEST_F(MachineDiffTest, AnIssueIsToldWithItsRuleAndComponents) {
  const MachineDiff diff =
      Compare(DiffRules("", R"({"name": "None", "type": "OS"}, {"name": "GPU", "type": "Video",
          "error_level": "ERROR", "info_message": "Crashes.", "info_url": "https://example.com/gpu"})"));
  ASSERT_EQ(diff.mNew.size(), 1U);
  const IssueChange& change = diff.mNew.front();
  EXPECT_EQ(change.mLevel, qelsystemcompatibilityreport::SCRRuleErrorLevel::ERROR);
  EXPECT_EQ(change.mRule, 1U);
  EXPECT_EQ(change.mKind, "Video");
  EXPECT_EQ(change.mMessage, "Crashes.");
  EXPECT_EQ(change.mURL, "https://example.com/gpu");
  EXPECT_EQ(change.mID.substr(0, 5), "HASH:");
  ASSERT_EQ(change.mComponents.size(), 2U);
  EXPECT_EQ(change.mComponents.front().mName, "GPU");
  EXPECT_EQ(change.mComponents.front().mVersion, "31.0.15.3699");
  EXPECT_EQ(change.mComponents.back().mVersion, "31.0.15.4601");
}

TEST_F(MachineDiffTest, TheGravestComesFirst) {
  const MachineDiff diff = Compare(DiffRules("", R"({"name": "GPU", "type": "Video", "error_level": "INFO"},
      {"name": "Windows", "type": "OS", "error_level": "FATAL"},
      {"name": "memory.mb", "type": "Property", "error_level": "WARN"})"));
  ASSERT_EQ(diff.mNew.size(), 3U);
  EXPECT_EQ(diff.mNew[0].mKind, "OS");
  EXPECT_EQ(diff.mNew[1].mKind, "Property");
  EXPECT_EQ(diff.mNew[2].mKind, "Video");
}

/// What a launch asks, after a report that remembered the issues of the old list.
TEST_F(MachineDiffTest, TheNothingChangedTestAgrees) {
  const struct {
    const char* mOld;
    const char* mNew;
  } rows[] = {
      {R"({"name": "A", "type": "OS"})", R"({"name": "A", "type": "OS"})"},
      {R"({"name": "A", "type": "OS"})", R"({"name": "B", "type": "OS"})"},
      {R"({"name": "A", "type": "OS", "version_mask": "1"})",
       R"({"name": "A", "type": "OS", "version_mask": "2"})"},
      {R"({"name": "A", "type": "Property", "eq": "1"})", R"({"name": "A", "type": "Property", "ne": "1"})"},
      {R"({"name": "A", "type": "OS"}, {"name": "B", "type": "OS"})",
       R"({"name": "B", "type": "OS"}, {"name": "A", "type": "OS"})"},
  };
  const OSComponentRegistry machine({Component(OSComponentType::kOS, "Windows", "10")});
  for (const auto& row : rows) {
    const DiffedLists lists = DiffRules(row.mOld, row.mNew);
    qelcore::Guid matchID;
    static_cast<void>(lists.mOld.mBlocklist.MatchToOSComponents(machine, matchID));
    EXPECT_EQ(lists.mDiff.IsSeenAtLaunch(), lists.mNew.mBlocklist.NeedsRematch(machine, matchID)) << row.mNew;
  }
}

/// The first question of a process, with file rules.
TEST_F(MachineDiffTest, TheNothingChangedTestAgreesAboutFileRules) {
  const DiffedLists lists =
      DiffRules(R"({"name": "/x", "type": "File"})", R"({"name": "/x", "type": "File"})");
  const OSComponentRegistry machine({});
  qelcore::Guid matchID;
  static_cast<void>(lists.mOld.mBlocklist.MatchToOSComponents(machine, matchID));
  EXPECT_TRUE(lists.mDiff.IsSeenAtLaunch());
  EXPECT_TRUE(lists.mNew.mBlocklist.NeedsRematch(machine, matchID));
}

}  // namespace
