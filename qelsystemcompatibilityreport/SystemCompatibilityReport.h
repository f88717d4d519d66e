// The report service: the functions that a host calls. Start reading here.
//
//   #include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
//
//   using namespace qelsystemcompatibilityreport;
//   RunReportForStartup(u"Example", mainWindow);    // when the application is up
//   RunReportForHelp(u"Example", mainWindow);       // from its Help menu
//   if (CountFatalIncompatibilities() > 0) { ... }
//
// A run reads the blocklist of the application's language (the downloaded one, else the installed one),
// matches it against the machine, compares the issues with those remembered from the last run, and remembers
// the new ones.
//
// All functions run on the calling thread, which must be the application's main thread, one at a time. None
// throws: what goes wrong is traced on the channel "SystemCompatibilityReport" or logged as an exception.
#pragma once

#include <cstdint>
#include <string>

#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

// ---- The master switch ------------------------------------------------------------------------------------

/// Turns the whole service on or off for this process. On at load. While it is off every function below but
/// `DeleteReportSavedState` returns at once without effect, and every count is 0.
QELSCR_EXPORT void EnableReports(bool enable);

/// Whether the service is on.
[[nodiscard]] QELSCR_EXPORT bool ReportsEnabled();

// ---- Runs -------------------------------------------------------------------------------------------------

/// The run at launch. Shows the report over `parentWindow`, which may be null, only when it matters: when
/// WARN, ERROR or FATAL issues are there or something is new, and the user did not turn the display at launch
/// off. Then shows the blocklist's second warning, when it has one and WARN or ERROR issues are there, and
/// logs the statistics. Without a blocklist only the statistics are logged. When nothing serious is
/// remembered, and neither the blocklist nor the machine has changed, nothing is matched, but for the first
/// run of a process with a blocklist that has rules about files. `applicationName` is UTF-16. Returns when
/// the user closed what was shown.
QELSCR_EXPORT void RunReportForStartup(const std::u16string& applicationName, qelui::OS_Window* parentWindow);

/// The run that a user asks for: always matches, shows the report over `parentWindow`, which may be null, and
/// remembers the issues. Without a blocklist the dialog says so, and nothing is remembered.
QELSCR_EXPORT void RunReportForHelp(const std::u16string& applicationName, qelui::OS_Window* parentWindow);

/// Writes the text report of this machine to `outputPath`, in place of what is there, and remembers the
/// issues. `applicationName` and `outputPath` are UTF-16. Without a blocklist the report lists the components
/// alone, and nothing is remembered. When the file cannot be written nothing is remembered either. With an
/// empty path the report is shown in its dialog instead, where there is a toolkit.
QELSCR_EXPORT void RunReportToFile(const std::u16string& applicationName, const std::u16string& outputPath);

// ---- What the last run of this process found --------------------------------------------------------------

/// The number of remembered issues of each level after the last run in this process; 0 before the first. Two
/// components hit by one rule count as one.
[[nodiscard]] QELSCR_EXPORT std::uint64_t CountInfoIncompatibilities();
[[nodiscard]] QELSCR_EXPORT std::uint64_t CountWarnIncompatibilities();
[[nodiscard]] QELSCR_EXPORT std::uint64_t CountErrorIncompatibilities();
[[nodiscard]] QELSCR_EXPORT std::uint64_t CountFatalIncompatibilities();

// ---- What the host's statistics learn ---------------------------------------------------------------------

/// Sends the figures about this process's runs, and the links that its user opened, to the host's usage
/// statistics. Runs at launch do so by themselves, and so does the end of start-up (the application's state
/// 5), once. Nothing is reset: a second call sends the same figures again. That end has to be announced on
/// the main thread, or while no run goes on. docs/formats/statistics.md has them all.
QELSCR_EXPORT void LogToAnalytics();

// ---- What is remembered -----------------------------------------------------------------------------------

/// Whether a launch run may open the report dialog: true when nothing is remembered, false while the service
/// is off.
[[nodiscard]] QELSCR_EXPORT bool GetAllowDisplayReportAtStartup();

/// Says whether a launch run may open the report dialog, and remembers it.
QELSCR_EXPORT void SetAllowDisplayReportAtStartup(bool allow);

/// Forgets everything that was remembered, the saved system properties included. Works while the service is
/// off.
QELSCR_EXPORT void DeleteReportSavedState();

}  // namespace qelsystemcompatibilityreport
