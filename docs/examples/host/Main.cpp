// A small application with the report in it: the program that docs/host-guide.md explains.
//
//   example_host PREFERENCES APPLICATION SERVER-ROOT [COMMAND ...]
//
// The first two are directories. The commands are what a user does after the launch, one after the other:
// help, report=FILE, script=FILE, refresh, quiet, loud, off, on.
#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/TextReport.h"

namespace {

namespace host = qelcore::host;
using namespace qelsystemcompatibilityreport;
using qelcore::appstatemanager::AppState;

constexpr int kWarnings = 5;

void Announce(AppState state) {
  std::cout << "State " << static_cast<int>(state) << '\n';
  host::SetAppState(state);
}

/// Sets the host up and starts it. Returns false when a part of the application could not be started.
bool Start(const std::string& preferences, const std::string& application) {
  host::SetDirectories(
      {.mPreferences = preferences, .mApplication = application, .mDocuments = {}, .mState = preferences});
  host::SetApplicationName(u"Example");
  host::SetApplicationLanguage("en_US");
  host::SetApplicationVersion(7, 3);
  host::SetTraceLevel(kWarnings);
  host::SetTraceObserver([](std::string_view channel, int, std::string_view text) {
    std::cerr << channel << ": " << text << '\n';
  });
  return host::BeginProcess();
}

/// Adds what support wants to know of this application to every text report.
void AddReportSection() {
  const auto writeSection = [](qelcore::UTF8StringStream& stream, qelcore::filesupport::File&) {
    stream << "    Example plug-ins: 3\n";
  };
  RegisterTextReportCallback(writeSection, DisplayPriority::kApplication);
}

void PrintCounts() {
  std::cout << "Issues: " << CountFatalIncompatibilities() << " FATAL, " << CountErrorIncompatibilities()
            << " ERROR, " << CountWarnIncompatibilities() << " WARN, " << CountInfoIncompatibilities()
            << " INFO\n";
}

/// The end of the start-up, when the main window is there.
void Launch() {
  std::cout << "Report at launch: " << (GetAllowDisplayReportAtStartup() ? "allowed" : "not allowed") << '\n';
  Announce(AppState::kStarted);
  RunReportForStartup(qelcore::GetApplicationName(), nullptr);
  Announce(AppState::kPostStartup);
  PrintCounts();
}

void Refresh(const std::string& serverRoot) {
  const std::string url = GetDownloadBlocklistURL(serverRoot);
  if (url.empty()) {
    std::cout << "Refresh: not possible now\n";
    return;
  }
  const auto result = std::make_shared<std::optional<DownloadResult>>();
  DownloadBlocklistInTheBackground(url, 0, [result](DownloadResult value) {
    // Any thread may bring it, so it is taken to the main thread first.
    qelcore::threads::AsyncCallFromMainThread([result, value] { *result = value; }, 0);
  });
  // Serves the queue and waits, because this application has no event loop to go back to.
  host::RunMainThreadUntil([&] { return result->has_value(); });
  std::cout << "Refresh: " << static_cast<int>(**result) << '\n';
}

void RunScript(const std::string& file) {
  try {
    qelscripting::host::RunScriptFile(file);
  } catch (const qelscripting::host::ScriptError& error) {
    std::cout << "Script: " << error.what() << '\n';
  }
}

/// A command of the user's, some with a file behind "=".
void OnCommand(const std::string& words, const std::string& serverRoot) {
  const std::string command = words.substr(0, words.find('='));
  const std::string file = words.substr(std::min(command.size() + 1, words.size()));
  const std::u16string name = qelcore::GetApplicationName();
  if (command == "help") RunReportForHelp(name, nullptr);
  if (command == "report") RunReportToFile(name, qelcore::string::UTF8to16(file));
  if (command == "script") RunScript(file);
  if (command == "refresh") Refresh(serverRoot);
  if (command == "quiet" || command == "loud") SetAllowDisplayReportAtStartup(command == "loud");
  if (command == "off" || command == "on") EnableReports(command == "on");
  PrintCounts();
}

void End() {
  Announce(AppState::kShuttingDown);
  host::EndProcess();
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
  if (words.size() < 3 || !Start(words[0], words[1])) return 1;
  AddReportSection();
  Launch();
  for (std::size_t i = 3; i < words.size(); ++i) OnCommand(words[i], words[2]);
  End();
  return 0;
}
