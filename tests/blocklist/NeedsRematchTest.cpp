// Whether a remembered match still holds. Each test is a process of its own, so the first question in each is
// the first of a process.
#include <gtest/gtest.h>

#include <string>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::Guid;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;
using testsupport::Component;

constexpr std::string_view kForce = "qelsystemcompatibilityreport.force_blocklist_match";
constexpr std::string_view kForceByName = "qelsystemcompatibilityreport.force_blocklist_match_by_name";

SCRBlocklist Blocklist(const std::string& rules) {
  return SCRBlocklist(R"({"blocklist_version":1,"blocklist":[)" + rules + "]}");
}

class NeedsRematchTest : public testing::Test {
 protected:
  Guid Match(const SCRBlocklist& blocklist) const {
    Guid matchID;
    static_cast<void>(blocklist.MatchToOSComponents(mRegistry, matchID));
    return matchID;
  }

  /// Whether a match of just now would be repeated.
  bool NeedsRematch(const SCRBlocklist& blocklist) const {
    return blocklist.NeedsRematch(mRegistry, Match(blocklist));
  }

  testsupport::TestHost mHost;
  OSComponentRegistry mRegistry{{Component(OSComponentType::kVideo, "Card", "1")}};
  SCRBlocklist mWithoutFiles = Blocklist(R"({"type":"Video","name":"Card"})");
  SCRBlocklist mWithFiles = Blocklist(R"({"type":"Video","name":"Card"},{"type":"File","name":"/none"})");
};

TEST_F(NeedsRematchTest, AMatchOfTheSameBlocklistAndMachineHolds) {
  EXPECT_FALSE(NeedsRematch(mWithoutFiles));
  EXPECT_FALSE(NeedsRematch(mWithoutFiles));
  EXPECT_FALSE(SCRBlocklist(mWithoutFiles).NeedsRematch(mRegistry, Match(mWithoutFiles)));
}

TEST_F(NeedsRematchTest, NothingWasEverMatched) {
  EXPECT_TRUE(mWithoutFiles.NeedsRematch(mRegistry, Guid()));
  EXPECT_TRUE(SCRBlocklist("").NeedsRematch(OSComponentRegistry({}), Guid()));
}

TEST_F(NeedsRematchTest, TheBlocklistHasChanged) {
  EXPECT_TRUE(Blocklist(R"({"type":"Video","name":"Cards"})").NeedsRematch(mRegistry, Match(mWithoutFiles)));
  EXPECT_TRUE(Blocklist("").NeedsRematch(mRegistry, Match(mWithoutFiles)));
  EXPECT_TRUE(mWithoutFiles.NeedsRematch(mRegistry, Guid::CreateUnique()));
}

TEST_F(NeedsRematchTest, TheMachineHasChanged) {
  const Guid matchID = Match(mWithoutFiles);
  const OSComponentRegistry updated({Component(OSComponentType::kVideo, "Card", "1.0.0.1")});
  EXPECT_TRUE(mWithoutFiles.NeedsRematch(updated, matchID));
  const OSComponentRegistry extended(
      {Component(OSComponentType::kVideo, "Card", "1"), Component(OSComponentType::kAudio, "Speakers", "1")});
  EXPECT_TRUE(mWithoutFiles.NeedsRematch(extended, matchID));
  EXPECT_TRUE(mWithoutFiles.NeedsRematch(OSComponentRegistry({}), matchID));
  EXPECT_FALSE(mWithoutFiles.NeedsRematch(mRegistry, matchID));
}

TEST_F(NeedsRematchTest, FileRulesAreMatchedOncePerProcess) {
  EXPECT_TRUE(NeedsRematch(mWithFiles));
  EXPECT_FALSE(NeedsRematch(mWithFiles));
  EXPECT_FALSE(NeedsRematch(mWithFiles));
  EXPECT_TRUE(mWithFiles.NeedsRematch(mRegistry, Guid::CreateUnique()));
}

TEST_F(NeedsRematchTest, TheFirstQuestionCountsWhateverItsOutcome) {
  EXPECT_FALSE(NeedsRematch(mWithoutFiles));
  EXPECT_FALSE(NeedsRematch(mWithFiles));
}

TEST_F(NeedsRematchTest, AlsoWhenTheContentHadChangedAnyway) {
  EXPECT_TRUE(mWithoutFiles.NeedsRematch(mRegistry, Guid::CreateUnique()));
  EXPECT_FALSE(NeedsRematch(mWithFiles));
}

TEST_F(NeedsRematchTest, AQuestionThatEndsEarlierDoesNotCount) {
  qelcore::host::SetDebugEntryForThisRun(kForce, "true");
  EXPECT_TRUE(NeedsRematch(mWithFiles));
  qelcore::host::SetDebugEntryForThisRun(kForce, "false");
  EXPECT_TRUE(mWithFiles.NeedsRematch(mRegistry, Guid()));
  EXPECT_TRUE(NeedsRematch(mWithFiles));  // the first that gets so far
  EXPECT_FALSE(NeedsRematch(mWithFiles));
}

TEST_F(NeedsRematchTest, OnlyTheRulesThemselvesCountAsFileRules) {
  const SCRBlocklist dependsOnFile =
      Blocklist(R"({"type":"Video","name":"Card","dependencies":[{"type":"File","name":"/none"}]})");
  EXPECT_FALSE(NeedsRematch(dependsOnFile));
}

TEST_F(NeedsRematchTest, AMatchItselfDoesNotCountAsAQuestion) {
  for (int time = 0; time < 3; ++time) static_cast<void>(Match(mWithFiles));
  EXPECT_TRUE(NeedsRematch(mWithFiles));
}

TEST_F(NeedsRematchTest, AForcedMatchIsAlwaysRepeated) {
  qelcore::host::SetDebugEntryForThisRun(kForce, "true");
  EXPECT_TRUE(NeedsRematch(mWithoutFiles));
  EXPECT_TRUE(NeedsRematch(mWithoutFiles));
  for (const char* const value : {"TRUE", "1", "", "false"}) {
    qelcore::host::SetDebugEntryForThisRun(kForce, value);
    EXPECT_FALSE(NeedsRematch(mWithoutFiles)) << value;
  }
}

TEST_F(NeedsRematchTest, OneThatIsForcedByNameIsNot) {
  qelcore::host::SetDebugEntryForThisRun(kForceByName, "true");
  EXPECT_FALSE(NeedsRematch(mWithoutFiles));
}

}  // namespace
