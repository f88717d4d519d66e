// A process that saves without end, until it is killed:
//   saving_process PREFERENCES state         what is remembered, as it was and changed in turn
//   saving_process PREFERENCES download URL  the blocklist that a server gives
// Prints a line before the first save.
#include <atomic>
#include <cstdio>
#include <string_view>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace {

using namespace qelsystemcompatibilityreport;

[[noreturn]] void SaveState() {
  for (bool allow = false;; allow = !allow) SetAllowDisplayReportAtStartup(allow);
}

[[noreturn]] void Download(const char* url) {
  for (;;) {
    std::atomic<bool> isDone{false};
    DownloadBlocklistInTheBackground(url, 1, [&](DownloadResult result) {
      if (result != DownloadResult::DownloadSucceeded) std::printf("%d\n", static_cast<int>(result));
      isDone = true;
      qelcore::host::WakeMainThread();
    });
    qelcore::host::RunMainThreadUntil([&] { return isDone.load(); });
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 3) return 2;
  qelcore::host::SetDirectories({.mPreferences = arguments[1],
                                 .mApplication = arguments[1],
                                 .mDocuments = arguments[1],
                                 .mState = arguments[1]});
  qelcore::host::SetApplicationLanguage("en_US");
  std::printf("ready\n");
  std::fflush(stdout);
  if (std::string_view(arguments[2]) == "state") SaveState();
  if (argumentCount > 3) Download(arguments[3]);
  return 2;
}
