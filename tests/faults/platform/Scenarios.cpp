#include "tests/faults/platform/Scenarios.h"

#include <filesystem>
#include <iterator>
#include <memory>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "platform/qelnet.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/TextReport.h"
#include "tests/faults/platform/PlatformFaults.h"
#include "tests/support/HostCalls.h"

namespace testsupport {

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponentType;

// Every kind of rule, every level, a dependency, a second warning, and the texts that a download must have.
constexpr const char* kBlocklist = R"({"blocklist_version":1,"blocklist":[
  {"type":"Video","name":"Card","version":"1.0-5.0","version_mod":"100.100.100.100","error_level":"ERROR",
   "info_message":"It hangs.","info_url":"https://example.com/"},
  {"type":"OS","name":"Exam.*","error_level":"WARN"},
  {"type":"Property","name":"memory.mb","ilt":"8192","error_level":"INFO","info_message":"Too little."},
  {"type":"File","name":"$HOME","error_level":"INFO","info_message":"A home."},
  {"type":"Audio","name":"Speakers","error_level":"FATAL","info_message":"Loud.",
   "dependencies":[{"type":"OS","name":"Example OS"}]}],
 "second_warning":"Think twice.",
 "default_info":{
  "OS":{"info_message":"It is old.","info_url":"https://example.com/os"},
  "Video":{"info_message":"v","info_url":"https://example.com/v"},
  "Audio":{"info_message":"a","info_url":"https://example.com/a"},
  "Network":{"info_message":"n","info_url":"https://example.com/n"},
  "File":{"info_message":"f","info_url":"https://example.com/f"},
  "Property":{"info_message":"p","info_url":"https://example.com/p"}}})";

class Answer final : public qelnet::Response {
 public:
  [[nodiscard]] int GetStatus() const override {
    OnHostCall("Response::GetStatus");
    return 200;
  }
  [[nodiscard]] std::string GetPayloadAsUTF8String() const override {
    OnHostCall("Response::GetPayloadAsUTF8String");
    return kBlocklist;
  }
};

/// A server that answers at once, in place of the platform's own.
bool AnswerAtOnce(const qelcore::Guid&, qelnet::Completion completion, const qelcore::ImmutableString&,
                  const qelnet::Headers&, const qelnet::Configuration&) {
  const qelnet::Completion complete = std::move(completion);
  complete(Answer());
  return true;
}

/// Changes nothing, and is done at the second question.
class Optimization final : public IAppOptimization {
 public:
  [[nodiscard]] std::string GetName() override { return "Example"; }
  [[nodiscard]] AppOptimizationStatus Determine(std::string& current, std::string& optimal) override {
    current = "1";
    optimal = "2";
    return Step();
  }
  [[nodiscard]] AppOptimizationStatus Cancel() override { return AppOptimizationStatus::OptimizationDone; }
  [[nodiscard]] AppOptimizationStatus Accept() override { return Step(); }
  [[nodiscard]] AppOptimizationStatus Default() override { return Step(); }
  [[nodiscard]] std::string GetFailureText() override { return "because"; }

 private:
  AppOptimizationStatus Step() {
    mIsPending = !mIsPending;
    return mIsPending ? AppOptimizationStatus::OptimizationPending : AppOptimizationStatus::OptimizationDone;
  }

  bool mIsPending = false;
};

/// Presses all that there is, and lets its timers tick.
void UseDialog(RecordedDialog& dialog) {
  for (int round = 0; round < 4; ++round) dialog.Tick();
  for (const char16_t* const caption :
       {u"Fix...", u"Info...", u"Export Report...", u"Optimize", u"Restore system defaults"}) {
    for (RecordedButton* const button : dialog.All<RecordedButton>()) {
      if (button->mCaption == caption && button->mIsActive && dialog.IsVisible(*button))
        dialog.Press(*button);
    }
    for (int round = 0; round < 4; ++round) dialog.Tick();
  }
}

}  // namespace

World::World() {
  mHost.SetComponents({Component(OSComponentType::kOS, "Example OS", "10.0"),
                       Component(OSComponentType::kVideo, "Card", "1.2.3.4"),
                       Component(OSComponentType::kAudio, "Speakers", "5.6"), Property("memory.mb", "4096")});
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", kBlocklist);
  mHost.Files().Write("preferences/SCRPriorState.json", R"({"warn_matches":["HASH:gone"]})");
  qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
  qelcore::host::SetBrowser([this](const std::string& url) {
    mVisited += url + "\n";
    return true;
  });
  qelcore::host::SetMainThreadClock([this] { return mMilliseconds; });
  mToolkit.mSaveAsAnswer = PathOf("saved.txt");
  mToolkit.mWhileDialogIsUp = UseDialog;
}

World::~World() {
  qelcore::host::SetMainThreadClock({});
  qelcore::host::SetBrowser({});
  EnableReports(true);
}

std::u16string World::PathOf(const char* name) const {
  return qelcore::string::UTF8to16((mHost.Files().Path() / name).string());
}

std::string World::FileText(const char* name) const {
  return std::filesystem::exists(mHost.Files().Path() / name) ? mHost.Files().Read(name) : "-";
}

void World::PassTime() {
  mMilliseconds += 1000;
  static_cast<void>(qelcore::host::RunDueMainThreadTasks());
}

