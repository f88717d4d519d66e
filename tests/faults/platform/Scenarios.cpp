#include "tests/faults/platform/Scenarios.h"

#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Hash.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "platform/qelnet.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SeparateMatching.h"
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

constexpr const char* kState = "LoadPriorStateFromPrefsDir SavePriorStateToPrefsDir";
constexpr const char* kLocation = "GetDownloadBlocklistFileLocation";
constexpr const char* kSelection =
    "SelectBlocklistFile GetAppBlocklistFileLocation GetDownloadBlocklistFileLocation";
constexpr const char* kReading = "SCRBlocklist::SCRBlocklist SCRRule::FromJSON";
constexpr const char* kMatching =
    "SCRBlocklist::MatchToOSComponents SCRBlocklist::NeedsRematch SCRRule::FindMatchingOSComponents "
    "ResolveIssuesOfErrorLevel";
constexpr const char* kRun = "RunReport `anonymous-namespace'::RunReport";
constexpr const char* kExport = "SCRDialog::Export";
constexpr const char* kStatistics = "LogToAnalytics";
constexpr const char* kDownload = "DownloadBlocklistNow OnBlocklistDownloaded";
constexpr const char* kObject = "SystemCompatibilityReportObject";

/// Lets the platform's fault out of a function that hands on what its platform throws.
void AllowFault(World& world, const std::function<void()>& body) {
  try {
    body();
  } catch (const std::runtime_error& fault) {
    if (!std::string_view(fault.what()).starts_with(kPlatformFault)) throw;
    world.mHandedOn = fault.what();
  }
}

constexpr const char* kRule = R"({"type":"Property","name":"memory.mb","ilt":"8192","regex":"4.*",
  "version":"1.0","max_version":"2.0","versions":["3.0-4.0"],"error_level":"WARN","info_message":"m",
  "dependencies":[{"type":"OS","name":"Exam.*"},{"type":"File","name":"$HOME"}]})";

qelcore::Guid HashOf(const SCRRule& rule) {
  qelcore::Guid hash;
  qelcore::GetHashResult(rule.Hash(), hash);
  return hash;
}

/// All that a rule can be asked for.
void UseRule(World& world) {
  const auto registry = qelcore::utility::OSComponentRegistry::Get(true);
  AllowFault(world, [&] {
    const SCRRule rule{std::string(kRule)};
    SCRRule copy(rule);
    SCRRule other;
    const bool isRead = other.FromJSON(qelcore::json::Parse(kRule));
    copy = other;
    other = std::move(copy);
    const std::vector<VersionRange> ranges{
        VersionRange("1.0-2.0"), VersionRange(qelcore::utility::OSComponentVersion("3")),
        VersionRange(qelcore::utility::OSComponentVersion("4"), qelcore::utility::OSComponentVersion("5"))};
    const SCRRule ranged(OSComponentType::kOS, "Example OS", ranges, {}, {}, "m", "u", {},
                         SCRRuleErrorLevel::INFO);
    const SCRRule single(OSComponentType::kOS, "Example OS", qelcore::utility::OSComponentVersion("1"), {},
                         {}, {}, "m", "u", {rule}, SCRRuleErrorLevel::INFO);
    const SCRRule property(OSComponentType::kProperty, "a", rule.GetPropertyComparisons(), "m", "u", {},
                           SCRRule::StringToErrorLevel("WARN"));
    SCRRule::ForceMatchByNameForTesting(false);
    SCRRule::ForceMatchByTypeForTesting(false);
    world.mResult = qelcore::json::Serialise(rule.ToJSON()) + rule.GetID() + ranges[0].ToString() +
                    SCRRule::ErrorLevelToString(rule.GetErrorLevel());
    for (const bool answer : {isRead, rule == other, rule != ranged, property.IsSeriousError(),
                              ranges[0].IsVersionInRange(qelcore::utility::OSComponentVersion("1.5")),
                              HashOf(rule) == HashOf(other), single == ranged})
      world.mResult += answer ? "1" : "0";
  });
  std::optional<SCRRule> made;
  AllowFault(world, [&] { made.emplace(std::string(kRule)); });
  SCRRule::ForgetFileComponents();
  if (!registry || !made) return;
  const SCRRule& rule = *made;
  world.mResult += std::to_string(rule.FindMatchingOSComponents(*registry).size());
  for (const auto& component : registry->GetComponentsOfType(OSComponentType::kProperty))
    world.mResult += rule.MatchesPropertyComponent(*component) ? "1" : "0";
}

