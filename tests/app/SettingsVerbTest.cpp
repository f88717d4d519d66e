#include "tests/app/ScrTest.h"

namespace {

class SettingsVerbTest : public testsupport::ScrTest {};

constexpr const char* kSetting = "qelsystemcompatibilityreport.use_installed_blocklist";

TEST_F(SettingsVerbTest, SettingsAreListedWithTheirMeaning) {
  const auto result = Scr({"settings"});
  EXPECT_EQ(result.mExitCode, 0);
  for (const char* const key : {"qelsystemcompatibilityreport.force_blocklist_match = \"\"",
                                "qelsystemcompatibilityreport.force_blocklist_match_by_name = \"\"",
                                "qelsystemcompatibilityreport.use_installed_blocklist = \"false\"",
                                "qelsystemcompatibilityreport.properties = \"true\""}) {
    EXPECT_NE(result.mOutput.find(key), std::string::npos) << key << " in\n" << result.mOutput;
  }
  EXPECT_EQ(result.mOutput.find("[changed]"), std::string::npos) << result.mOutput;
}

TEST_F(SettingsVerbTest, SettingIsSavedShownAndReset) {
  EXPECT_EQ(Scr({"settings", std::string(kSetting) + "=true"}).mExitCode, 0);
  EXPECT_EQ(Scr({"settings", kSetting}).mOutput.rfind(std::string(kSetting) + " = \"true\"  [changed]\n", 0),
            0U);
  EXPECT_EQ(Scr({"settings", "--reset", kSetting}).mExitCode, 0);
  EXPECT_EQ(Scr({"settings", kSetting}).mOutput.rfind(std::string(kSetting) + " = \"false\"\n", 0), 0U);
}

TEST_F(SettingsVerbTest, SettingThatNoProgramKnowsCanBeTakenOut) {
  Write("preferences/DebugDatabase.json", R"({"stray": "1"})");
  EXPECT_NE(Scr({"settings"}).mOutput.find("stray = \"1\""), std::string::npos);
  EXPECT_EQ(Scr({"settings", "--reset", "stray"}).mExitCode, 0);
  EXPECT_EQ(Scr({"settings"}).mOutput.find("stray"), std::string::npos);
}

TEST_F(SettingsVerbTest, SettingsFileThatIsBrokenIsToldAndKeptAside) {
  Write("preferences/DebugDatabase.json", "{broken");
  const auto listed = Scr({"settings"});
  EXPECT_EQ(listed.mExitCode, 0);
  EXPECT_EQ(listed.mErrors.rfind("scr: warning: ", 0), 0U) << listed.mErrors;
  EXPECT_NE(listed.mErrors.find("DebugDatabase.json"), std::string::npos) << listed.mErrors;
  EXPECT_EQ(Scr({"settings", std::string(kSetting) + "=true"}).mExitCode, 0);
  EXPECT_EQ(mFiles.Read("preferences/DebugDatabase.json.broken"), "{broken");
}

TEST_F(SettingsVerbTest, SettingThatCannotBeSavedIsAnError) {
  Write("preferences/DebugDatabase.json/in-the-way", "");
  ExpectError(Scr({"settings", std::string(kSetting) + "=true"}), "DebugDatabase.json");
}

}  // namespace
