// `scr`: the System Compatibility Report of the machine it runs on.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "app/HostOptions.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"

namespace {

constexpr const char* kDescription =
    "Tells whether this machine has drivers, a system version, files or settings that are\n"
    "known to cause trouble, and what to do about it.\n\n"
    "First steps:\n"
    "  scr report               the report of this machine\n"
    "  scr components           what this machine is made of\n"
    "  scr check BLOCKLIST      match a blocklist of your own\n"
    "  scr VERB --help          everything about a verb\n";

/// What is wrong with the command line. A verb that does not exist is said by name, rather than that one is
/// missing.
std::string Explain(const CLI::App& application, const CLI::ParseError& error) {
  const std::vector<std::string> unknown = application.remaining(true);
  return unknown.empty() || unknown.front().starts_with('-') ? error.what()
                                                             : unknown.front() + ": there is no such verb";
}

int Run(int argumentCount, char** arguments) {
  app::ExitCode exitCode = app::ExitCode::kSuccess;
  app::HostOptions hostOptions;

  CLI::App application(kDescription, "scr");
  application.set_version_flag("--version", "scr " + std::to_string(QELSCR_VERSION_MAJOR) + "." +
                                                std::to_string(QELSCR_VERSION_MINOR));
  application.set_help_flag("-h,--help", "Show this help");
  application.require_subcommand(1);
  application.fallthrough();
  hostOptions.AddTo(application);
  application.parse_complete_callback([&] { hostOptions.SetUpHost(); });
  app::AddReportVerb(application, exitCode);
  app::AddComponentsVerb(application, exitCode);
  app::AddCheckVerb(application, exitCode);
  app::AddStateVerb(application, exitCode);
  app::AddSettingsVerb(application, exitCode);

  try {
    application.parse(argumentCount, arguments);
  } catch (const CLI::Success& help) {
    return application.exit(help);
  } catch (const CLI::ParseError& error) {
    app::PrintDiagnostic(Explain(application, error) + "; \"scr --help\" shows how it is used");
    return static_cast<int>(app::ExitCode::kFailure);
  }
  qelcore::host::EndProcess();
  return static_cast<int>(exitCode);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    return Run(argumentCount, arguments);
  } catch (const std::exception& error) {
    app::PrintDiagnostic(error.what());
  }
  return static_cast<int>(app::ExitCode::kFailure);
}