/// Counts the steps that it hears of.
class CountingObserver final : public MatchObserver {
 public:
  void BeginCandidate(const std::shared_ptr<OSComponent>&) override { ++mSteps; }
  void OnName(const NameStep&) override { ++mSteps; }
  void EndRule(std::size_t hitCount) override { mSteps += hitCount; }

  std::size_t mSteps = 0;
};

/// The match as tools have it explained, on a thread that matches for itself.
void UseExplanation(World& world) {
  AllowFault(world, [&] {
    const auto registry = qelcore::utility::OSComponentRegistry::Get(true);
    const std::vector<SCRRule> rules{SCRRule(std::string(kRule))};
    if (!registry) return;
    const SeparateMatching separate;
    CountingObserver observer;
    ExplainMatch(rules[0], *registry, observer);
    ExplainMatch(rules, *registry, observer);
    world.mResult = std::to_string(observer.mSteps);
  });
}

/// What a blocklist and its issues can be asked for besides the match.
void UseValues(World& world) {
  AllowFault(world, [&] {
    const SCRBlocklist blocklist(kBlocklist);
    SCRBlocklist copy(blocklist);
    SCRBlocklist moved(std::move(copy));
    copy = moved;
    moved = std::move(copy);
    qelcore::Guid hash;
    qelcore::GetHashResult(moved.Hash(), hash);
    world.mResult = hash.AsUTF8String() + (moved.Verify() ? "1" : "0");
    const auto component = Component(OSComponentType::kOS, "Example OS", "10.0");
    const SCRIssue issue(*component, SCRRule(std::string(kRule)));
    const SCRIssue other(*component, SCRRule(std::string(R"({"type":"OS","name":"b"})")));
    world.mResult += issue < other ? "1" : "0";
    int heard = 0;
    const ResolutionLogger logger([&](const SCRIssue&) { ++heard; }, [&](const SCRIssue&) { ++heard; },
                                  [&](SCRRuleErrorLevel, const std::string&) { ++heard; });
    ResolutionLogger silent;
    silent = ResolutionLogger(logger);
    silent.LogNewIssue(issue);
    silent.LogExistingIssue(issue);
    silent.LogResolvedIssue(SCRRuleErrorLevel::WARN, "gone");
    world.mResult += std::to_string(heard);
  });
}

/// The optimizer's steps, driven by the host itself.
void UseSteps(World& world) {
  AllowFault(world, [&] {
    const auto optimization = std::make_shared<Optimization>();
    std::vector<OptimizationState> states(1);
    states[0].mOptimization = optimization;
    for (const auto step : {BeginDetermineOptimizations, ContinueDetermineOptimizations,
                            BeginAcceptOptimizations, ContinueAcceptOptimizations, BeginDefaultOptimizations,
                            ContinueDefaultOptimizations, BeginDetermineOptimizations, CancelOptimizations})
      world.mResult += std::to_string(static_cast<int>(step(states))) + " ";
    const bool isOne = optimization->QueryInterface(IAppOptimization::InterfaceId()) != nullptr;
    world.mResult += isOne && optimization->GetSelf() == optimization ? "1" : "0";
  });
}

void UseSwitches(World& world) {
  EnableReports(false);
  EnableAppOptimizer(true);
  world.mResult = Counts() + (ReportsEnabled() ? "1" : "0") + (AppOptimizerEnabled() ? "1" : "0");
  EnableReports(true);
  EnableAppOptimizer(false);
  world.mResult += Counts() + (ReportsEnabled() ? "1" : "0") + (AppOptimizerEnabled() ? "1" : "0");
}

