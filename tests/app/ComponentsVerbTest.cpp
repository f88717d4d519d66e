#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

class ComponentsVerbTest : public testsupport::ScrTest {};

TEST_F(ComponentsVerbTest, ComponentsAsATable) {
  const auto result = Scr({"components"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mErrors, "");
  EXPECT_FALSE(Exists("preferences"));
  EXPECT_NE(result.mOutput.find("OS        " + std::string(testsupport::kSystemName) + " "),
            std::string::npos)
      << result.mOutput;
  EXPECT_NE(result.mOutput.find("Property  cpu.logical_processors "), std::string::npos) << result.mOutput;
}

TEST_F(ComponentsVerbTest, ComponentsWithoutPropertiesWhenTheFeatureIsOff) {
  const auto result = Scr({"--set", "qelsystemcompatibilityreport.properties=false", "components"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput.find("Property"), std::string::npos) << result.mOutput;
}

/// What this verb writes, `check` reads, and finds the same machine in it.
TEST_F(ComponentsVerbTest, ComponentsAsASnapshot) {
  const auto result = Scr({"components", "--json"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput.rfind("{\"components\": [\n{\"name\":\"", 0), 0U) << result.mOutput;
  const std::string snapshot = Write("here.json", result.mOutput);
  const std::string list = Write("list.json", Blocklist(SystemRule(R"("error_level": "WARN")")));
  const auto live = Scr({"check", list, "--json"});
  auto recorded = Scr({"check", list, "--json", "--machine", snapshot});
  EXPECT_EQ(live.mExitCode, 2);
  const std::size_t name = recorded.mOutput.find(snapshot);
  ASSERT_NE(name, std::string::npos);
  recorded.mOutput.replace(name, snapshot.size(), "this machine");
  const auto issues = [](const std::string& line) { return line.substr(0, line.find("\"match_id\"")); };
  EXPECT_EQ(issues(recorded.mOutput), issues(live.mOutput));
}

}  // namespace
