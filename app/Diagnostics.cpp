#include "app/Diagnostics.h"

#include <algorithm>

#include "app/Output.h"
#include "host/qelcore/HostSetup.h"

namespace app {

namespace {

constexpr std::size_t kMostProblemsPrinted = 10;

}  // namespace

Diagnostics::Diagnostics() {
  qelcore::host::SetExceptionSink([this](const std::exception_ptr& exception, std::string_view context) {
    Add(qelcore::host::DescribeException(exception));
    // An exception that ends a run is logged under the name of the run's function, and not traced besides.
    if (context.ends_with("::RunReport")) mRunFailed = true;
  });
  qelcore::host::SetTraceObserver([this](std::string_view channel, int level, std::string_view) {
    if (channel == "SystemCompatibilityReport" && level == 1) mRunFailed = true;
  });
}

Diagnostics::~Diagnostics() {
  qelcore::host::SetExceptionSink({});
  qelcore::host::SetTraceObserver({});
}

void Diagnostics::Add(const std::string& problem) {
  if (mKnown.insert(problem).second) mProblems.push_back(problem);
}

void Diagnostics::PrintProblems() const {
  const std::size_t printed = std::min(mProblems.size(), kMostProblemsPrinted);
  for (std::size_t index = 0; index < printed; ++index) PrintDiagnostic("warning: " + mProblems[index]);
  if (printed < mProblems.size()) {
    PrintDiagnostic("warning: " + std::to_string(mProblems.size() - printed) +
                    " more problems of this kind; --trace 1 shows them all");
  }
}

}  // namespace app
