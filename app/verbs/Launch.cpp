// `scr launch`: what a host does when it starts.
#include <fmt/format.h>

#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Localisation.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace app {

namespace {

using namespace qelsystemcompatibilityreport;

void Launch() {
  const Diagnostics diagnostics;
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kStarted);
  RunReportForStartup(qelcore::GetApplicationName(), nullptr);
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
  if (diagnostics.RunWasSkipped()) {
    throw UserError(
        "no blocklist was found, so nothing was checked; --trace 6 tells where it was looked for");
  }
  if (diagnostics.RunFailed()) throw UserError(diagnostics.DescribeFailedRun());
  Print(fmt::format("Known issues of this machine: {} FATAL, {} ERROR, {} WARN, {} INFO\n",
                    CountFatalIncompatibilities(), CountErrorIncompatibilities(),
                    CountWarnIncompatibilities(), CountInfoIncompatibilities()));
  diagnostics.PrintProblems();
}

}  // namespace

void AddLaunchVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb =
      application.add_subcommand("launch", "The run that an application makes at its start");
  verb->group("Verbs")->footer(
      "Does what an application does at its start: matches only when something serious is known or "
      "something\n"
      "has changed, remembers the issues, and records statistics. Then says how many issues are known;\n"
      "\"scr report\" shows them.\n"
      "\n"
      "  scr state quiet    keeps later launches from showing the report\n"
      "  scr events         shows what was recorded\n");
  verb->callback(Launch);
}

}  // namespace app
