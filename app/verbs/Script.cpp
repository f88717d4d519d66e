// `scr script`: run a script that can make reports.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/Diagnostics.h"
#include "app/LazyToolkit.h"
#include "app/Output.h"
#include "app/Paths.h"
#include "app/Verbs.h"
#include "host/qelscripting/HostSetup.h"

namespace app {

namespace {

/// "name:12: " where the text has that at its beginning, else nothing.
std::string_view PlaceAtBeginning(std::string_view text, const std::string& name) {
  if (!text.starts_with(name + ":")) return {};
  const std::size_t digits = name.size() + 1;
  const std::size_t end = text.find_first_not_of("0123456789", digits);
  return end != digits && text.substr(std::min(end, text.size())).starts_with(": ") ? text.substr(0, end + 2)
                                                                                    : std::string_view();
}

/// The message, with the file and the line before it. A script's own `error` can leave them out; then the
/// innermost of the script's lines that led there is named.
std::string Describe(const qelscripting::host::ScriptError& error, const std::string& path) {
  const std::string name = ToUTF8(ToPath(path).filename());
  std::string_view message = error.what();
  if (!PlaceAtBeginning(message, name).empty()) return std::string(message);
  std::string_view calls = error.GetTraceback();
  if (message.starts_with(name + ": ")) message.remove_prefix(name.size() + 2);
  for (std::size_t found = calls.find(name); found != calls.npos; found = calls.find(name)) {
    calls.remove_prefix(found);
    if (const auto place = PlaceAtBeginning(calls, name); !place.empty())
      return std::string(place) + std::string(message);
    calls.remove_prefix(1);
  }
  return error.what();
}

void RunScript(const std::string& path) {
  LazyToolkit toolkit;
  const Diagnostics diagnostics;
  qelscripting::host::SetOptions({.mPrint = Print});
  std::optional<std::string> scriptError;
  try {
    qelscripting::host::RunScriptFile(path);
  } catch (const qelscripting::host::ScriptError& error) {
    scriptError = Describe(error, path);
  }
  // The script learns nothing of a report that failed, so its user is told.
  if (diagnostics.RunFailed() && diagnostics.Problems().empty())
    PrintDiagnostic("warning: " + diagnostics.DescribeFailedRun());
  if (!toolkit.WhyNothingWasShown().empty())
    PrintDiagnostic("the report was not shown: " + toolkit.WhyNothingWasShown());
  diagnostics.PrintProblems();
  if (scriptError) throw UserError(*scriptError);
}

}  // namespace

void AddScriptVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("script", "Run a script that can make reports");
  verb->group("Verbs")->footer(
      "Runs a Lua script. It has an object SystemCompatibilityReport with one method, "
      "CreateReport(filePath),\n"
      "which writes the text report to a file, or shows the report when the path is empty, and returns "
      "true;\n"
      "Lua's own functions for files, processes and the system are not there.\n"
      "\n"
      "  SystemCompatibilityReport.CreateReport('report.txt')\n");
  const auto path = std::make_shared<std::string>();
  verb->add_option("FILE", *path, "Script to run")->required()->option_text("FILE.lua");
  verb->callback([path] { RunScript(*path); });
}

}  // namespace app
