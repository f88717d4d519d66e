#include "app/OpenFilesOptimization.h"

#include <system_error>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"

namespace app {

namespace host = qelcore::host;

OpenFilesOptimization::OpenFilesOptimization() : mDefault(host::GetOpenFileLimits().mCurrent) {}

std::string OpenFilesOptimization::GetName() {
  return qelcore::string::UTF16to8(
      qelcore::Localise("$$$/scr/app/kOpenFilesName=Files that may be open at a time"));
}

OpenFilesOptimization::Status OpenFilesOptimization::Determine(std::string& current, std::string& optimal) {
  const host::OpenFileLimits limits = host::GetOpenFileLimits();
  current = std::to_string(limits.mCurrent);
  optimal = std::to_string(limits.mLargest);
  return limits.mCurrent < limits.mLargest ? Status::OptimizationDone : Status::OptimizationNotNeeded;
}

OpenFilesOptimization::Status OpenFilesOptimization::Cancel() {
  return Status::OptimizationDone;
}

OpenFilesOptimization::Status OpenFilesOptimization::Accept() {
  return Set(host::GetOpenFileLimits().mLargest);
}

OpenFilesOptimization::Status OpenFilesOptimization::Default() {
  return Set(mDefault);
}

std::string OpenFilesOptimization::GetFailureText() {
  return mFailureText;
}

OpenFilesOptimization::Status OpenFilesOptimization::Set(std::uint64_t limit) {
  try {
    host::SetOpenFileLimit(limit);
  } catch (const std::system_error& error) {
    mFailureText = error.what();
    return Status::OptimizationFailed;
  }
  return Status::OptimizationDone;
}

}  // namespace app
