// What a newcomer types first, and what everybody mistypes.
#include "tests/app/ScrTest.h"

namespace {

class UsageTest : public testsupport::ScrTest {};

TEST_F(UsageTest, HelpNamesEveryVerb) {
  const auto result = Run({"--help"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mErrors, "");
  for (const char* const verb : {"report", "components", "check", "lint", "explain", "state", "settings"}) {
    EXPECT_NE(result.mOutput.find(verb), std::string::npos) << verb << " in\n" << result.mOutput;
  }
}

TEST_F(UsageTest, EveryVerbHasHelpWithAnExample) {
  for (const std::string verb : {"report", "components", "check", "lint", "explain", "state", "settings"}) {
    const auto result = Run({verb, "--help"});
    EXPECT_EQ(result.mExitCode, 0) << verb;
    EXPECT_EQ(result.mErrors, "") << verb;
    EXPECT_NE(result.mOutput.find("  scr " + verb), std::string::npos) << result.mOutput;
  }
}

TEST_F(UsageTest, Version) {
  const auto result = Run({"--version"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput, "scr 1.0\n");
}

TEST_F(UsageTest, WrongUseGetsOneLineThatSaysWhatToDo) {
  const struct {
    std::vector<std::string> mArguments;
    const char* mText;
  } rows[] = {
      {{}, "scr --help"},
      {{"reprot"}, "reprot"},
      {{"report", "--outptu", "x"}, "--outptu"},
      {{"report", "--output"}, "--output"},
      {{"check"}, "BLOCKLIST"},
      {{"explain"}, "BLOCKLIST"},
      {{"state"}, "scr state: a verb is missing; \"scr state --help\""},
      {{"report", "bogus"}, "bogus: not expected here; \"scr report --help\""},
      {{"report", "--output", ""}, "--output: the name of a file is missing"},
      {{"state", "burn"}, "burn"},
      {{"--trace", "9", "components"}, "--trace"},
      {{"--trace", "loud", "components"}, "--trace"},
      {{"--language", "../../etc", "components"}, "not a language code"},
      {{"--language", "", "components"}, "not a language code"},
      {{"--set", "novalue", "components"}, "KEY=VALUE"},
      {{"--set", "=x", "components"}, "KEY=VALUE"},
      {{"settings", "no.such.setting"}, "there is no such setting"},
      {{"settings", "no.such.setting=1"}, "there is no such setting"},
      {{"settings", "--reset", "no.such.setting"}, "there is no such setting"},
  };
  for (const auto& row : rows) ExpectError(Scr(row.mArguments), row.mText);
}

/// As from a script whose variable is empty. The user's own directories must not step in.
TEST_F(UsageTest, AnEmptyDirectoryIsRefused) {
  ExpectError(Run({"--pref-dir", "", "components"}), "--pref-dir: the name of a directory is missing");
  ExpectError(Run({"--app-dir", "", "components"}), "--app-dir: the name of a directory is missing");
}

TEST_F(UsageTest, OptionsMayStandBehindTheVerb) {
  EXPECT_EQ(Run({"state", "show", "--pref-dir", Path("elsewhere")}).mExitCode, 0);
}

TEST_F(UsageTest, VerbsWithWindowsSayWhatIsMissing) {
  for (const char* const verb : {"show", "optimize", "desktop"}) {
    SCOPED_TRACE(verb);
    ExpectError(Scr({verb}), "\"scr report\" needs none");
  }
}

}  // namespace
