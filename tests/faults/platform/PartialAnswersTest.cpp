// A host that answers only a part of what it is asked for, as its contract allows.
#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/ClassRef.h"
#include "platform/qelcore/Config.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/UsageStatistics.h"
#include "platform/qelscripting.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/faults/platform/PlatformFaults.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::ReplacePlatformCall;

// ---- The application's version

bool gHasMajor = false;

std::optional<std::int32_t> FindHalfOfTheVersion(const qelcore::config::ConfigurationParameters*,
                                                 std::string_view name) {
  if ((name == "AppMajorVersion") != gHasMajor) return std::nullopt;
  return 7;
}

/// The directories that a run makes for downloads when only one of the two numbers is known.
std::vector<std::string> VersionedDirectories(bool hasMajor) {
  gHasMajor = hasMajor;
  ReplacePlatformCall("ConfigurationParameters::FindInteger(",
                      reinterpret_cast<void*>(&FindHalfOfTheVersion));
  const testsupport::TestHost host;
  EXPECT_TRUE(qelcore::host::BeginProcess());
  qelsystemcompatibilityreport::RunReportToFile(u"Example", {});
  std::vector<std::string> names;
  for (const auto& entry :
       std::filesystem::directory_iterator(host.Preferences() / "SystemCompatibilityReport")) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

TEST(PartialAnswers, AMajorVersionAlone) {
  EXPECT_THAT(VersionedDirectories(true), ElementsAre("7.-1"));
}

TEST(PartialAnswers, AMinorVersionAlone) {
  EXPECT_THAT(VersionedDirectories(false), ElementsAre("-1.7"));
}

// ---- The blocklist's place

std::string GetNoEntry(const void*, std::string_view, std::string_view) {
  throw std::runtime_error("no settings");
}

qelcore::filesupport::Dir GetNoDirectory() {
  throw std::runtime_error("no directory");
}

TEST(PartialAnswers, ARunGoesOnWhenItsSettingsCannotBeRead) {
  ReplacePlatformCall("DebugDatabase::GetEntry", reinterpret_cast<void*>(&GetNoEntry));
  const testsupport::TestHost host;
  const testsupport::RecordingUserInterface toolkit;
  qelsystemcompatibilityreport::RunReportForHelp(u"Example", nullptr);
  EXPECT_THAT(host.mExceptionContexts, ElementsAre("qelappsupport::IsFeatureEnabled",
                                                   "qelsystemcompatibilityreport::SelectBlocklistFile"));
  EXPECT_EQ(toolkit.mDialogsShown, 1);
}

TEST(PartialAnswers, ARunGoesOnWithoutTheApplicationsDirectory) {
  ReplacePlatformCall("filesupport::AppDir(", reinterpret_cast<void*>(&GetNoDirectory));
  const testsupport::TestHost host;
  const testsupport::RecordingUserInterface toolkit;
  qelsystemcompatibilityreport::RunReportForHelp(u"Example", nullptr);
  EXPECT_THAT(host.mExceptionContexts, Each("qelsystemcompatibilityreport::GetAppBlocklistFileLocation"));
  EXPECT_EQ(toolkit.mDialogsShown, 1);
}

// ---- Statistics without a group

std::vector<std::string> gHappenings;

class LoggerWithoutGroups final : public qelcore::config::UsageLogger {
 public:
  std::shared_ptr<qelcore::config::UsageLoggerGroup> CreateGroup(std::string_view,
                                                                 std::string_view) override {
    return nullptr;
  }
  void LogEvent(std::string_view, std::string_view eventName, std::string_view value,
                std::string_view) override {
    gHappenings.push_back(std::string(eventName) + " " + std::string(value));
  }
};

std::shared_ptr<qelcore::config::UsageLogger> GetLoggerWithoutGroups() {
  return std::make_shared<LoggerWithoutGroups>();
}

TEST(PartialAnswers, OpenedLinksAreLoggedEvenWithoutAGroup) {
  testsupport::TestHost host;
  testsupport::RecordingUserInterface toolkit;
  qelcore::host::SetBrowser([](const std::string&) { return true; });
  host.SetComponents({testsupport::Component(qelcore::utility::OSComponentType::kOS, "Example OS", "1.0")});
  host.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json",
                     R"({"blocklist_version":1,"blocklist":[{"type":"OS","name":"Example OS",
                         "error_level":"WARN","info_message":"Old.","info_url":"https://example.com/"}]})");
  toolkit.mWhileDialogIsUp = [](testsupport::RecordedDialog& dialog) { dialog.Press(u"Fix..."); };
  qelsystemcompatibilityreport::RunReportForHelp(u"Example", nullptr);

  ReplacePlatformCall("UsageLogger::Get(", reinterpret_cast<void*>(&GetLoggerWithoutGroups));
  qelsystemcompatibilityreport::LogToAnalytics();
  EXPECT_THAT(gHappenings, ElementsAre("system_compatibility_report_clicked_url https://example.com/"));
  EXPECT_THAT(host.mExceptionContexts, IsEmpty());
}

// ---- Scripts

qelscripting::ScriptComponentGroups GroupsFor(std::string_view className) {
  return {{"groups of " + std::string(className)}};
}

std::shared_ptr<qelscripting::ScriptObjectDefinition> gDefinition;

void KeepDefinition(std::shared_ptr<qelscripting::ScriptObjectDefinition> definition) {
  gDefinition = std::move(definition);
}

TEST(PartialAnswers, TheScriptingClassCarriesTheGroupsOfItsName) {
  ReplacePlatformCall("ScriptDefinitions::GetScriptComponentGroupDefinitions(",
                      reinterpret_cast<void*>(&GroupsFor));
  ReplacePlatformCall("ScriptDefinitions::AddObjectDefinition(", reinterpret_cast<void*>(&KeepDefinition));
  const testsupport::TestHost host;
  static_cast<void>(qelscripting::host::RunScriptText("return 1", "test"));
  ASSERT_NE(gDefinition, nullptr);
  ASSERT_EQ(gDefinition->GetComponentGroups().size(), 1U);
  EXPECT_EQ(gDefinition->GetComponentGroups()[0].mName, "groups of SystemCompatibilityReport");
}

// ---- Classes

std::vector<std::string> gLabels;

void NoteLabel(const qelcore::Guid&, std::string_view label, std::string_view className,
               const qelcore::classref::ClassFactory::Make&) {
  gLabels.push_back(std::string(label) + " " + std::string(className));
}

TEST(PartialAnswers, TheRegistrarIsLabelledClassID) {
  ReplacePlatformCall("ClassFactory::Register(", reinterpret_cast<void*>(&NoteLabel));
  const testsupport::TestHost host;
  EXPECT_TRUE(qelcore::host::BeginProcess());
  EXPECT_THAT(gLabels,
              ElementsAre("classID qelsystemcompatibilityreport::SystemCompatibilityReportRegistrar"));
}

}  // namespace