const Scenario kScenarios[] = {
    {"RunReportToFile",
     "RunReportToFile",
     {kState, kSelection, kReading, kMatching, kRun},
     RunToFile,
     [](World& world) { return Counts() + world.FileText("report.txt") + StateText(world); }},
    {"RunReportForHelp",
     "RunReportForHelp",
     {kState, kSelection, kReading, kMatching, kRun, kExport},
     [](World&) { RunReportForHelp(u"Example", SomeWindow()); },
     [](World& world) { return Counts() + world.FileText("saved.txt") + world.mVisited + StateText(world); }},
    {"RunReportForStartup",
     "RunReportForStartup",
     {kState, kSelection, kReading, kMatching, kExport, kStatistics},
     [](World&) { RunReportForStartup(u"Example", SomeWindow()); },
     [](World& world) { return Counts() + world.FileText("saved.txt") + world.mVisited + StateText(world); }},
    {"ShortcutAtStartup",
     "RunReportForStartup",
     {kState, kSelection, kReading, kMatching, kStatistics},
     [](World&) { RunReportForStartup(u"Example", nullptr); },
     [](World& world) { return Counts() + StateText(world) + std::to_string(world.mToolkit.mDialogsShown); },
     [](World& world) {
       world.mHost.Files().Write(
           "application/SystemCompatibilityReport/blocklist.en_US.json",
           R"({"blocklist_version":1,"blocklist":[{"type":"OS","name":"Exam.*","error_level":"INFO"}]})");
       RunToFile(world);
     }},
    {"WithoutABlocklist",
     "RunReportToFile",
     {kState, kSelection, kRun},
     RunToFile,
     [](World& world) { return world.FileText("report.txt"); },
     [](World& world) {
       std::filesystem::remove_all(world.mHost.Application() / "SystemCompatibilityReport");
     }},
    {"SetAllowDisplayReportAtStartup",
     "SetAllowDisplayReportAtStartup",
     {kState},
     [](World&) { SetAllowDisplayReportAtStartup(false); },
     [](World& world) { return StateText(world); }},
    {"GetAllowDisplayReportAtStartup",
     "GetAllowDisplayReportAtStartup",
     {kState},
     [](World& world) { world.mResult = GetAllowDisplayReportAtStartup() ? "yes" : "no"; },
     ResultText},
    {"DeleteReportSavedState",
     "DeleteReportSavedState",
     {},
     [](World&) { DeleteReportSavedState(); },
     [](World& world) { return StateText(world); }},
    {"LogToAnalytics",
     "LogToAnalytics",
     {},
     [](World&) { LogToAnalytics(); },
     [](World& world) { return std::to_string(world.mHost.mUsageEntries.size()); }},
    {"GetDownloadBlocklistURL",
     "GetDownloadBlocklistURL",
     {kLocation},
     [](World& world) { world.mResult = GetDownloadBlocklistURL("https://example.com"); },
     ResultText},
    {"DownloadBlocklistInTheBackground",
     "DownloadBlocklistInTheBackground",
     {kLocation, kReading, kDownload},
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
     "DownloadBlocklistInTheBackground",
     {},
     [](World& world) {
       DownloadBlocklistInTheBackground("https://example.com/list", 0, [&world](DownloadResult result) {
         world.mResult += std::to_string(static_cast<int>(result)) + "\n";
       });
     },
     ResultText,
     [](World&) { EnableReports(false); }},
    {"InitOptimizationStates",
     "InitOptimizationStates",
     {},
     [](World& world) {
       std::vector<OptimizationState> states;
       InitOptimizationStates(states);
       world.mResult = std::to_string(states.size());
     },
     ResultText},
    {"RunAppOptimizer",
     "RunAppOptimizer",
     {},
     Optimize,
     [](World& world) { return std::to_string(world.mToolkit.mDialogsShown); }},
    {"ABlocklist",
     "SCRBlocklist::MatchToOSComponents SCRBlocklist::NeedsRematch SCRBlocklist::Verify "
     "ResolveIssuesOfErrorLevel",
     {kReading, kMatching},
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
     "SystemCompatibilityReportObject::SystemCompatibilityReportObject "
     "SystemCompatibilityReportObject::CreateReport SystemCompatibilityReportObject::DefineObject "
     "SystemCompatibilityReportObject::GetClassname SystemCompatibilityReportObject::GetDescription",
     {kState, kSelection, kReading, kMatching, kRun, kObject},
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
    {"ARule",
     "SCRRule::SCRRule SCRRule::operator= SCRRule::FromJSON SCRRule::ToJSON SCRRule::GetID SCRRule::Hash "
     "SCRRule::operator== SCRRule::operator!= SCRRule::GetPropertyComparisons SCRRule::IsSeriousError "
     "SCRRule::ErrorLevelToString SCRRule::StringToErrorLevel SCRRule::FindMatchingOSComponents "
     "SCRRule::MatchesPropertyComponent SCRRule::ForgetFileComponents SCRRule::ForceMatchByNameForTesting "
     "SCRRule::ForceMatchByTypeForTesting VersionRange::VersionRange VersionRange::ToString "
     "VersionRange::IsVersionInRange",
     {},
     UseRule,
     ResultText},
    {"Explanation",
     "ExplainMatch SeparateMatching::SeparateMatching",
     {kReading, kMatching},
     UseExplanation,
     ResultText},
    {"Values",
     "SCRBlocklist::SCRBlocklist SCRBlocklist::operator= SCRBlocklist::Hash SCRBlocklist::Verify "
     "SCRIssue::SCRIssue SCRIssue::operator< ResolutionLogger::ResolutionLogger ResolutionLogger::operator= "
     "ResolutionLogger::LogNewIssue ResolutionLogger::LogExistingIssue ResolutionLogger::LogResolvedIssue",
     {kReading},
     UseValues,
     ResultText},
    {"Steps",
     "BeginDetermineOptimizations ContinueDetermineOptimizations BeginAcceptOptimizations "
     "ContinueAcceptOptimizations BeginDefaultOptimizations ContinueDefaultOptimizations CancelOptimizations "
     "IAppOptimization::QueryInterface IAppOptimization::InterfaceId IAppOptimization::GetSelf",
     {},
     UseSteps,
     ResultText},
    {"Switches",
     "EnableReports ReportsEnabled EnableAppOptimizer AppOptimizerEnabled CountInfoIncompatibilities "
     "CountWarnIncompatibilities CountErrorIncompatibilities CountFatalIncompatibilities",
     {},
     UseSwitches,
     ResultText},
    {"RegisterAppOptimization",
     "RegisterAppOptimization",
     {},
     [](World& world) {
       world.mResult = RegisterAppOptimization(std::make_shared<Optimization>()) ? "yes" : "no";
     },
     ResultText},
    {"RegisterTextReportCallback",
     "RegisterTextReportCallback",
     {},
     [](World&) {
       RegisterTextReportCallback([](qelcore::UTF8StringStream&, qelcore::filesupport::File&) {},
                                  DisplayPriority::kLast);
     },
     [](World&) { return std::string(); }},
};

/// The words of the functions, each with the library's namespace.
std::vector<std::string> Words(std::string_view words) {
  std::istringstream stream{std::string(words)};
  std::vector<std::string> names;
  for (std::string word; stream >> word;) names.push_back("qelsystemcompatibilityreport::" + word);
  return names;
}

}  // namespace

std::vector<std::string> CalledFunctions(const Scenario& scenario) {
  return Words(scenario.mFunctions);
}

std::vector<std::string> LoggedNames(const Scenario& scenario) {
  std::vector<std::string> names = CalledFunctions(scenario);
  for (const char* const within : scenario.mWithin) {
    if (within == nullptr) continue;
    for (std::string& name : Words(within)) names.push_back(std::move(name));
  }
  return names;
}

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario> scenarios(std::begin(kScenarios), std::end(kScenarios));
  return scenarios;
}

void PreparePlatform() {
  ReplacePlatformCall("qelnet::GET(", reinterpret_cast<void*>(&AnswerAtOnce));
  RegisterAppOptimization(std::make_shared<Optimization>());
}

}  // namespace testsupport
