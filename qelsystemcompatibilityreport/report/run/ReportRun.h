// One run of the report, from a blocklist file to its result.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Files.h"
#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"

namespace qelsystemcompatibilityreport {

/// Who asked for the run. Two bits; the combinations in use are named.
enum class RunMode : unsigned {
  kLaunch = 0,  ///< the application starts
  kFile = 2,    ///< a report file was asked for
  kHelp = 3,    ///< the Help menu
};

/// Whether somebody asked for the run: any bit. Such a run needs no blocklist and always matches.
[[nodiscard]] constexpr bool IsRequested(RunMode mode) {
  return mode != RunMode::kLaunch;
}

/// Whether the run does not happen at launch: the bit of value 2.
[[nodiscard]] constexpr bool IsNotAtLaunch(RunMode mode) {
  return (static_cast<unsigned>(mode) & 2U) != 0;
}

/// What became of a run. Do not renumber.
enum class RunResult {
  kFailed = 0,
  kRan = 1,            ///< there is nothing to save
  kRanAndChanged = 2,  ///< the remembered state was replaced and must be saved
};

/// What the report dialog shows.
struct ReportPresentation {
  qelui::OS_Window* mParentWindow = nullptr;
  std::u16string mApplicationName;
  std::vector<SCRIssue> mIssues;
  TextReportWriter mTextWriter;
  bool mBlocklistIsMissing = false;
};

/// Shows the report dialog and returns when it is closed.
using PresentReport = std::function<void(const ReportPresentation&)>;

/// Shows it in the report dialog.
void ShowReport(const ReportPresentation& presentation);

/// What a run works for and with.
struct RunRequest {
  qelui::OS_Window* mParentWindow = nullptr;
  std::u16string mApplicationName;
  std::u16string mOutputPath{};  ///< empty: no text report is written
  RunMode mMode = RunMode::kLaunch;
  std::shared_ptr<const OSComponentRegistry> mRegistry{};  ///< null: the run gets its own
  PresentReport mPresent = ShowReport;
};

/// Reads the blocklist file and runs. A missing file fails a launch run and leaves a requested one without
/// rules; an empty file fails every run. `secondWarning` receives the blocklist's. May throw.
[[nodiscard]] RunResult RunReportOnBlocklistFile(const RunRequest& request,
                                                 const qelcore::filesupport::File& blocklistFile,
                                                 SCRPriorState& priorState, std::string& secondWarning);

/// The worker: matches, resolves against `priorState`, counts, presents. An empty text is a missing
/// blocklist. May throw.
[[nodiscard]] RunResult RunReport(const RunRequest& request, std::string blocklistText,
                                  SCRPriorState& priorState, std::string& secondWarning);

}  // namespace qelsystemcompatibilityreport
