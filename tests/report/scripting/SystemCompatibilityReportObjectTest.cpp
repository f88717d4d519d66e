// The report from a script.
#include "qelsystemcompatibilityreport/SystemCompatibilityReportObject.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using qelscripting::ScriptObjectDefinitionBase;
using qelscripting::ScriptType;
using qelsystemcompatibilityreport::SystemCompatibilityReportObject;
using testing::ElementsAre;
using testing::HasSubstr;

class ScriptingTest : public testing::Test {
 protected:
  ScriptingTest() {
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json",
                        testsupport::BlocklistText(testsupport::CardRules("WARN", 1)));
    mHost.SetComponents(
        {testsupport::Component(qelcore::utility::OSComponentType::kVideo, "Card", "1.2.3.4")});
  }

  /// With separators that mean nothing else in a script.
  [[nodiscard]] std::string Path(const char* name) const {
    return (mHost.Files().Path() / testsupport::PathFrom(name)).generic_string();
  }

  testsupport::TestHost mHost;
};

TEST_F(ScriptingTest, AScriptWritesTheReport) {
  qelscripting::host::RunScriptText(
      "assert(SystemCompatibilityReport.CreateReport('" + Path("r\xc3\xa9port.txt") + "') == true)", "test");
  EXPECT_THAT(mHost.Files().Read("r\xc3\xa9port.txt"),
              HasSubstr("[Video] Card v.1.2.3.4\nISSUES:\n1.\tWARN 1\n"));
  EXPECT_EQ(qelsystemcompatibilityreport::CountWarnIncompatibilities(), 1U);
  EXPECT_EQ(testsupport::LastEvent(mHost), "click:unknown-value ui-not-needed 1 0");
}

TEST_F(ScriptingTest, AnUnwritablePathIsStillTrue) {
  qelscripting::host::RunScriptText(
      "assert(SystemCompatibilityReport.CreateReport('" + Path("missing/report.txt") + "') == true)", "test");
  EXPECT_THAT(mHost.Traced(1), ElementsAre("System Compatibility Report returned an error."));
}

TEST_F(ScriptingTest, AnEmptyPathIsARunWithoutFile) {
  qelscripting::host::RunScriptText("assert(SystemCompatibilityReport.CreateReport(''))", "test");
  EXPECT_EQ(testsupport::LastEvent(mHost), "click:unknown-value ui-displayed 1 0");
}

TEST_F(ScriptingTest, TheReportIsShownUnderTheApplicationsName) {
  qelcore::host::SetApplicationName(u"Some Name");
  testsupport::RecordingUserInterface toolkit;
  std::u16string title;
  toolkit.mWhileDialogIsUp = [&](testsupport::RecordedDialog& dialog) { title = dialog.mTitle; };
  qelscripting::host::RunScriptText("SystemCompatibilityReport.CreateReport('')", "test");
  EXPECT_EQ(title, u"Some Name");
}

TEST_F(ScriptingTest, WhileTheServiceIsOffItIsTrueAndNothingIsWritten) {
  qelsystemcompatibilityreport::EnableReports(false);
  qelscripting::host::RunScriptText(
      "assert(SystemCompatibilityReport.CreateReport('" + Path("report.txt") + "'))", "test");
  EXPECT_FALSE(std::filesystem::exists(Path("report.txt")));
}

TEST(SystemCompatibilityReportObject, NamesItself) {
  EXPECT_EQ(SystemCompatibilityReportObject::GetClassname(), "SystemCompatibilityReport");
  EXPECT_EQ(SystemCompatibilityReportObject::GetDescription(),
            "Provide system compatibility report generation");
  EXPECT_EQ(SystemCompatibilityReportObject().GetScriptClassName(), "SystemCompatibilityReport");
}

TEST(SystemCompatibilityReportObject, DefinesNothingWithoutACurrentDefinition) {
  ASSERT_EQ(ScriptObjectDefinitionBase::sCurrent, nullptr);
  SystemCompatibilityReportObject::DefineObject();
  EXPECT_EQ(ScriptObjectDefinitionBase::sCurrent, nullptr);
}

TEST(SystemCompatibilityReportObject, DefinesOneMethod) {
  ScriptObjectDefinitionBase definition;
  ScriptObjectDefinitionBase::sCurrent = &definition;
  SystemCompatibilityReportObject::DefineObject();
  SystemCompatibilityReportObject::DefineObject();
  ScriptObjectDefinitionBase::sCurrent = nullptr;
  EXPECT_EQ(definition.GetNamespace(), "SystemCompatibilityReport");
  ASSERT_EQ(definition.GetMethods().size(), 1U);
  const auto& method = definition.GetMethods()[0];
  EXPECT_EQ(method.mName, "CreateReport");
  ASSERT_EQ(method.mParameters.size(), 1U);
  EXPECT_EQ(method.mParameters[0].mName, "filePath");
  EXPECT_EQ(method.mParameters[0].mType, ScriptType::kString);
  EXPECT_EQ(method.mResult, ScriptType::kBool);
  EXPECT_EQ(method.mFlags, 0x400001U);
}

}  // namespace
