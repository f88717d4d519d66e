// Nothing that tells who somebody is, or which machine it is, is in anything that is written or shown: every
// byte of every file and of every dialog is looked at.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/host/qelcore/linux/components/MachineTree.h"
#include "tests/host/qelcore/windows/components/RecordedMachine.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponent;
using Components = qelcore::utility::OSComponentRegistry::Components;

/// What the recorded machines hold in their serial numbers, asset tags, identifiers, addresses and names, in
/// lower case.
constexpr std::string_view kPersonal[] = {"pf3serial77",    "asset-4711", "4c4c4544-0042", "02:00:5e:10:aa",
                                          "02-00-5e-10-aa", "02005e10aa", "192.0.2.17",    "anna.beispiel",
                                          "annas",          "anna",       "beispiel",      "0000:00:"};

/// Every component is hit, at every level, so that all that is known of it is in issues and events.
constexpr const char* kBlocklist = R"({"blocklist_version":1,"blocklist":[
  {"type":"OS","name":".*","error_level":"WARN","info_message":"o"},
  {"type":"Video","name":".*","error_level":"FATAL","info_message":"v","info_url":"https://example.com/"},
  {"type":"Audio","name":".*","error_level":"ERROR","info_message":"a"},
  {"type":"Network","name":".*","error_level":"WARN","info_message":"n"},
  {"type":"Property","name":"system.model","error_level":"INFO","info_message":"p"},
  {"type":"File","name":"${HOME}","error_level":"INFO","info_message":"f"}]})";

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
  return text;
}

/// What was written to one place.
struct Output {
  std::string mPlace;
  std::string mText;
};

/// A host that runs all that leaves something behind, and what it left.
class World {
 public:
  World() {
    std::filesystem::create_directories(Preferences());
    qelcore::host::SetDirectories({.mPreferences = Preferences().string(),
                                   .mApplication = mHost.Application().string(),
                                   .mDocuments = (Home() / "Documents").string(),
                                   .mState = (mHost.Files().Path() / "state").string()});
    qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
    OSComponent::EnableSupportProperties(true);
    qelcore::host::SetUsageSink({});
    qelcore::host::SetTraceSink({});
    qelappsupport::host::SetEventSink({});
    qelcore::host::SetBrowser([](const std::string&) { return true; });
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", kBlocklist);
    mToolkit.mWhileDialogIsUp = [this](testsupport::RecordedDialog& dialog) {
      std::u16string text = dialog.mTitle;
      for (const std::u16string& line : dialog.VisibleTexts()) text += u"\n" + line;
      mShown += qelcore::string::UTF16to8(text) + "\n";
    };
  }
  ~World() { qelcore::host::SetBrowser({}); }

  /// The home of somebody, which the environment names.
  [[nodiscard]] std::filesystem::path Home() const { return mHost.Files().Path() / "home/anna.beispiel"; }
  [[nodiscard]] std::filesystem::path Preferences() const { return Home() / ".config/scr"; }

  void Live(const Components& components) {
    mHost.SetComponents(components);
    ASSERT_TRUE(qelcore::host::BeginProcess());
    RunReportForStartup(u"Example", testsupport::SomeWindow());
    RunReportForHelp(u"Example", testsupport::SomeWindow());
    RunReportToFile(u"Example", qelcore::string::UTF8to16((mHost.Files().Path() / "report.txt").string()));
    static_cast<void>(GetDownloadBlocklistURL("https://example.com"));
    qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
    qelcore::host::EndProcess();
    for (const auto& component : components)
      mSnapshot += qelcore::json::Serialise(component->ToJSON()) + "\n";
    EXPECT_EQ(mHost.mExceptionTexts, std::vector<std::string>());
  }

  /// What can leave the machine.
  [[nodiscard]] std::vector<Output> WhatIsHandedOn() const {
    std::vector<Output> outputs{{"the snapshot", mSnapshot}};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Preferences())) {
      if (entry.is_regular_file())
        outputs.push_back({entry.path().filename().string(), testsupport::ReadWholeFile(entry.path())});
    }
    return outputs;
  }

  /// What the user sees, and the log, which name the files of the user by their paths.
  [[nodiscard]] std::vector<Output> WhatStaysWithTheUser() const {
    return {{"the report", mHost.Files().Read("report.txt")},
            {"the dialogs", mShown},
            {"the trace log", mHost.Files().Read("state/trace.log")}};
  }

 private:
  testsupport::TestHost mHost;
  testsupport::EnvironmentVariable mHome{"HOME", Home().string()};
  testsupport::RecordingUserInterface mToolkit;
  std::string mShown;
  std::string mSnapshot;
};

void ExpectNothingPersonal(const Output& output) {
  const std::string text = LowerCase(output.mText);
  EXPECT_FALSE(text.empty() && !output.mPlace.ends_with(".lock")) << output.mPlace;
  for (const std::string_view personal : kPersonal) {
    const std::size_t place = text.find(personal);
    EXPECT_EQ(place, std::string::npos)
        << personal << " is in " << output.mPlace << ": " << text.substr(place < 80 ? 0 : place - 80, 200);
  }
}

