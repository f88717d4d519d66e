#include "app/DesktopHost.h"

#include <fmt/format.h>

#include <cstdint>
#include <utility>

#include "app/Download.h"
#include "app/OpenFilesOptimization.h"
#include "app/Output.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace app {

using namespace qelsystemcompatibilityreport;
using qelcore::GetApplicationName;
using qelcore::appstatemanager::AppState;
using qelcore::string::UTF16to8;
using qelcore::string::UTF8to16;
using qelcore::threads::AsyncCallFromMainThread;
using qelui::host::MenuItem;

DesktopHost::DesktopHost(std::string base)
    : mBase(std::move(base)), mWindow(qelui::host::DesktopWindow::Make()) {
  qelscripting::host::SetOptions({.mPrint = [this](std::string_view text) { Log(std::string(text)); }});
  mScripts = std::make_unique<qelscripting::host::ScriptSession>();
  RegisterAppOptimization(std::make_shared<OpenFilesOptimization>());
  EnableAppOptimizer(true);
  mWindow->SetTitle(GetApplicationName());
  mWindow->SetInputLine(u"Lua", [this](const std::u16string& text) { RunScript(text); });
  AddMenus();
}

DesktopHost::~DesktopHost() {
  *mIsAlive = false;
}

void DesktopHost::AddMenus() {
  const MenuItem console{.mCaption = u"Script Console",
                         .mAction =
                             [this] {
                               mConsoleIsVisible = !mConsoleIsVisible;
                               mWindow->SetInputVisible(mConsoleIsVisible);
                             },
                         .mIsChecked = [this] { return mConsoleIsVisible; }};
  const MenuItem atLaunch{
      .mCaption = u"Show Report at Launch",
      .mAction = [] { SetAllowDisplayReportAtStartup(!GetAllowDisplayReportAtStartup()); },
      .mIsChecked = [] { return GetAllowDisplayReportAtStartup(); }};
  std::vector<MenuItem> help{
      {.mCaption = u"System Compatibility Report...", .mAction = [this] { ShowReport(); }}};
  if (AppOptimizerEnabled())
    help.push_back({.mCaption = u"Application Optimizer...", .mAction = [this] { ShowOptimizer(); }});
  help.insert(help.end(),
              {MenuItem{}, atLaunch, {.mCaption = u"Refresh Blocklist", .mAction = [this] { Refresh(); }}});
  mWindow->SetMenus(
      {{u"File", {console, MenuItem{}, {.mCaption = u"Quit", .mAction = [this] { mWindow->Close(); }}}},
       {u"Help", std::move(help)}});
}

void DesktopHost::Run() {
  qelcore::host::SetAppState(AppState::kStarting);
  // The window comes up first; then the report, over it.
  AsyncCallFromMainThread(
      [this, isAlive = mIsAlive] {
        if (*isAlive) Launch();
      },
      0);
  mWindow->Run();
  qelcore::host::SetAppState(AppState::kShuttingDown);
}

void DesktopHost::Launch() {
  qelcore::host::SetAppState(AppState::kStarted);
  RunReportForStartup(GetApplicationName(), mWindow->GetWindow());
  LogCounts("Launch run");
  qelcore::host::SetAppState(AppState::kPostStartup);
  if (!mBase.empty()) Refresh();
}

void DesktopHost::ShowReport() {
  RunReportForHelp(GetApplicationName(), mWindow->GetWindow());
  LogCounts("Report");
}

void DesktopHost::ShowOptimizer() {
  RunAppOptimizer(mWindow->GetWindow());
  Log("Optimizer: closed");
  LogProblems();
}

void DesktopHost::Refresh() {
  if (mBase.empty()) {
    Log("Refresh: no server is known; start with --base URL");
    return;
  }
  try {
    const std::string url = DeriveDownloadUrl(mBase, mDiagnostics);
    Log("Refresh: " + url + " will be asked soon");
    const auto outcome = std::make_shared<DownloadOutcome>();
    qelnet::host::SetOutcomeObserver(
        [outcome](const qelnet::host::Outcome& request) { outcome->Set(request); });
    DownloadBlocklistInTheBackground(url, 0, [this, url, outcome, isAlive = mIsAlive](DownloadResult result) {
      // This may be the HTTP library's thread.
      AsyncCallFromMainThread(
          [this, url, outcome, isAlive, result] {
            if (*isAlive) Log("Refresh: " + DescribeDownload(result, url, outcome->Request(), mDiagnostics));
          },
          0);
    });
  } catch (const UserError& error) {
    Log("Refresh: " + std::string(error.what()));
  }
}

void DesktopHost::RunScript(const std::u16string& text) {
  Log("> " + UTF16to8(text));
  try {
    for (const std::string& value : mScripts->RunText(UTF16to8(text), "console")) Log(value);
  } catch (const qelscripting::host::ScriptError& error) {
    Log(error.what());
  }
}

void DesktopHost::Log(const std::string& text) {
  mWindow->AppendLogLine(UTF8to16(Printable(text)));
}

void DesktopHost::LogCounts(const char* what) {
  Log(fmt::format("{}: {} FATAL, {} ERROR, {} WARN, {} INFO", what, CountFatalIncompatibilities(),
                  CountErrorIncompatibilities(), CountWarnIncompatibilities(), CountInfoIncompatibilities()));
  LogProblems();
}

void DesktopHost::LogProblems() {
  for (const Diagnostics::Problem& problem : mDiagnostics.Problems()) Log("  " + problem.mText);
}

}  // namespace app
