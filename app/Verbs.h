// The verbs of `scr`, one file each. Every function adds its verb to the command line; the verb's work runs
// when the command line was read, and its outcome goes to `exitCode`.
#pragma once

#include <CLI/CLI.hpp>

namespace app {

/// What `scr` returns to the shell.
enum class ExitCode : int {
  kSuccess = 0,
  kFailure = 1,        ///< bad input, wrong use, or something could not be done
  kSeriousIssues = 2,  ///< `scr check` found issues of level WARN, ERROR or FATAL, `scr lint` errors
  kDifferences = 2,    ///< `scr diff` found something that a user would notice
};

void AddReportVerb(CLI::App& application, ExitCode& exitCode);
void AddComponentsVerb(CLI::App& application, ExitCode& exitCode);
void AddCheckVerb(CLI::App& application, ExitCode& exitCode);
void AddLintVerb(CLI::App& application, ExitCode& exitCode);
void AddDiffVerb(CLI::App& application, ExitCode& exitCode);
void AddExplainVerb(CLI::App& application, ExitCode& exitCode);
void AddStateVerb(CLI::App& application, ExitCode& exitCode);
void AddShowVerb(CLI::App& application, ExitCode& exitCode);
void AddLaunchVerb(CLI::App& application, ExitCode& exitCode);
void AddOptimizeVerb(CLI::App& application, ExitCode& exitCode);
void AddDesktopVerb(CLI::App& application, ExitCode& exitCode);
void AddRefreshVerb(CLI::App& application, ExitCode& exitCode);
void AddScriptVerb(CLI::App& application, ExitCode& exitCode);
void AddEventsVerb(CLI::App& application, ExitCode& exitCode);
void AddTrailVerb(CLI::App& application, ExitCode& exitCode);
void AddSettingsVerb(CLI::App& application, ExitCode& exitCode);

}  // namespace app
