// `scr script`: run a script that can make reports.
#include <memory>
#include <optional>
#include <string>

#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelscripting/HostSetup.h"

namespace app {

namespace {

void RunScript(const std::string& path) {
  const Diagnostics diagnostics;
  qelscripting::host::SetOptions({.mPrint = Print});
  std::optional<std::string> scriptError;
  try {
    qelscripting::host::RunScriptFile(path);
  } catch (const qelscripting::host::ScriptError& error) {
    scriptError = error.what();
  }
  // The script learns nothing of a report that failed, so its user is told.
  if (diagnostics.RunFailed() && diagnostics.Problems().empty())
    PrintDiagnostic("warning: " + diagnostics.DescribeFailedRun());
  diagnostics.PrintProblems();
  if (scriptError) throw UserError(*scriptError);
}

}  // namespace

void AddScriptVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("script", "Run a script that can make reports");
  verb->group("Verbs")->footer(
      "Runs a Lua script. It has an object SystemCompatibilityReport with one method, "
      "CreateReport(filePath),\n"
      "which writes the text report to a file and returns true; Lua's own functions for files, processes "
      "and\n"
      "the system are not there.\n"
      "\n"
      "  SystemCompatibilityReport.CreateReport('report.txt')\n");
  const auto path = std::make_shared<std::string>();
  verb->add_option("FILE", *path, "Script to run")->required()->option_text("FILE.lua");
  verb->callback([path] { RunScript(*path); });
}

}  // namespace app
