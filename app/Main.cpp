// `scr`: the System Compatibility Report of the machine it runs on.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "app/Arguments.h"
#include "app/HostOptions.h"
#include "app/LibrarySearch.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"

namespace {

constexpr const char* kDescription =
    "Tells whether this machine has drivers, a system version, files or settings that are\n"
    "known to cause trouble, and what to do about it.\n\n"
    "First steps:\n"
    "  scr report               the report of this machine\n"
    "  scr check BLOCKLIST      the same for a blocklist of your own\n"
    "  scr VERB --help          everything about a verb\n\n"
    "The options may stand before or behind every verb.\n";

/// What is wrong with the command line, and where help is.
std::string Explain(const CLI::App& application, const CLI::ParseError& error) {
  const std::vector<CLI::App*> verbs = application.get_subcommands();
  const std::string command = verbs.empty() ? "scr" : "scr " + verbs.front()->get_name();
  std::string problem = error.what();
  const std::vector<std::string> unknown = application.remaining(true);
  if (!unknown.empty() && !unknown.front().starts_with('-')) {
    const bool isVerb = verbs.empty() || !verbs.front()->get_subcommands({}).empty();
    problem = unknown.front() + (isVerb ? ": there is no such verb" : ": not expected here");
  } else if (problem.starts_with("A subcommand")) {
    problem = command + ": a verb is missing";
  }
  return problem + "; \"" + command + " --help\" shows how it is used";
}

/// Ends the process's host whichever way a verb ends.
class HostProcess {
 public:
  HostProcess() = default;
  ~HostProcess() { qelcore::host::EndProcess(); }
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;
};

int Run(const std::vector<std::string>& arguments) {
  app::ExitCode exitCode = app::ExitCode::kSuccess;
  app::HostOptions hostOptions;
  const HostProcess hostProcess;

  CLI::App application(kDescription, "scr");
  application.set_version_flag("--version", "scr " + std::to_string(QELSCR_VERSION_MAJOR) + "." +
                                                std::to_string(QELSCR_VERSION_MINOR));
  application.set_help_flag("-h,--help", "Show this help");
  application.require_subcommand(1);
  // Inherited by the verbs.
  application.get_formatter()->label("SUBCOMMAND", "VERB");
  application.get_formatter()->label("REQUIRED", "(required)");
  application.fallthrough();
  hostOptions.AddTo(application);
  application.parse_complete_callback([&] { hostOptions.SetUpHost(); });
  app::AddReportVerb(application, exitCode);
  app::AddComponentsVerb(application, exitCode);
  app::AddCheckVerb(application, exitCode);
  app::AddLintVerb(application, exitCode);
  app::AddDiffVerb(application, exitCode);
  app::AddExplainVerb(application, exitCode);
  app::AddStateVerb(application, exitCode);
  app::AddShowVerb(application, exitCode);
  app::AddLaunchVerb(application, exitCode);
  app::AddOptimizeVerb(application, exitCode);
  app::AddDesktopVerb(application, exitCode);
  app::AddRefreshVerb(application, exitCode);
  app::AddScriptVerb(application, exitCode);
  app::AddEventsVerb(application, exitCode);
  app::AddTrailVerb(application, exitCode);
  app::AddSettingsVerb(application, exitCode);

  try {
    application.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::Success& help) {
    return application.exit(help);
  } catch (const CLI::ParseError& error) {
    app::PrintDiagnostic(Explain(application, error));
    return static_cast<int>(app::ExitCode::kFailure);
  }
  return static_cast<int>(exitCode);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  qelcore::host::ReserveStandardStreams();
  app::RestrictLibrarySearch();
  try {
    return Run(app::ProgramArguments(argumentCount, arguments));
  } catch (const app::OutputClosed&) {
    // Whoever read has seen enough.
  } catch (const std::exception& error) {
    app::PrintDiagnostic(error.what());
  }
  return static_cast<int>(app::ExitCode::kFailure);
}
