#include <algorithm>

#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

constexpr const char* kInstalled = "application/SystemCompatibilityReport/blocklist.en_US.json";

#if defined(_WIN32)
constexpr const char* kWhyNothingIsShown = "there are no windows: qelui_native.dll cannot be loaded, error ";
#else
constexpr const char* kWhyNothingIsShown = "display";
#endif

class LaunchVerbTest : public testsupport::ScrTest {};

TEST_F(LaunchVerbTest, SaysWhatIsKnownAndRemembersIt) {
  Write(kInstalled, Blocklist(SystemRule(R"("error_level": "FATAL")")));
  for (int launch = 0; launch < 2; ++launch) {
    const auto result = Scr({"launch"});
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_EQ(result.mOutput, "Known issues of this machine: 1 FATAL, 0 ERROR, 0 WARN, 0 INFO\n");
    EXPECT_EQ(result.mErrors.rfind("scr: the report was not shown: ", 0), 0U) << result.mErrors;
    EXPECT_NE(result.mErrors.find(kWhyNothingIsShown), std::string::npos) << result.mErrors;
  }
  EXPECT_NE(mFiles.Read("preferences/SCRPriorState.json").find("fatal_matches"), std::string::npos);
}

TEST_F(LaunchVerbTest, NothingSeriousAndNothingChangedIsNotMatchedAgain) {
  Write(kInstalled, Blocklist(SystemRule(R"("error_level": "INFO")")));
  EXPECT_EQ(Scr({"launch"}).mOutput, "Known issues of this machine: 0 FATAL, 0 ERROR, 0 WARN, 1 INFO\n");
  const std::string state = mFiles.Read("preferences/SCRPriorState.json");
  EXPECT_EQ(Scr({"launch"}).mOutput, "Known issues of this machine: 0 FATAL, 0 ERROR, 0 WARN, 1 INFO\n");
  EXPECT_EQ(mFiles.Read("preferences/SCRPriorState.json"), state);
  // One issue event and two ends of a run.
  const std::string events = Scr({"events", "--json"}).mOutput;
  EXPECT_EQ(std::count(events.begin(), events.end(), '\n'), 3);
}

TEST_F(LaunchVerbTest, RecordsTheStatisticsAtTheRunAndAtTheEndOfStartUp) {
  Write(kInstalled, Blocklist(SystemRule()));
  EXPECT_EQ(Scr({"launch"}).mExitCode, 0);
  const std::string statistics = Scr({"events", "--statistics", "--json"}).mOutput;
  EXPECT_EQ(std::count(statistics.begin(), statistics.end(), '\n'), 2);
}

TEST_F(LaunchVerbTest, WithoutBlocklistSaysSo) {
  ExpectError(Scr({"launch"}), "no blocklist was found");
  EXPECT_FALSE(Exists("preferences/SCRPriorState.json"));
}

TEST_F(LaunchVerbTest, AnEmptyBlocklistIsAnError) {
  Write(kInstalled, "");
  ExpectError(Scr({"launch"}), "the blocklist file is empty");
}

}  // namespace
