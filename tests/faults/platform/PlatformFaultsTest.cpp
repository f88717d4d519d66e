// Every call of the platform throws in turn, during every function that the library exports and every
// callback that it leaves with the platform: nothing gets out, the log says where it was, and the same call
// works afterwards.
#include "tests/faults/platform/PlatformFaults.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <ostream>
#include <set>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Text.h"
#include "platform/qelnet.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/TextReport.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponentType;
using testsupport::Log;
using testsupport::PlatformCall;

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
  [[nodiscard]] int GetStatus() const override { return 200; }
  [[nodiscard]] std::string GetPayloadAsUTF8String() const override { return kBlocklist; }
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

/// A machine with an application that has just started, for one call.
class World {
 public:
  World() {
    mHost.SetComponents({testsupport::Component(OSComponentType::kOS, "Example OS", "10.0"),
                         testsupport::Component(OSComponentType::kVideo, "Card", "1.2.3.4"),
                         testsupport::Component(OSComponentType::kAudio, "Speakers", "5.6"),
                         testsupport::Property("memory.mb", "4096")});
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", kBlocklist);
    mHost.Files().Write("preferences/SCRPriorState.json", R"({"warn_matches":["HASH:gone"]})");
    qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
    qelcore::host::SetBrowser([this](const std::string& url) {
      mVisited += url + "\n";
      return true;
    });
    qelcore::host::SetMainThreadClock([this] { return mMilliseconds; });
    mToolkit.mSaveAsAnswer = PathOf("saved.txt");
    mToolkit.mWhileDialogIsUp = [this](testsupport::RecordedDialog& dialog) { UseDialog(dialog); };
  }
  ~World() {
    qelcore::host::SetMainThreadClock({});
    qelcore::host::SetBrowser({});
    EnableReports(true);
  }

  [[nodiscard]] std::u16string PathOf(const char* name) const {
    return qelcore::string::UTF8to16((mHost.Files().Path() / name).string());
  }

  [[nodiscard]] std::string FileText(const char* name) const {
    return std::filesystem::exists(mHost.Files().Path() / name) ? mHost.Files().Read(name) : "-";
  }

  /// Lets a second pass and does what the main thread has to do.
  void PassTime() {
    mMilliseconds += 1000;
    static_cast<void>(qelcore::host::RunDueMainThreadTasks());
  }

  testsupport::TestHost mHost;
  testsupport::RecordingUserInterface mToolkit;
  std::string mVisited;
  std::string mResult;  ///< what the call returned

 private:
  /// Presses all that there is, and lets its timers tick.
  static void UseDialog(testsupport::RecordedDialog& dialog) {
    for (int round = 0; round < 4; ++round) dialog.Tick();
    for (const char16_t* const caption :
         {u"Fix...", u"Info...", u"Export Report...", u"Optimize", u"Restore system defaults"}) {
      for (const std::u16string& visible : dialog.VisibleButtons()) {
        if (visible != caption) continue;
        dialog.Press(caption);
        break;
      }
      for (int round = 0; round < 4; ++round) dialog.Tick();
    }
  }

  std::uint64_t mMilliseconds = 0;
};

struct Scenario {
  friend void PrintTo(const Scenario& scenario, std::ostream* stream) { *stream << scenario.mName; }

  const char* mName;
  void (*mCall)(World& world);
  /// What is there after the call, in words that do not differ from run to run.
  std::string (*mOutcome)(World& world);
  /// What prepares it.
  void (*mPrepare)(World& world) = [](World&) {};
};

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
  RunAppOptimizer(testsupport::SomeWindow());
}

