// `scr optimize`: the optimizer in its window.
#include <memory>

#include "app/Diagnostics.h"
#include "app/LazyToolkit.h"
#include "app/OpenFilesOptimization.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace app {

namespace {

void Optimize() {
  using namespace qelsystemcompatibilityreport;
  LazyToolkit toolkit;
  toolkit.Require();
  const Diagnostics diagnostics;
  RegisterAppOptimization(std::make_shared<OpenFilesOptimization>());
  EnableAppOptimizer(true);
  RunAppOptimizer(nullptr);
  if (diagnostics.HasProblemIn("qelsystemcompatibilityreport::RunAppOptimizer"))
    throw UserError("the optimizer could not go on: " + diagnostics.Summary());
  diagnostics.PrintProblems();
}

}  // namespace

void AddOptimizeVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("optimize", "The optimizer in a window");
  verb->group("Verbs")->footer(
      "Shows settings that the program would like to have otherwise, applies those that are selected, or\n"
      "restores the defaults. One is real, the number of files that this process may have open; the others\n"
      "are demonstrations, which the setting\n"
      "qelsystemcompatibilityreport.RegisterDummyAppOptimizations turns off.\n"
      "\n"
      "  scr optimize\n");
  verb->callback(Optimize);
}

}  // namespace app
