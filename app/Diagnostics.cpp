#include "app/Diagnostics.h"

#include <algorithm>

#include "app/Output.h"
#include "host/qelcore/HostSetup.h"

namespace app {

namespace {

constexpr std::size_t kMostProblemsPrinted = 10;
constexpr int kTraceWarnings = 5;

/// What a problem means for the user, where its text alone does not say.
std::string Consequence(const Diagnostics::Problem& problem) {
  const std::string_view context = problem.mContext;
  if (context.ends_with("::SavePriorStateToPrefsDir")) return "the issues could not be remembered: ";
  if (context.ends_with("::LoadPriorStateFromPrefsDir")) return "what was remembered could not be read: ";
  if (context.ends_with("::GetDownloadBlocklistFileLocation")) return "downloaded blocklists are left out: ";
  if (context.ends_with("::RunReport")) return "the report could not be made: ";
  if (context.ends_with("::ReadThisMachine")) return "system properties could not be kept: ";
  return {};
}

}  // namespace

Diagnostics::Diagnostics() {
  qelcore::host::SetExceptionSink([this](const std::exception_ptr& exception, std::string_view context) {
    Add(context, qelcore::host::DescribeException(exception));
    // An exception that ends a run is logged under the name of the run's function, and not traced besides.
    if (context.ends_with("::RunReport") || context.ends_with("::RunReportForStartup")) mRunFailed = true;
  });
  qelcore::host::SetTraceObserver(
      [this](std::string_view channel, int level, std::string_view text) {
        if (channel != "SystemCompatibilityReport") return;
        if (level == 1) mRunFailed = true;
        if (text.starts_with("Unable to find blocklist file")) mRunWasSkipped = true;
      },
      kTraceWarnings);
}

Diagnostics::~Diagnostics() {
  qelcore::host::SetExceptionSink({});
  qelcore::host::SetTraceObserver({});
}

void Diagnostics::Add(std::string_view context, const std::string& text) {
  if (mKnown.emplace(context, text).second) mProblems.push_back({std::string(context), text});
}

std::string Diagnostics::Summary() const {
  std::string summary;
  for (const Problem& problem : mProblems) summary += (summary.empty() ? "" : "; ") + problem.mText;
  return summary;
}

std::string Diagnostics::DescribeFailedRun() const {
  const std::string reason =
      mProblems.empty() ? "the blocklist file is empty, or the machine cannot be read; --trace 6 tells which "
                          "files were looked at"
                        : Summary();
  return "the report could not be made: " + reason;
}

bool Diagnostics::HasProblemIn(std::string_view context) const {
  return std::any_of(mProblems.begin(), mProblems.end(),
                     [&](const Problem& problem) { return problem.mContext == context; });
}

void Diagnostics::PrintProblems() const {
  const std::size_t printed = std::min(mProblems.size(), kMostProblemsPrinted);
  for (std::size_t index = 0; index < printed; ++index) {
    PrintDiagnostic("warning: " + Consequence(mProblems[index]) + mProblems[index].mText);
  }
  if (printed < mProblems.size()) {
    PrintDiagnostic("warning: " + std::to_string(mProblems.size() - printed) +
                    " more problems of this kind; --trace 1 shows them all");
  }
}

}  // namespace app
