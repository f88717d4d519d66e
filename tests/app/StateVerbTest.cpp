#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

class StateVerbTest : public testsupport::ScrTest {};

TEST_F(StateVerbTest, StateFromTheFirstReportToForgetting) {
  Write("application/SystemCompatibilityReport/blocklist.en_US.json",
        Blocklist(SystemRule(R"("error_level": "FATAL")")));
  const auto nothing = Scr({"state", "show"});
  EXPECT_EQ(nothing.mExitCode, 0);
  EXPECT_EQ(nothing.mOutput.rfind("Nothing is remembered.", 0), 0U) << nothing.mOutput;

  EXPECT_EQ(Scr({"report"}).mExitCode, 0);
  const auto shown = Scr({"state", "show"});
  EXPECT_NE(shown.mOutput.find("WARN issues: 0\nERROR issues: 0\nFATAL issues: 1\n  HASH:"),
            std::string::npos)
      << shown.mOutput;
  EXPECT_NE(shown.mOutput.find("Report at launch: shown when it matters\n"), std::string::npos)
      << shown.mOutput;

  EXPECT_EQ(Scr({"state", "quiet"}).mExitCode, 0);
  const auto quiet = Scr({"state", "show"});
  EXPECT_NE(quiet.mOutput.find("FATAL issues: 1\n"), std::string::npos) << quiet.mOutput;
  EXPECT_NE(quiet.mOutput.find("Report at launch: not shown\n"), std::string::npos) << quiet.mOutput;

  EXPECT_EQ(Scr({"state", "loud"}).mExitCode, 0);
  EXPECT_EQ(mFiles.Read("preferences/SCRPriorState.json").find("show_issues_at_startup"), std::string::npos);

  EXPECT_EQ(Scr({"state", "forget"}).mExitCode, 0);
  EXPECT_FALSE(Exists("preferences/SCRPriorState.json"));
  EXPECT_FALSE(Exists("preferences/SystemProperties.json"));
  EXPECT_EQ(Scr({"state", "forget"}).mExitCode, 0);
}

TEST_F(StateVerbTest, StateThatIsBrokenIsToldAndReplaced) {
  const struct {
    const char* mContent;
    const char* mText;
  } rows[] = {
      {"{", "not JSON"},
      {"[]", "SCRPriorState.json"},
      {R"({"warn_matches": 1})", "warn_matches"},
      {R"({"show_issues_at_startup": "no"})", "show_issues_at_startup"},
  };
  for (const auto& row : rows) {
    Write("preferences/SCRPriorState.json", row.mContent);
    const auto result = Scr({"state", "show"});
    ExpectError(result, row.mText);
    EXPECT_NE(result.mErrors.find("the next report starts afresh"), std::string::npos) << result.mErrors;
  }
}

TEST_F(StateVerbTest, StateThatCannotBeSavedIsAnError) {
  Write("preferences/SCRPriorState.json/in-the-way", "");
  ExpectError(Scr({"state", "quiet"}), "the state could not be changed");
}

}  // namespace