namespace {

std::string StateText(World& world) {
  return world.FileText("preferences/SCRPriorState.json");
}
std::string ResultText(World& world) {
  return world.mResult;
}

std::string Counts() {
  return std::to_string(CountInfoIncompatibilities()) + std::to_string(CountWarnIncompatibilities()) +
         std::to_string(CountErrorIncompatibilities()) + std::to_string(CountFatalIncompatibilities());
}
void RunToFile(World& world) {
  RunReportToFile(u"Example", world.PathOf("report.txt"));
}
void Optimize(World& world) {
  static_cast<void>(world);
  RunAppOptimizer(SomeWindow());
}

const Scenario kScenarios[] = {
    {"RunReportToFile", RunToFile,
     [](World& world) { return Counts() + world.FileText("report.txt") + StateText(world); }},
    {"RunReportForHelp", [](World&) { RunReportForHelp(u"Example", SomeWindow()); },
     [](World& world) { return Counts() + world.FileText("saved.txt") + world.mVisited + StateText(world); }},
    {"RunReportForStartup", [](World&) { RunReportForStartup(u"Example", SomeWindow()); },
     [](World& world) { return Counts() + world.FileText("saved.txt") + world.mVisited + StateText(world); }},
    {"ShortcutAtStartup", [](World&) { RunReportForStartup(u"Example", nullptr); },
     [](World& world) { return Counts() + StateText(world) + std::to_string(world.mToolkit.mDialogsShown); },
     [](World& world) {
       world.mHost.Files().Write(
           "application/SystemCompatibilityReport/blocklist.en_US.json",
           R"({"blocklist_version":1,"blocklist":[{"type":"OS","name":"Exam.*","error_level":"INFO"}]})");
       RunToFile(world);
     }},
    {"WithoutABlocklist", RunToFile, [](World& world) { return world.FileText("report.txt"); },
     [](World& world) {
       std::filesystem::remove_all(world.mHost.Application() / "SystemCompatibilityReport");
     }},
    {"SetAllowDisplayReportAtStartup", [](World&) { SetAllowDisplayReportAtStartup(false); },
     [](World& world) { return StateText(world); }},
    {"GetAllowDisplayReportAtStartup",
     [](World& world) { world.mResult = GetAllowDisplayReportAtStartup() ? "yes" : "no"; }, ResultText},
    {"DeleteReportSavedState", [](World&) { DeleteReportSavedState(); },
     [](World& world) { return StateText(world); }},
    {"LogToAnalytics", [](World&) { LogToAnalytics(); },
     [](World& world) { return std::to_string(world.mHost.mUsageEntries.size()); }},
    {"GetDownloadBlocklistURL",
     [](World& world) { world.mResult = GetDownloadBlocklistURL("https://example.com"); }, ResultText},
    {"DownloadBlocklistInTheBackground",
     [](World& world) {
       DownloadBlocklistInTheBackground("https://example.com/list", 500, [&world](DownloadResult result) {
         world.mResult += std::to_string(static_cast<int>(result)) + "\n";
       });
       world.PassTime();
     },
     [](World& world) {
       return world.mResult +
              world.FileText("preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json");
     }},
    {"DownloadWhileOff",
     [](World& world) {
       DownloadBlocklistInTheBackground("https://example.com/list", 0, [&world](DownloadResult result) {
         world.mResult += std::to_string(static_cast<int>(result)) + "\n";
       });
     },
     ResultText, [](World&) { EnableReports(false); }},
    {"InitOptimizationStates",
     [](World& world) {
       std::vector<OptimizationState> states;
       InitOptimizationStates(states);
       world.mResult = std::to_string(states.size());
     },
     ResultText},
    {"RunAppOptimizer", Optimize, [](World& world) { return std::to_string(world.mToolkit.mDialogsShown); }},
    {"ABlocklist",
     [](World& world) {
       const SCRBlocklist blocklist(kBlocklist);
       qelcore::Guid match;
       const auto registry = qelcore::utility::OSComponentRegistry::Get(true);
       const std::vector<SCRIssue> issues = blocklist.MatchToOSComponents(*registry, match);
       std::vector<std::string> remembered{"HASH:gone"};
       static_cast<void>(ResolveIssuesOfErrorLevel(SCRRuleErrorLevel::WARN, issues, remembered, {}));
       world.mResult = std::to_string(issues.size()) + std::to_string(remembered.size());
       // The first answer in a process is another than the later ones.
       static_cast<void>(blocklist.NeedsRematch(*registry, match));
     },
     ResultText},
    {"CreateReport",
     [](World& world) {
       const std::string path = (world.mHost.Files().Path() / "script.txt").string();
       try {
         qelscripting::host::RunScriptText("SystemCompatibilityReport.CreateReport([[" + path + "]])",
                                           "example");
       } catch (const qelscripting::host::ScriptError&) {
         // A class that could not be defined is one that the script does not find.
       }
     },
     [](World& world) { return world.FileText("script.txt"); }},
    {"RegisterTextReportCallback",
     [](World&) {
       RegisterTextReportCallback([](qelcore::UTF8StringStream&, qelcore::filesupport::File&) {},
                                  DisplayPriority::kLast);
     },
     [](World&) { return std::string(); }},
};

}  // namespace

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario> scenarios(std::begin(kScenarios), std::end(kScenarios));
  return scenarios;
}

void PreparePlatform() {
  ReplacePlatformCall("qelnet::GET(", reinterpret_cast<void*>(&AnswerAtOnce));
  RegisterAppOptimization(std::make_shared<Optimization>());
}

}  // namespace testsupport