/// The output without the user's own home. A file that a rule found keeps its path for the whole process, so
/// the homes of earlier worlds count as well.
Output WithoutOwnPaths(Output output) {
  constexpr std::string_view kHome = "/home/anna.beispiel";
  for (std::size_t place = 0; (place = output.mText.find(kHome, place)) != std::string::npos;)
    output.mText.replace(place, kHome.size(), "~");
  return output;
}

void ExpectNothingPersonal(const Components& components) {
  ASSERT_FALSE(components.empty());
  World world;
  world.Live(components);
  std::vector<std::string> places;
  for (const Output& output : world.WhatIsHandedOn()) {
    places.push_back(output.mPlace);
    ExpectNothingPersonal(output);
  }
  for (const Output& output : world.WhatStaysWithTheUser()) ExpectNothingPersonal(WithoutOwnPaths(output));
  for (const char* const file :
       {"SCRPriorState.json", "analytics-events.jsonl", "usage-statistics.jsonl", "crash-trail.json"})
    EXPECT_NE(std::find(places.begin(), places.end(), file), places.end()) << file;
}

class PrivacyOfLinuxMachines : public testing::TestWithParam<std::string> {};

TEST_P(PrivacyOfLinuxMachines, NothingPersonalIsWritten) {
  OSComponent::EnableSupportProperties(true);
  ExpectNothingPersonal(testsupport::MachineTree::Recorded(GetParam()).Read());
}

INSTANTIATE_TEST_SUITE_P(Recorded, PrivacyOfLinuxMachines,
                         testing::ValuesIn(testsupport::MachineTree::Names()), testsupport::TestName);

class PrivacyOfWindowsMachines : public testing::TestWithParam<std::string> {};

TEST_P(PrivacyOfWindowsMachines, NothingPersonalIsWritten) {
  OSComponent::EnableSupportProperties(true);
  ExpectNothingPersonal(testsupport::RecordedMachine(GetParam()).Read());
}

INSTANTIATE_TEST_SUITE_P(Recorded, PrivacyOfWindowsMachines,
                         testing::ValuesIn(testsupport::RecordedMachine::Names()), testsupport::TestName);

TEST(PrivacyTest, EachKindIsInSomeRecord) {
  std::string all;
  for (const std::string& name : testsupport::MachineTree::Names())
    all += LowerCase(testsupport::MachineTree::TextOf(name));
  for (const std::string& name : testsupport::RecordedMachine::Names())
    all += LowerCase(testsupport::RecordedMachine::TextOf(name));
  for (const std::string_view personal : kPersonal)
    EXPECT_NE(all.find(personal), std::string::npos) << personal;
}

// ---- Machines that were recorded elsewhere

bool IsHexDigit(char character) {
  return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

/// Whether six pairs of digits stand there, with the same sign between all of them.
bool IsHardwareAddress(std::string_view text) {
  constexpr std::size_t kLength = 17;
  if (text.size() < kLength || (text[2] != ':' && text[2] != '-')) return false;
  for (std::size_t index = 0; index < kLength; ++index) {
    if (index % 3 == 2 ? text[index] != text[2] : !IsHexDigit(text[index])) return false;
  }
  return text.size() == kLength || !IsHexDigit(text[kLength]);
}

/// What stands out as an address of a network card or of a person, or as a person's place; empty when nothing
/// does.
std::string FindTellTale(std::string_view text) {
  for (std::size_t place = 0; place < text.size(); ++place) {
    const std::string_view rest = text.substr(place);
    const bool isWordBefore = place > 0 && std::isalnum(static_cast<unsigned char>(text[place - 1])) != 0;
    const bool isTellTale = (!isWordBefore && IsHardwareAddress(rest)) || (isWordBefore && rest[0] == '@') ||
                            rest.starts_with("/home/") || rest.starts_with("\\Users\\");
    if (isTellTale) return std::string(text.substr(place < 40 ? 0 : place - 40, 100));
  }
  return {};
}

TEST(PrivacyTest, NothingPersonalOfMachinesRecordedElsewhere) {
  const std::filesystem::path folder =
      std::filesystem::path(QELSCR_SOURCE_DIR).parent_path() / "shared/data/machines";
  if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "there are no recordings in " << folder;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    SCOPED_TRACE(entry.path());
    const std::any machine = qelcore::json::Parse(testsupport::ReadWholeFile(entry.path()));
    Components components;
    for (const std::any& component :
         *qelcore::json::FindArray(qelcore::json::AsDictionary(machine), "components"))
      components.push_back(std::make_shared<OSComponent>(component));
    World world;
    world.Live(components);
    std::vector<Output> outputs = world.WhatIsHandedOn();
    for (const Output& output : world.WhatStaysWithTheUser()) outputs.push_back(WithoutOwnPaths(output));
    for (const Output& output : outputs) {
      EXPECT_EQ(FindTellTale(output.mText), "") << output.mPlace;
    }
  }
}

}  // namespace
