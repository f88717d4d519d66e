// `scr launch`: what a host does when it starts.
#include <fmt/format.h>

#include "app/Diagnostics.h"
#include "app/LazyToolkit.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Localisation.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace app {

namespace {

using namespace qelsystemcompatibilityreport;

void Launch() {
  LazyToolkit toolkit;
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
  if (!toolkit.WhyNothingWasShown().empty())
    PrintDiagnostic("the report was not shown: " + toolkit.WhyNothingWasShown());
  diagnostics.PrintProblems();
}

}  // namespace

void AddLaunchVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb =
      application.add_subcommand("launch", "The run that an application makes at its start");
  verb->group("Verbs")->footer(
      "Does what an application does at its start: matches only when something serious is known or\n"
      "something has changed, shows the report only when it matters, remembers the issues, and records\n"
      "statistics. Then says how many issues are known. Without a display nothing is shown; \"scr report\"\n"
      "writes the issues.\n"
      "\n"
      "  scr state quiet    keeps later launches from showing the report\n"
      "  scr events         shows what was recorded\n");
  verb->callback(Launch);
}

}  // namespace app
