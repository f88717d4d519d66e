// `scr show`: the report in its window.
#include "app/Diagnostics.h"
#include "app/LazyToolkit.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "platform/qelcore/Localisation.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace app {

namespace {

void Show() {
  LazyToolkit toolkit;
  toolkit.Require();
  const Diagnostics diagnostics;
  qelsystemcompatibilityreport::RunReportForHelp(qelcore::GetApplicationName(), nullptr);
  if (diagnostics.RunFailed()) throw UserError(diagnostics.DescribeFailedRun());
  diagnostics.PrintProblems();
}

}  // namespace

void AddShowVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("show", "The report of this machine in a window");
  verb->group("Verbs")->footer(
      "Shows the issues of this machine in a window, as an application's Help menu does. From there the "
      "pages\n"
      "about issues can be opened and the report can be saved. The issues are remembered.\n"
      "\n"
      "  scr show\n");
  verb->callback(Show);
}

}  // namespace app