const Scenario kScenarios[] = {
    {"RunReportToFile", RunToFile,
     [](World& world) { return Counts() + world.FileText("report.txt") + StateText(world); }},
    {"RunReportForHelp", [](World&) { RunReportForHelp(u"Example", testsupport::SomeWindow()); },
     [](World& world) { return Counts() + world.FileText("saved.txt") + world.mVisited + StateText(world); }},
    {"RunReportForStartup", [](World&) { RunReportForStartup(u"Example", testsupport::SomeWindow()); },
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

/// Says what was going on when the process ends of it.
const PlatformCall* gFault = nullptr;
[[noreturn]] void EndWithAWord() {
  std::fprintf(stderr, "The process ended when the platform threw in %s\n",
               gFault == nullptr ? "nothing" : gFault->mFunction.c_str());
  std::abort();
}

class PlatformFaults : public testing::TestWithParam<Scenario> {
 protected:
  PlatformFaults() {
    std::set_terminate(EndWithAWord);
    testsupport::ReplacePlatformCall("qelnet::GET(", reinterpret_cast<void*>(&AnswerAtOnce));
    RegisterAppOptimization(std::make_shared<Optimization>());
  }

  std::string Outcome() {
    World world;
    GetParam().mPrepare(world);
    GetParam().mCall(world);
    return GetParam().mOutcome(world);
  }

  std::vector<PlatformCall> CallsDuringIt() {
    World world;
    GetParam().mPrepare(world);
    testsupport::RecordPlatformCalls();
    GetParam().mCall(world);
    return testsupport::RecordedPlatformCalls();
  }

  void Break(const PlatformCall& call, std::uint64_t time, Log log = Log::kWorks) {
    World world;
    GetParam().mPrepare(world);
    world.mHost.mExceptionContexts.clear();
    world.mHost.mExceptionTexts.clear();
    testsupport::ThrowAt(call, time, log);
    EXPECT_NO_THROW(GetParam().mCall(world));
    EXPECT_TRUE(testsupport::StopThrowing());
    if (log == Log::kWorks) ExpectLogged(world);
    // What it left behind hinders nobody.
    EXPECT_NO_THROW(GetParam().mCall(world));
  }

  static void ExpectLogged(const World& world) {
    bool isLogged = false;
    for (std::size_t index = 0; index < world.mHost.mExceptionTexts.size(); ++index) {
      isLogged =
          isLogged || (world.mHost.mExceptionTexts[index].starts_with(testsupport::kPlatformFault) &&
                       world.mHost.mExceptionContexts[index].starts_with("qelsystemcompatibilityreport::"));
    }
    EXPECT_TRUE(isLogged);
  }
};

TEST_P(PlatformFaults, NothingGetsOut) {
  const std::string outcome = Outcome();
  const std::vector<PlatformCall> calls = CallsDuringIt();
  RecordProperty("Places", std::to_string(calls.size()));
  for (const PlatformCall& call : calls) {
    gFault = &call;
    // The first time and the last one: later ones meet what the first have made.
    for (const std::uint64_t time : std::set<std::uint64_t>{1, call.mTimes}) {
      SCOPED_TRACE(call.mFunction + ", time " + std::to_string(time) + " of " + std::to_string(call.mTimes));
      Break(call, time);
      EXPECT_EQ(Outcome(), outcome);
    }
  }
}

TEST_P(PlatformFaults, NothingGetsOutWhenNothingCanBeLogged) {
  // What is done once in a process is done.
  static_cast<void>(Outcome());
  for (const PlatformCall& call : CallsDuringIt()) {
    gFault = &call;
    SCOPED_TRACE(call.mFunction);
    Break(call, 1, Log::kThrowsToo);
  }
}

// ---- The start and the end of the process, which it has once

/// Starts and ends a process in which the platform throws at that call, and returns 1 when it did, 0 when
/// there were fewer calls.
int LiveWithFault(std::uint64_t call) {
  World world;
  testsupport::ThrowAt(testsupport::kAnyCall, call, Log::kWorks);
  qelcore::host::BeginProcess();
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
  RunReportForStartup(u"Example", nullptr);
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kShuttingDown);
  qelcore::host::EndProcess();
  return testsupport::StopThrowing() ? 1 : 0;
}

TEST(PlatformFaultsOfALife, TheProcessGoesOn) {
  std::uint64_t call = 0;
  int status = 0;
  do {
    ++call;
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) std::_Exit(LiveWithFault(call));
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFEXITED(status)) << "call " << call;
  } while (WEXITSTATUS(status) == 1);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_GT(call, 100U);
}

INSTANTIATE_TEST_SUITE_P(During, PlatformFaults, testing::ValuesIn(kScenarios),
                         [](const auto& scenario) { return scenario.param.mName; });

}  // namespace
